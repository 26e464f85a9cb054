#include "dock/dragdrop/DataObject.h"

#include <cstring>
#include <cwchar>
#include <new>
#include <utility>

#include "dock/dragdrop/EnumFormatEtc.h"

namespace lumenor {

namespace {

/// The clipboard format by which the platform knows what kind of handle a medium holds; 0 for plain memory.
CLIPFORMAT HandleFormat(DWORD tymed) {
  switch (tymed) {
  case TYMED_GDI:
    return CF_BITMAP;
  case TYMED_MFPICT:
    return CF_METAFILEPICT;
  default:
    return 0;
  }
}

HRESULT CopyFileName(const STGMEDIUM &from, STGMEDIUM &to) {
  const std::size_t bytes = (std::wcslen(from.lpszFileName) + 1) * sizeof(wchar_t);
  to.lpszFileName = static_cast<LPOLESTR>(::CoTaskMemAlloc(bytes));
  if (to.lpszFileName == nullptr)
    return E_OUTOFMEMORY;
  std::memcpy(to.lpszFileName, from.lpszFileName, bytes);
  return S_OK;
}

HRESULT CopyHandle(const STGMEDIUM &from, STGMEDIUM &to) {
  to.hGlobal = ::OleDuplicateData(from.hGlobal, HandleFormat(from.tymed), GMEM_MOVEABLE);
  return to.hGlobal == nullptr ? E_OUTOFMEMORY : S_OK;
}

/// The platform's duplication knows all handles but this one, which it takes for memory.
HRESULT CopyMetafile(const STGMEDIUM &from, STGMEDIUM &to) {
  to.hEnhMetaFile = ::CopyEnhMetaFileW(from.hEnhMetaFile, nullptr);
  return to.hEnhMetaFile == nullptr ? E_OUTOFMEMORY : S_OK;
}

bool IsSameFormat(const FORMATETC &one, const FORMATETC &other) {
  return one.cfFormat == other.cfFormat && one.dwAspect == other.dwAspect && one.lindex == other.lindex &&
         one.tymed == other.tymed;
}

/// Copies what only one may release. All that a medium can hold lies at the same place, a pointer or a handle.
HRESULT CopyContent(const STGMEDIUM &from, STGMEDIUM &to) {
  switch (from.tymed) {
  case TYMED_NULL:
    return S_OK;
  case TYMED_FILE:
    return CopyFileName(from, to);
  case TYMED_ENHMF:
    return CopyMetafile(from, to);
  case TYMED_ISTREAM:
  case TYMED_ISTORAGE:
    static_cast<IUnknown *>(from.pstm)->AddRef();
    return S_OK;
  default:
    return CopyHandle(from, to);
  }
}

} // namespace

HRESULT CopyMedium(const STGMEDIUM &from, STGMEDIUM &to) noexcept {
  to = from;
  if (from.pUnkForRelease != nullptr) { // its content lives as long as that object
    from.pUnkForRelease->AddRef();
    if ((from.tymed == TYMED_ISTREAM || from.tymed == TYMED_ISTORAGE) && from.pstm != nullptr)
      static_cast<IUnknown *>(from.pstm)->AddRef(); // released beside it
    return S_OK;
  }
  const HRESULT result = from.hGlobal == nullptr ? S_OK : CopyContent(from, to);
  if (FAILED(result))
    to = {};
  return result;
}

CDataObject::~CDataObject() {
  for (STGMEDIUM &medium : media)
    ::ReleaseStgMedium(&medium);
}

HRESULT CDataObject::GetData(FORMATETC *format, STGMEDIUM *medium) noexcept {
  if (format == nullptr || medium == nullptr)
    return E_INVALIDARG;
  *medium = {};
  for (std::size_t i = 0; i < formats.size(); ++i)
    if ((formats[i].tymed & format->tymed) != 0 && formats[i].cfFormat == format->cfFormat &&
        formats[i].dwAspect == format->dwAspect && formats[i].lindex == format->lindex)
      return CopyMedium(media[i], *medium);
  return DV_E_FORMATETC;
}

HRESULT CDataObject::GetDataHere(FORMATETC *, STGMEDIUM *) noexcept { return E_NOTIMPL; }

HRESULT CDataObject::QueryGetData(FORMATETC *format) noexcept {
  if (format == nullptr)
    return DV_E_FORMATETC;
  if ((format->dwAspect & DVASPECT_CONTENT) == 0)
    return DV_E_DVASPECT;
  HRESULT result = DV_E_TYMED;
  for (const FORMATETC &stored : formats) {
    if ((stored.tymed & format->tymed) == 0)
      continue;
    if (stored.cfFormat == format->cfFormat)
      return S_OK;
    result = DV_E_CLIPFORMAT;
  }
  return result;
}

HRESULT CDataObject::GetCanonicalFormatEtc(FORMATETC *, FORMATETC *) noexcept { return E_NOTIMPL; }

HRESULT CDataObject::SetData(FORMATETC *format, STGMEDIUM *medium, BOOL release) noexcept try {
  if (format == nullptr || medium == nullptr)
    return E_INVALIDARG;
  // Room for both first: what was taken over can't be given back.
  formats.reserve(formats.size() + 1);
  media.reserve(media.size() + 1);
  STGMEDIUM stored = *medium;
  if (!release)
    if (const HRESULT result = CopyMedium(*medium, stored); FAILED(result))
      return result;
  Keep(*format, stored);
  return S_OK;
} catch (const std::bad_alloc &) {
  return E_OUTOFMEMORY;
}

/// A format that is set again, as drag helpers do at every move, keeps one medium.
void CDataObject::Keep(const FORMATETC &format, const STGMEDIUM &medium) noexcept {
  for (std::size_t i = 0; i < formats.size(); ++i) {
    if (!IsSameFormat(formats[i], format))
      continue;
    STGMEDIUM former = std::exchange(media[i], medium);
    ::ReleaseStgMedium(&former);
    return;
  }
  formats.push_back(format);
  formats.back().ptd = nullptr; // the caller's memory, and nothing here asks for a device
  media.push_back(medium);
}

HRESULT CDataObject::EnumFormatEtc(DWORD direction, IEnumFORMATETC **enumerator) noexcept try {
  if (enumerator == nullptr)
    return E_POINTER;
  *enumerator = nullptr;
  if (direction != DATADIR_GET)
    return OLE_S_USEREG;
  *enumerator = new CEnumFormatEtc(formats);
  return S_OK;
} catch (const std::bad_alloc &) {
  return E_OUTOFMEMORY;
}

HRESULT CDataObject::DAdvise(FORMATETC *, DWORD, IAdviseSink *, DWORD *) noexcept { return E_NOTIMPL; }

HRESULT CDataObject::DUnadvise(DWORD) noexcept { return E_NOTIMPL; }

HRESULT CDataObject::EnumDAdvise(IEnumSTATDATA **) noexcept { return E_NOTIMPL; }

} // namespace lumenor
