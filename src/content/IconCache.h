#pragma once
// Icon files of the jump list's tasks. The shell loads icons from files only; an icon that the target itself doesn't
// hold is written once to the folder of the dock's own pictures. The folder is never cleaned, and an existing file is
// never written again. Needs a thread that has initialised COM.

#include <string>

#include "system/Windows.h"

namespace lumenor {

/// Where the icon of `target` is kept: a file with the target's whole file name and ".ico" after it. Targets with the
/// same file name share one. Makes the folder when it is missing.
std::wstring CachedIconPath(const std::wstring &target);

/// Keeps the icon that the shell shows for the file `target`, unless there is one of its name already. Returns its
/// path, also when it couldn't be written; empty when the shell has no icon for it.
std::wstring CacheAssociatedIcon(const std::wstring &target);

/// Writes `icon`, borrowed, over the file at `path`, whole or not at all. A failure is silent.
void SaveIconFile(HICON icon, const std::wstring &path) noexcept;

} // namespace lumenor
