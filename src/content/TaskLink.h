#pragma once
// The shell links that the tasks of the jump list are. Needs a thread that has initialised COM. Failures are returned,
// not raised, so that a task that can't be made costs the list nothing but itself.

#include <string>

#include <wrl/client.h>

#include "content/Element.h"
#include "system/Windows.h"

#include <shobjidl.h> // behind windows.h, which it needs

namespace lumenor {

/// Makes `link` a new link to the file `path` with `arguments`, titled by the head of `element`, or by `path` when that
/// is empty. `icon` is the path of its picture; empty means the one that the shell shows for the file. A shortcut is
/// copied instead, and nothing but `path` plays a part. After a failure, which is returned, `link` is of no use.
HRESULT CreateTaskLink(const std::wstring &path, const std::wstring &arguments, const Element &element,
                       Microsoft::WRL::ComPtr<IShellLinkW> &link, const std::wstring &icon);

/// Copies what the shortcut file at `path` holds into `link`, titled by the file's name. The first failure is returned;
/// `link` then holds a part of it.
HRESULT CopyShortcut(IShellLinkW *link, const std::wstring &path);

/// The file name of the shortcut at `path` without ".lnk"; the whole path when there is no "\" in it.
std::wstring ShortcutTitle(const std::wstring &path);

/// Whether the path ends in ".lnk"; in another case of its letters it isn't taken for a shortcut.
bool IsShortcutPath(const std::wstring &path);

} // namespace lumenor
