#pragma once
// The data of a drag that the bar begins: formats, and a medium for each. Lives by its references, which the platform
// and the target of the drag share. User-interface thread.

#include <vector>

#include "system/ComObject.h"
#include "system/Windows.h"

namespace lumenor {

/// The format of a list of files: the one that the bar's drop target takes.
constexpr FORMATETC fileListFormat = {CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};

/// Makes `to` a copy of `from` that is released on its own. Handles are duplicated, interfaces shared; an empty medium
/// stays empty.
HRESULT CopyMedium(const STGMEDIUM &from, STGMEDIUM &to) noexcept;

class CDataObject : public ComObject<IDataObject> {
public:
  HRESULT STDMETHODCALLTYPE GetData(FORMATETC *format, STGMEDIUM *medium) noexcept override;
  HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC *format, STGMEDIUM *medium) noexcept override;
  HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC *format) noexcept override;
  HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC *format, FORMATETC *canonical) noexcept override;

  /// Adds a format, or puts the medium in the place of the one that the very same format has. With `release` the medium
  /// is this object's from now on, otherwise a copy is made.
  HRESULT STDMETHODCALLTYPE SetData(FORMATETC *format, STGMEDIUM *medium, BOOL release) noexcept override;

  HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC **formats) noexcept override;
  HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC *format, DWORD flags, IAdviseSink *sink,
                                    DWORD *connection) noexcept override;
  HRESULT STDMETHODCALLTYPE DUnadvise(DWORD connection) noexcept override;
  HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA **connections) noexcept override;

private:
  ~CDataObject() override;

  /// Takes the medium over; there is room for one more.
  void Keep(const FORMATETC &format, const STGMEDIUM &medium) noexcept;

  // Parallel: the medium of each format.
  std::vector<FORMATETC> formats;
  std::vector<STGMEDIUM> media;
};

} // namespace lumenor
