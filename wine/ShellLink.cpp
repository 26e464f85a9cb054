#include "ShellLink.h"

#include "LinkFile.h"

using Microsoft::WRL::ComPtr;

namespace lumenor::services {

namespace {

/// Asks `object` for each of the interfaces.
template <typename... Interfaces> HRESULT QueryAll(IUnknown *object, ComPtr<Interfaces> &...interfaces) {
  HRESULT result = S_OK;
  ((SUCCEEDED(result) ? result = object->QueryInterface(IID_PPV_ARGS(&interfaces)) : result), ...);
  return result;
}

/// The factory in the shell's own library: the registry's would be the one of this class.
HRESULT GetPlatformFactory(ComPtr<IClassFactory> &factory) {
  using GetClassObject = HRESULT(STDAPICALLTYPE *)(REFCLSID, REFIID, void **);
  const HMODULE shell = ::GetModuleHandleW(L"shell32.dll"); // loaded: this DLL imports of it
  const auto getClassObject =
      reinterpret_cast<GetClassObject>(reinterpret_cast<void *>(::GetProcAddress(shell, "DllGetClassObject")));
  return getClassObject == nullptr ? E_NOINTERFACE : getClassObject(CLSID_ShellLink, IID_PPV_ARGS(&factory));
}

HRESULT MakePlatformLink(PlatformLink &platform) {
  ComPtr<IClassFactory> factory;
  HRESULT result = GetPlatformFactory(factory);
  if (SUCCEEDED(result))
    result = factory->CreateInstance(nullptr, IID_PPV_ARGS(&platform.link));
  if (SUCCEEDED(result))
    result = QueryAll(platform.link.Get(), platform.file, platform.stream, platform.dataBlocks, platform.extension,
                      platform.menu, platform.sited);
  return result;
}

} // namespace

HRESULT ShellLink::Create(REFIID id, void **object) {
  PlatformLink platform;
  const HRESULT result = MakePlatformLink(platform);
  return FAILED(result) ? result : MakeComObject<ShellLink>(std::move(platform))->QueryInterface(id, object);
}

HRESULT STDMETHODCALLTYPE ShellLink::QueryInterface(REFIID id, void **object) noexcept {
  const bool isPersist = ::IsEqualIID(id, __uuidof(IPersist)); // which each file is
  return ServiceObject::QueryInterface(isPersist ? __uuidof(IPersistFile) : id, object);
}

/// What was loaded has no properties.
HRESULT ShellLink::Loaded(HRESULT result) {
  if (SUCCEEDED(result))
    properties.Clear();
  return result;
}

HRESULT STDMETHODCALLTYPE ShellLink::GetCount(DWORD *count) noexcept { return properties.GetCount(count); }

HRESULT STDMETHODCALLTYPE ShellLink::GetAt(DWORD index, PROPERTYKEY *key) noexcept {
  return properties.GetKey(index, key);
}

HRESULT STDMETHODCALLTYPE ShellLink::GetValue(REFPROPERTYKEY key, PROPVARIANT *value) noexcept {
  return properties.Get(key, value);
}

HRESULT STDMETHODCALLTYPE ShellLink::SetValue(REFPROPERTYKEY key, REFPROPVARIANT value) noexcept {
  return properties.Set(key, value);
}

HRESULT STDMETHODCALLTYPE ShellLink::Commit() noexcept { return S_OK; }

HRESULT STDMETHODCALLTYPE ShellLink::GetClassID(CLSID *id) noexcept { return platform.file->GetClassID(id); }

HRESULT STDMETHODCALLTYPE ShellLink::IsDirty() noexcept { return platform.file->IsDirty(); }

HRESULT STDMETHODCALLTYPE ShellLink::Load(LPCOLESTR path, DWORD mode) noexcept {
  if (path != nullptr && HasBrokenItemList(path))
    return E_FAIL; // as of any other file that is no link
  return Loaded(platform.file->Load(path, mode));
}

HRESULT STDMETHODCALLTYPE ShellLink::Save(LPCOLESTR path, BOOL remember) noexcept {
  return platform.file->Save(path, remember);
}

HRESULT STDMETHODCALLTYPE ShellLink::SaveCompleted(LPCOLESTR path) noexcept {
  return platform.file->SaveCompleted(path);
}

HRESULT STDMETHODCALLTYPE ShellLink::GetCurFile(LPOLESTR *path) noexcept { return platform.file->GetCurFile(path); }

HRESULT STDMETHODCALLTYPE ShellLink::Load(IStream *stream) noexcept { return Loaded(platform.stream->Load(stream)); }

HRESULT STDMETHODCALLTYPE ShellLink::Save(IStream *stream, BOOL clearDirty) noexcept {
  return platform.stream->Save(stream, clearDirty);
}

HRESULT STDMETHODCALLTYPE ShellLink::GetSizeMax(ULARGE_INTEGER *size) noexcept {
  return platform.stream->GetSizeMax(size);
}

HRESULT STDMETHODCALLTYPE ShellLink::GetPath(LPWSTR path, int size, WIN32_FIND_DATAW *data, DWORD flags) noexcept {
  return platform.link->GetPath(path, size, data, flags);
}

HRESULT STDMETHODCALLTYPE ShellLink::SetPath(LPCWSTR path) noexcept { return platform.link->SetPath(path); }

HRESULT STDMETHODCALLTYPE ShellLink::GetDescription(LPWSTR text, int size) noexcept {
  return platform.link->GetDescription(text, size);
}

HRESULT STDMETHODCALLTYPE ShellLink::SetDescription(LPCWSTR text) noexcept {
  return platform.link->SetDescription(text);
}

HRESULT STDMETHODCALLTYPE ShellLink::GetWorkingDirectory(LPWSTR folder, int size) noexcept {
  return platform.link->GetWorkingDirectory(folder, size);
}

HRESULT STDMETHODCALLTYPE ShellLink::SetWorkingDirectory(LPCWSTR folder) noexcept {
  return platform.link->SetWorkingDirectory(folder);
}

HRESULT STDMETHODCALLTYPE ShellLink::GetArguments(LPWSTR arguments, int size) noexcept {
  return platform.link->GetArguments(arguments, size);
}

HRESULT STDMETHODCALLTYPE ShellLink::SetArguments(LPCWSTR arguments) noexcept {
  return platform.link->SetArguments(arguments);
}

HRESULT STDMETHODCALLTYPE ShellLink::GetIconLocation(LPWSTR path, int size, int *index) noexcept {
  return platform.link->GetIconLocation(path, size, index);
}

HRESULT STDMETHODCALLTYPE ShellLink::SetIconLocation(LPCWSTR path, int index) noexcept {
  return platform.link->SetIconLocation(path, index);
}

HRESULT STDMETHODCALLTYPE ShellLink::SetRelativePath(LPCWSTR path, DWORD reserved) noexcept {
  return platform.link->SetRelativePath(path, reserved);
}

HRESULT STDMETHODCALLTYPE ShellLink::GetIDList(PIDLIST_ABSOLUTE *list) noexcept {
  return platform.link->GetIDList(list);
}

HRESULT STDMETHODCALLTYPE ShellLink::SetIDList(PCIDLIST_ABSOLUTE list) noexcept {
  return platform.link->SetIDList(list);
}

HRESULT STDMETHODCALLTYPE ShellLink::GetHotkey(WORD *key) noexcept { return platform.link->GetHotkey(key); }

HRESULT STDMETHODCALLTYPE ShellLink::SetHotkey(WORD key) noexcept { return platform.link->SetHotkey(key); }

HRESULT STDMETHODCALLTYPE ShellLink::GetShowCmd(int *command) noexcept { return platform.link->GetShowCmd(command); }

HRESULT STDMETHODCALLTYPE ShellLink::SetShowCmd(int command) noexcept { return platform.link->SetShowCmd(command); }

HRESULT STDMETHODCALLTYPE ShellLink::Resolve(HWND window, DWORD flags) noexcept {
  return platform.link->Resolve(window, flags);
}

HRESULT STDMETHODCALLTYPE ShellLink::AddDataBlock(void *block) noexcept {
  return platform.dataBlocks->AddDataBlock(block);
}

HRESULT STDMETHODCALLTYPE ShellLink::CopyDataBlock(DWORD signature, void **block) noexcept {
  return platform.dataBlocks->CopyDataBlock(signature, block);
}

HRESULT STDMETHODCALLTYPE ShellLink::RemoveDataBlock(DWORD signature) noexcept {
  return platform.dataBlocks->RemoveDataBlock(signature);
}

HRESULT STDMETHODCALLTYPE ShellLink::GetFlags(DWORD *flags) noexcept { return platform.dataBlocks->GetFlags(flags); }

HRESULT STDMETHODCALLTYPE ShellLink::SetFlags(DWORD flags) noexcept { return platform.dataBlocks->SetFlags(flags); }

HRESULT STDMETHODCALLTYPE ShellLink::Initialize(PCIDLIST_ABSOLUTE folder, IDataObject *data, HKEY key) noexcept {
  return platform.extension->Initialize(folder, data, key);
}

HRESULT STDMETHODCALLTYPE ShellLink::QueryContextMenu(HMENU menu, UINT index, UINT first, UINT last,
                                                      UINT flags) noexcept {
  return platform.menu->QueryContextMenu(menu, index, first, last, flags);
}

HRESULT STDMETHODCALLTYPE ShellLink::InvokeCommand(CMINVOKECOMMANDINFO *command) noexcept {
  return platform.menu->InvokeCommand(command);
}

HRESULT STDMETHODCALLTYPE ShellLink::GetCommandString(UINT_PTR command, UINT type, UINT *reserved, CHAR *text,
                                                      UINT size) noexcept {
  return platform.menu->GetCommandString(command, type, reserved, text, size);
}

HRESULT STDMETHODCALLTYPE ShellLink::SetSite(IUnknown *site) noexcept { return platform.sited->SetSite(site); }

HRESULT STDMETHODCALLTYPE ShellLink::GetSite(REFIID id, void **site) noexcept {
  return platform.sited->GetSite(id, site);
}

} // namespace lumenor::services
