#pragma once
// The shell links of the jump list's tasks. Needs a thread that has initialised COM. Failures are returned, not raised,
// so that a link that can't be made doesn't fail the whole list.

#include <string>

#include <wrl/client.h>

#include "content/Element.h"
#include "system/Windows.h"

#include <shobjidl.h> // after windows.h, which it needs

namespace lumenor {

/// Makes `link` a new link to the file `path` with `arguments`, titled with the head of `element`, or with `path` when
/// that is empty. `icon` is the path of its picture; empty means the one that the shell shows for the file. A shortcut
/// is copied instead, and only `path` matters. After a failure, which is returned, `link` is unusable.
HRESULT CreateTaskLink(const std::wstring &path, const std::wstring &arguments, const Element &element,
                       Microsoft::WRL::ComPtr<IShellLinkW> &link, const std::wstring &icon);

/// Copies the shortcut file at `path` into `link`, titled with the file's name. The first failure is returned; `link`
/// then holds a part of it.
HRESULT CopyShortcut(IShellLinkW *link, const std::wstring &path);

/// The file name of the shortcut at `path` without ".lnk"; the whole path when there is no "\" in it.
std::wstring ShortcutTitle(const std::wstring &path);

/// Whether the path ends in ".lnk", compared with its case.
bool IsShortcutPath(const std::wstring &path);

} // namespace lumenor
