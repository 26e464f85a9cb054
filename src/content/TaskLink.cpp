#include "content/TaskLink.h"

#include <string_view>

#include "content/IconCache.h"
#include "system/Handles.h"
#include "system/HResultError.h"
#include "system/Instance.h"
#include "system/Log.h"
#include "system/ProgramFile.h"
#include "system/Shortcut.h"

#include <propkey.h>
#include <propsys.h>
#include <shellapi.h>

using Microsoft::WRL::ComPtr;

namespace lumenor {

namespace {

constexpr std::wstring_view shortcutExtension = L".lnk";

// The most that the shell's calls accept and return, in characters with the closing null.
constexpr int pathLimit = 260;
constexpr int textLimit = 1024;

/// Whether the file holds an icon of its own.
bool HoldsIcon(const std::wstring &path) {
  if (IsDamagedProgram(path, ProgramPart::Icons))
    return false;
  const HICON icon = ::ExtractIconW(instanceHandle, path.c_str(), 0);
  if (reinterpret_cast<UINT_PTR>(icon) <= 1) // 1 means a kind of file that holds none
    return false;
  const IconHandle owned(icon);
  return true;
}

void SetCachedIcon(IShellLinkW *link, const std::wstring &target) {
  if (const std::wstring cached = CacheAssociatedIcon(target); !cached.empty())
    ThrowIfFailed(link->SetIconLocation(cached.c_str(), 0));
}

void SetIcon(IShellLinkW *link, const std::wstring &path, const std::wstring &icon) {
  if (!icon.empty())
    ThrowIfFailed(link->SetIconLocation(icon.c_str(), 0));
  else if (HoldsIcon(path))
    ThrowIfFailed(link->SetIconLocation(path.c_str(), 0));
  else
    SetCachedIcon(link, path);
}

/// The title is what the jump list shows: the path when it is empty.
void SetTitle(IShellLinkW *link, const std::wstring &title, const std::wstring &path) {
  ComPtr<IPropertyStore> properties;
  ThrowIfFailed(link->QueryInterface(IID_PPV_ARGS(&properties)));
  PROPVARIANT value{}; // borrows the text, which the store copies
  value.vt = VT_LPWSTR;
  value.pwszVal = const_cast<wchar_t *>((title.empty() ? path : title).c_str());
  ThrowIfFailed(properties->SetValue(PKEY_Title, value));
  ThrowIfFailed(properties->Commit());
}

ComPtr<IShellLinkW> NewLink() {
  ComPtr<IShellLinkW> link;
  ThrowIfFailed(::CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&link)));
  if (link == nullptr) {
    LogInfo("CoCreate of CLSID_ShellLink failed");
    throw HResultError(E_FAIL);
  }
  return link;
}

ComPtr<IShellLinkW> OpenShortcut(const std::wstring &path) {
  ComPtr<IShellLinkW> source = NewLink();
  ComPtr<IPersistFile> file;
  ThrowIfFailed(source.As(&file));
  ThrowIfFailed(file->Load(path.c_str(), 0));
  ThrowIfFailed(source->Resolve(::GetDesktopWindow(), SLR_NO_UI));
  return source;
}

void CopyPath(IShellLinkW *source, IShellLinkW *link) {
  wchar_t path[pathLimit] = {};
  ThrowIfFailed(source->GetPath(path, pathLimit, nullptr, SLGP_RAWPATH));
  // A target that is no file has no path; a link without one would fail the whole list.
  if (path[0] == L'\0')
    throw HResultError(E_FAIL);
  ThrowIfFailed(link->SetPath(path));
}

using TextGetter = HRESULT (STDMETHODCALLTYPE IShellLinkW::*)(LPWSTR, int);
using TextSetter = HRESULT (STDMETHODCALLTYPE IShellLinkW::*)(LPCWSTR);

/// Copies the text that `get` reads and `set` writes.
template <int limit> void CopyText(IShellLinkW *source, IShellLinkW *link, TextGetter get, TextSetter set) {
  wchar_t text[limit] = {};
  ThrowIfFailed((source->*get)(text, limit));
  ThrowIfFailed((link->*set)(text));
}

void FillLink(IShellLinkW *link, const std::wstring &path, const std::wstring &arguments, const std::wstring &title,
              const std::wstring &icon) {
  if (path.size() >= pathLimit)
    throw HResultError(HResultFromError(ERROR_FILENAME_EXCED_RANGE));
  ThrowIfFailed(link->SetPath(path.c_str()));
  ThrowIfFailed(link->SetArguments(arguments.c_str()));
  SetIcon(link, path, icon);
  SetTitle(link, title, path);
}

} // namespace

HRESULT CreateTaskLink(const std::wstring &path, const std::wstring &arguments, const Element &element,
                       ComPtr<IShellLinkW> &link, const std::wstring &icon) {
  return HResultOf([&] {
    link = NewLink();
    LogInfo("Setting path %S, on the shelllink, with params %S", path.c_str(), arguments.c_str());
    if (IsShortcutPath(path))
      ThrowIfFailed(CopyShortcut(link.Get(), path));
    else
      FillLink(link.Get(), path, arguments, element.Head, icon);
  });
}

HRESULT CopyShortcut(IShellLinkW *link, const std::wstring &path) {
  return HResultOf([&] {
    if (IsDamagedShortcut(path))
      throw HResultError(HResultFromError(ERROR_FILE_CORRUPT));
    const ComPtr<IShellLinkW> source = OpenShortcut(path);
    CopyPath(source.Get(), link);
    SetCachedIcon(link, path);
    CopyText<textLimit>(source.Get(), link, &IShellLinkW::GetArguments, &IShellLinkW::SetArguments);
    CopyText<pathLimit>(source.Get(), link, &IShellLinkW::GetWorkingDirectory, &IShellLinkW::SetWorkingDirectory);
    CopyText<textLimit>(source.Get(), link, &IShellLinkW::GetDescription, &IShellLinkW::SetDescription);
    SetTitle(link, ShortcutTitle(path), path);
  });
}

std::wstring ShortcutTitle(const std::wstring &path) {
  const std::size_t separator = path.rfind(L'\\');
  if (separator == std::wstring::npos)
    return path;
  const std::wstring name = path.substr(separator + 1);
  return name.substr(0, name.rfind(shortcutExtension));
}

bool IsShortcutPath(const std::wstring &path) { return path.ends_with(shortcutExtension); }

} // namespace lumenor
