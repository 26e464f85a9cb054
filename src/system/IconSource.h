#pragma once
// Where the shell takes a file's icon from: the file itself, or what a shortcut leads to. User-interface thread only,
// with COM initialised.

#include <string>

namespace lumenor {

/// Whether the file at the expanded `path`, or one that the shell takes its icon from because `path` is a shortcut, is
/// damaged; which one is logged. The shell must not be asked for the icon then. A shortcut that leads to itself, or on
/// to too many files, counts as damaged.
bool HasDamagedIcon(const std::wstring &path);

} // namespace lumenor
