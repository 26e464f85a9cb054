#pragma once
// The data of a drag that the bar begins, and the list of its formats. Both live by their references, which the
// platform and the target of the drag share. User-interface thread.

#include <cstddef>
#include <utility>
#include <vector>

#include "system/ComObject.h"
#include "system/Windows.h"

namespace lumenor {

/// The format of a list of files: the one that the bar's drop target takes.
constexpr FORMATETC fileListFormat = {CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};

/// Makes `to` a copy of `from` that is released on its own. Handles are duplicated, interfaces shared; an empty medium
/// stays empty.
HRESULT CopyMedium(const STGMEDIUM &from, STGMEDIUM &to) noexcept;

/// Formats, and a medium for each.
class CDataObject : public ComObject<IDataObject> {
public:
  HRESULT STDMETHODCALLTYPE GetData(FORMATETC *format, STGMEDIUM *medium) noexcept override;
  HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC *, STGMEDIUM *) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC *format) noexcept override;
  HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC *, FORMATETC *) noexcept override { return E_NOTIMPL; }

  /// Adds a format, or puts the medium in the place of the one that the very same format has. With `release` the medium
  /// is this object's from now on, otherwise a copy is made.
  HRESULT STDMETHODCALLTYPE SetData(FORMATETC *format, STGMEDIUM *medium, BOOL release) noexcept override;

  HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC **formats) noexcept override;
  HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC *, DWORD, IAdviseSink *, DWORD *) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA **) noexcept override { return E_NOTIMPL; }

private:
  ~CDataObject() override;

  /// Takes the medium over; there is room for one more.
  void Keep(const FORMATETC &format, const STGMEDIUM &medium) noexcept;

  // Parallel: the medium of each format.
  std::vector<FORMATETC> formats;
  std::vector<STGMEDIUM> media;
};

/// Enumerates a copy of a data object's formats. Made by the data object for its caller.
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
