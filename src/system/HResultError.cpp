#include "system/HResultError.h"

#include <string_view>

namespace lumenor {

const char *HResultError::File() const noexcept {
  constexpr std::string_view sources = "src/";
  const std::size_t at = std::string_view(place.file_name()).rfind(sources);
  return place.file_name() + (at == std::string_view::npos ? 0 : at + sources.size());
}

HRESULT ThrowIfFailed(HRESULT result, SourcePlace place) {
  if (result < 0)
    throw HResultError(result, place);
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

void ThrowLastError(SourcePlace place) { throw HResultError(HResultFromError(::GetLastError()), place); }

} // namespace lumenor
