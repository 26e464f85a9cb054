#pragma once
// Shortcut files before the shell sees them: some versions of the shell follow the offsets and lengths in a damaged one
// out of the file, within this process. Stateless; any thread.

#include <string>
#include <string_view>

namespace lumenor {

/// Whether each part of the shortcut `bytes` lies within it and has the length that it claims. What the parts name
/// doesn't matter.
bool IsWholeShortcut(std::string_view bytes);

/// Whether the file is a shortcut by its name, whatever its case.
bool IsShortcut(const std::wstring &path);

/// Whether the file at the expanded `path` is by its name a shortcut that isn't whole, which is logged. The shell must
/// not be given it. False for what can't be read, which the shell can't read either.
bool IsDamagedShortcut(const std::wstring &path);

} // namespace lumenor
