#pragma once
// Enumerates a copy of a data object's formats. Made by the data object for its caller; lives by its
// references. User-interface thread.

#include <cstddef>
#include <vector>

#include "system/ComObject.h"
#include "system/Windows.h"

namespace lumenor {

class CEnumFormatEtc : public ComObject<IEnumFORMATETC> {
public:
  /// Starts at the format with the index `cursor`.
  explicit CEnumFormatEtc(std::vector<FORMATETC> formats, std::size_t cursor = 0)
      : formats(std::move(formats)), cursor(cursor) {}

  /// Hands out the next `wanted` formats, or as many as there are. S_OK when these were all that was wanted, else
  /// S_FALSE. `fetched` gets their number; only who wants one may pass null.
  HRESULT STDMETHODCALLTYPE Next(ULONG wanted, FORMATETC *out, ULONG *fetched) noexcept override;

  /// Passes over formats; S_FALSE when the end came first.
  HRESULT STDMETHODCALLTYPE Skip(ULONG skipped) noexcept override;

  HRESULT STDMETHODCALLTYPE Reset() noexcept override;

  /// An enumerator of the same formats at the same position.
  HRESULT STDMETHODCALLTYPE Clone(IEnumFORMATETC **clone) noexcept override;

private:
  std::size_t Remaining() const { return formats.size() - cursor; }

  std::vector<FORMATETC> formats;
  std::size_t cursor;
};

} // namespace lumenor
