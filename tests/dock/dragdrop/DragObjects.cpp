#include "dock/dragdrop/DragObjects.h"

#include <cstring>

#include <shlobj.h>

namespace lumenor {

ULONG CountReferences(IUnknown *object) {
  object->AddRef();
  return object->Release();
}

HGLOBAL MakeFileList(const std::vector<std::wstring> &paths) {
  std::wstring names;
  for (const std::wstring &path : paths)
    names += path + L'\0';
  names.append(paths.empty() ? 2 : 1, L'\0'); // the platform looks behind the first name for the end of the list
  const std::size_t bytes = names.size() * sizeof(wchar_t);
  const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + bytes);
  auto *const list = static_cast<DROPFILES *>(::GlobalLock(memory));
  list->pFiles = sizeof(DROPFILES);
  list->fWide = TRUE;
  std::memcpy(list + 1, names.data(), bytes);
  ::GlobalUnlock(memory);
  return memory;
}

Microsoft::WRL::ComPtr<CDataObject> MakeData(FORMATETC format, STGMEDIUM medium) {
  const auto data = MakeComObject<CDataObject>();
  data->SetData(&format, &medium, TRUE);
  return data;
}

Microsoft::WRL::ComPtr<CDataObject> MakeFileData(const std::vector<std::wstring> &paths) {
  STGMEDIUM medium = {};
  medium.tymed = TYMED_HGLOBAL;
  medium.hGlobal = MakeFileList(paths);
  return MakeData(fileListFormat, medium);
}

Microsoft::WRL::ComPtr<CDataObject> MakeTextData() {
  return MakeData({CF_TEXT, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL}, MakeMemory("text"));
}

STGMEDIUM MakeMemory(const std::string &bytes) {
  STGMEDIUM medium = {};
  medium.tymed = TYMED_HGLOBAL;
  medium.hGlobal = ::GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, bytes.size() + 1);
  std::memcpy(::GlobalLock(medium.hGlobal), bytes.data(), bytes.size());
  ::GlobalUnlock(medium.hGlobal);
  return medium;
}

std::string MemoryText(const STGMEDIUM &medium) {
  const auto *const bytes = static_cast<const char *>(::GlobalLock(medium.hGlobal));
  const std::string text = bytes == nullptr ? "" : bytes;
  ::GlobalUnlock(medium.hGlobal);
  return text;
}

} // namespace lumenor
