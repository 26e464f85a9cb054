#include "system/HResultError.h"

namespace lumenor {

HRESULT ThrowIfFailed(HRESULT result) {
  if (result < 0)
    throw HResultError(result);
  return result;
}

HRESULT HResultFromError(DWORD error) noexcept {
  const auto code = static_cast<HRESULT>(error);
  if (code < 0)
    return code;
  if (code == 0)
    return E_FAIL; // some platform calls fail without a last error; a failure must never read as a success
  return static_cast<HRESULT>((error & 0xFFFF) | 0x80070000);
}

void ThrowLastError() { throw HResultError(HResultFromError(::GetLastError())); }

} // namespace lumenor
