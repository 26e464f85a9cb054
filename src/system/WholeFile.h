#pragma once
// Persistent files: written whole or not at all, also when the disk is full, the process is killed or the power fails.
// Any thread.

#include <string>
#include <string_view>

namespace lumenor {

/// Writes `bytes` over the file at the expanded `path`. They are written to a file beside it, of the same name with
/// ".new" behind it, which then takes its place in one step; a hidden file stays hidden. Raises HResultError: the old
/// file is then as it was, and nothing is left beside it. A file that is in use is tried again for a while; a folder
/// and a read-only file are refused.
void WriteWholeFile(const std::wstring &path, std::string_view bytes);

} // namespace lumenor
