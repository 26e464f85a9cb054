#include "dock/dragdrop/EnumFormatEtc.h"

#include <algorithm>
#include <new>

namespace lumenor {

HRESULT CEnumFormatEtc::Next(ULONG wanted, FORMATETC *out, ULONG *fetched) noexcept {
  if (fetched != nullptr)
    *fetched = 0;
  if (wanted == 0 || out == nullptr || Remaining() == 0 || (fetched == nullptr && wanted != 1))
    return S_FALSE;
  const std::size_t count = std::min<std::size_t>(wanted, Remaining());
  std::copy_n(formats.data() + cursor, count, out);
  cursor += count;
  if (fetched != nullptr)
    *fetched = static_cast<ULONG>(count);
  return count == wanted ? S_OK : S_FALSE;
}

HRESULT CEnumFormatEtc::Skip(ULONG skipped) noexcept {
  const std::size_t count = std::min<std::size_t>(skipped, Remaining());
  cursor += count;
  return count == skipped ? S_OK : S_FALSE;
}

HRESULT CEnumFormatEtc::Reset() noexcept {
  cursor = 0;
  return S_OK;
}

HRESULT CEnumFormatEtc::Clone(IEnumFORMATETC **clone) noexcept try {
  if (clone == nullptr)
    return E_POINTER;
  *clone = nullptr;
  *clone = new CEnumFormatEtc(formats, cursor);
  return S_OK;
} catch (const std::bad_alloc &) {
  return E_OUTOFMEMORY;
}

} // namespace lumenor
