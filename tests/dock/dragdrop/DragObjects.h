#pragma once
// What the tests of drag and drop hand over and look at: data objects with files in them, and an object that counts who
// holds it.

#include <string>
#include <vector>

#include <wrl/client.h>

#include "dock/dragdrop/DataObject.h"
#include "system/Windows.h"

namespace lumenor {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // the platform's interfaces have none

/// Counts its references; the test owns it.
class CountedObject : public IUnknown {
public:
  virtual ~CountedObject() = default;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void **object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }

  ULONG references = 1;
};

#pragma GCC diagnostic pop

/// How many references `object` has.
ULONG CountReferences(IUnknown *object);

/// Memory as the platform lists files in it.
HGLOBAL MakeFileList(const std::vector<std::wstring> &paths);

/// A data object that holds `medium` as `format`; the medium is the object's from now on.
Microsoft::WRL::ComPtr<CDataObject> MakeData(FORMATETC format, STGMEDIUM medium);

/// A data object that holds the list of these files.
Microsoft::WRL::ComPtr<CDataObject> MakeFileData(const std::vector<std::wstring> &paths);

/// A data object that holds a text and no file.
Microsoft::WRL::ComPtr<CDataObject> MakeTextData();

/// A medium of memory that holds these bytes.
STGMEDIUM MakeMemory(const std::string &bytes);

/// What the memory of a medium holds, up to its first null.
std::string MemoryText(const STGMEDIUM &medium);

} // namespace lumenor
