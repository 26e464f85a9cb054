#pragma once
// A shell link that keeps its properties, which the platform's own only pretends to do. It forwards all else to a link
// of the platform, with the same interfaces so that it is one object; it lacks that for 8-bit texts, which no program
// here uses. The properties live as long as the object: a file that is saved doesn't hold them, and one that is loaded
// has none. One thread.

#include "LinkProperties.h"
#include "ServiceObject.h"

#include <ocidl.h>
#include <shobjidl.h>

namespace lumenor::services {

/// The interfaces of the platform's own link.
struct PlatformLink {
  Microsoft::WRL::ComPtr<IShellLinkW> link;
  Microsoft::WRL::ComPtr<IPersistFile> file;
  Microsoft::WRL::ComPtr<IPersistStream> stream;
  Microsoft::WRL::ComPtr<IShellLinkDataList> dataBlocks;
  Microsoft::WRL::ComPtr<IShellExtInit> extension;
  Microsoft::WRL::ComPtr<IContextMenu> menu;
  Microsoft::WRL::ComPtr<IObjectWithSite> sited;
};

class ShellLink : public ServiceObject<ShellLink, IShellLinkW, IPropertyStore, IPersistFile, IPersistStream,
                                       IShellLinkDataList, IShellExtInit, IContextMenu, IObjectWithSite> {
public:
  /// Makes a link around a new one of the platform's.
  static HRESULT Create(REFIID id, void **object);

  explicit ShellLink(PlatformLink platform) : platform(std::move(platform)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void **object) noexcept override;

  // IPropertyStore
  HRESULT STDMETHODCALLTYPE GetCount(DWORD *count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetAt(DWORD index, PROPERTYKEY *key) noexcept override;
  HRESULT STDMETHODCALLTYPE GetValue(REFPROPERTYKEY key, PROPVARIANT *value) noexcept override;
  HRESULT STDMETHODCALLTYPE SetValue(REFPROPERTYKEY key, REFPROPVARIANT value) noexcept override;
  HRESULT STDMETHODCALLTYPE Commit() noexcept override;

  // IPersist, IPersistFile and IPersistStream
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID *id) noexcept override;
  HRESULT STDMETHODCALLTYPE IsDirty() noexcept override;
  HRESULT STDMETHODCALLTYPE Load(LPCOLESTR path, DWORD mode) noexcept override;
  HRESULT STDMETHODCALLTYPE Save(LPCOLESTR path, BOOL remember) noexcept override;
  HRESULT STDMETHODCALLTYPE SaveCompleted(LPCOLESTR path) noexcept override;
  HRESULT STDMETHODCALLTYPE GetCurFile(LPOLESTR *path) noexcept override;
  HRESULT STDMETHODCALLTYPE Load(IStream *stream) noexcept override;
  HRESULT STDMETHODCALLTYPE Save(IStream *stream, BOOL clearDirty) noexcept override;
  HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER *size) noexcept override;

  // IShellLinkW
  HRESULT STDMETHODCALLTYPE GetPath(LPWSTR path, int size, WIN32_FIND_DATAW *data, DWORD flags) noexcept override;
  HRESULT STDMETHODCALLTYPE SetPath(LPCWSTR path) noexcept override;
  HRESULT STDMETHODCALLTYPE GetDescription(LPWSTR text, int size) noexcept override;
  HRESULT STDMETHODCALLTYPE SetDescription(LPCWSTR text) noexcept override;
  HRESULT STDMETHODCALLTYPE GetWorkingDirectory(LPWSTR folder, int size) noexcept override;
  HRESULT STDMETHODCALLTYPE SetWorkingDirectory(LPCWSTR folder) noexcept override;
  HRESULT STDMETHODCALLTYPE GetArguments(LPWSTR arguments, int size) noexcept override;
  HRESULT STDMETHODCALLTYPE SetArguments(LPCWSTR arguments) noexcept override;
  HRESULT STDMETHODCALLTYPE GetIconLocation(LPWSTR path, int size, int *index) noexcept override;
  HRESULT STDMETHODCALLTYPE SetIconLocation(LPCWSTR path, int index) noexcept override;
  HRESULT STDMETHODCALLTYPE SetRelativePath(LPCWSTR path, DWORD reserved) noexcept override;
  HRESULT STDMETHODCALLTYPE GetIDList(PIDLIST_ABSOLUTE *list) noexcept override;
  HRESULT STDMETHODCALLTYPE SetIDList(PCIDLIST_ABSOLUTE list) noexcept override;
  HRESULT STDMETHODCALLTYPE GetHotkey(WORD *key) noexcept override;
  HRESULT STDMETHODCALLTYPE SetHotkey(WORD key) noexcept override;
  HRESULT STDMETHODCALLTYPE GetShowCmd(int *command) noexcept override;
  HRESULT STDMETHODCALLTYPE SetShowCmd(int command) noexcept override;
  HRESULT STDMETHODCALLTYPE Resolve(HWND window, DWORD flags) noexcept override;

  // IShellLinkDataList
  HRESULT STDMETHODCALLTYPE AddDataBlock(void *block) noexcept override;
  HRESULT STDMETHODCALLTYPE CopyDataBlock(DWORD signature, void **block) noexcept override;
  HRESULT STDMETHODCALLTYPE RemoveDataBlock(DWORD signature) noexcept override;
  HRESULT STDMETHODCALLTYPE GetFlags(DWORD *flags) noexcept override;
  HRESULT STDMETHODCALLTYPE SetFlags(DWORD flags) noexcept override;

  // IShellExtInit, IContextMenu and IObjectWithSite
  HRESULT STDMETHODCALLTYPE Initialize(PCIDLIST_ABSOLUTE folder, IDataObject *data, HKEY key) noexcept override;
  HRESULT STDMETHODCALLTYPE QueryContextMenu(HMENU menu, UINT index, UINT first, UINT last,
                                             UINT flags) noexcept override;
  HRESULT STDMETHODCALLTYPE InvokeCommand(CMINVOKECOMMANDINFO *command) noexcept override;
  HRESULT STDMETHODCALLTYPE GetCommandString(UINT_PTR command, UINT type, UINT *reserved, CHAR *text,
                                             UINT size) noexcept override;
  HRESULT STDMETHODCALLTYPE SetSite(IUnknown *site) noexcept override;
  HRESULT STDMETHODCALLTYPE GetSite(REFIID id, void **site) noexcept override;

private:
  HRESULT Loaded(HRESULT result);

  PlatformLink platform;
  LinkProperties properties;
};

} // namespace lumenor::services
