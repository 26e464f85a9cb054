#include "system/IconSource.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>
#include <vector>

#include "system/Handles.h"
#include "system/Log.h"
#include "system/Paths.h"
#include "system/ProgramFile.h"
#include "system/Shortcut.h"

#include <shlobj.h>
#include <wrl/client.h>

using Microsoft::WRL::ComPtr;

namespace lumenor {

namespace {

using ItemList = Owner<NullHandleTraits<ITEMIDLIST *, &::CoTaskMemFree>>;

constexpr std::size_t mostFiles = 16; // on the way to an icon

/// The shell's object for the shortcut at `path`; null where it can't read the file.
ComPtr<IShellLinkW> OpenLink(const std::wstring &path) {
  ComPtr<IShellLinkW> link;
  ComPtr<IPersistFile> file;
  if (FAILED(::CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&link))) ||
      FAILED(link.As(&file)) || FAILED(file->Load(path.c_str(), STGM_READ)))
    return nullptr;
  return link;
}

/// The files whose icon the shell may show for the shortcut: its target, by path and by items, and that of its icon.
std::vector<std::wstring> IconFilesOf(const std::wstring &shortcut) {
  std::vector<std::wstring> files;
  const ComPtr<IShellLinkW> link = OpenLink(shortcut);
  if (!link)
    return files;
  std::array<wchar_t, MAX_PATH> path;
  const auto keep = [&](bool isThere) {
    if (std::wstring file = isThere ? ExpandPath(path.data()) : L"";
        !file.empty() && std::ranges::find(files, file) == files.end())
      files.push_back(std::move(file));
  };
  int index = 0;
  ItemList items;
  keep(SUCCEEDED(link->GetPath(path.data(), MAX_PATH, nullptr, 0)));
  keep(SUCCEEDED(link->GetIconLocation(path.data(), MAX_PATH, &index)));
  keep(SUCCEEDED(link->GetIDList(items.Put())) && items && ::SHGetPathFromIDListW(items.Get(), path.data()));
  return files;
}

} // namespace

bool HasDamagedIcon(const std::wstring &path) {
  std::vector<std::wstring> files = {path};
  for (std::size_t i = 0; i < files.size(); ++i) {
    if (i == mostFiles) {
      LogError("Shortcut: %S leads to itself or to too many files", path.c_str());
      return true;
    }
    const std::wstring file = files[i]; // the list grows
    if (IsDamagedShortcut(file) || IsDamagedProgram(file, ProgramPart::Icons))
      return true;
    if (IsShortcut(file))
      std::ranges::move(IconFilesOf(file), std::back_inserter(files));
  }
  return false;
}

} // namespace lumenor
