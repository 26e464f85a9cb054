#include "dock/dragdrop/DataObject.h"

#include <algorithm>
#include <new>
#include <utility>

#include <shlwapi.h>

namespace lumenor {

namespace {

/// A duplicate of the handle in `medium`; null when there is none to be had. The clipboard format tells the platform
/// what kind of handle it is.
HANDLE DuplicateMediumHandle(const STGMEDIUM &medium) {
  switch (medium.tymed) {
  case TYMED_ENHMF: // which the platform's duplication takes for memory
    return ::CopyEnhMetaFileW(medium.hEnhMetaFile, nullptr);
  case TYMED_GDI:
    return ::OleDuplicateData(medium.hGlobal, CF_BITMAP, GMEM_MOVEABLE);
  case TYMED_MFPICT:
    return ::OleDuplicateData(medium.hGlobal, CF_METAFILEPICT, GMEM_MOVEABLE);
  default:
    return ::OleDuplicateData(medium.hGlobal, 0, GMEM_MOVEABLE);
  }
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
    return ::SHStrDupW(from.lpszFileName, &to.lpszFileName);
  case TYMED_ISTREAM:
  case TYMED_ISTORAGE:
    static_cast<IUnknown *>(from.pstm)->AddRef();
    return S_OK;
  default:
    to.hGlobal = DuplicateMediumHandle(from);
    return to.hGlobal == nullptr ? E_OUTOFMEMORY : S_OK;
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
