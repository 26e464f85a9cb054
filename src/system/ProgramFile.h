#pragma once
// Programs, libraries and icon files before the platform reads their icons and texts: some versions of it follow the
// offsets and lengths in a damaged one out of the file, within this process. Stateless; any thread.

#include <string>

namespace lumenor {

/// The resources that are to be read.
enum class ProgramPart { Icons, Texts };

/// Whether the file at the expanded `path` is by its first bytes a program or a file of icons, of which not all of
/// these resources lie within it or are what they claim, which is logged. The platform must not read them. False for a
/// file of another kind, for one that has none of them and for one that can't be opened.
bool IsDamagedProgram(const std::wstring &path, ProgramPart part);

} // namespace lumenor
