#pragma once
// Icon files of the jump list's tasks. The shell takes icons from files only; what it wouldn't find in the target
// itself is written to the folder of the dock's own pictures, once and for ever: the folder is never cleaned, and a
// file that is there is never written again. Needs a thread that has initialised COM.

#include <string>

#include "system/Windows.h"

namespace lumenor {

/// Where the icon of `target` is kept: a file named by the target's whole file name with ".ico" behind it. Targets of
/// one file name share one. Makes the folder where it is missing.
std::wstring CachedIconPath(const std::wstring &target);

/// Keeps the icon that the shell shows for the file `target`, unless there is one of its name already. Returns where it
/// is kept, which tells nothing of whether it could be written; empty when the shell has no icon for it.
std::wstring CacheAssociatedIcon(const std::wstring &target);

/// Writes `icon`, which stays the caller's, to `path` over what is there, whole or not at all. A failure is silent.
void SaveIconFile(HICON icon, const std::wstring &path) noexcept;

} // namespace lumenor
