#pragma once
// Paths: expansion of environment variables, the files of the installation, and small look-ups. Paths are stored
// unexpanded and expanded at the moment of use. Stateless; any thread; nothing here raises on a missing file.

#include <string>

#include "system/Windows.h"

namespace lumenor {

/// `text` with its environment variables expanded; `text` itself when the platform can't expand it. No failure of the
/// platform raises.
std::wstring ExpandPath(const std::wstring &text);

/// Whether the platform finds a file or folder at the expanded `path`.
bool PathExists(const std::wstring &path);

/// Whether the platform says that nothing is at the expanded `path`. False also when it doesn't know, as with a folder
/// on a server that doesn't respond, or when the path still begins with a variable: a file that may be there must not
/// be replaced.
bool PathIsMissing(const std::wstring &path);

/// Whether the platform finds a file at the expanded `path`; a folder isn't one.
bool FileExists(const std::wstring &path);

/// What follows the last "\" of `path`. Without a "\", what precedes the last "/" less one character: the asymmetry is
/// intentional. Empty without either.
std::wstring FileNamePart(const std::wstring &path);

/// What precedes the last "\" of `path`, or else the last "/"; empty without either.
std::wstring FolderPart(const std::wstring &path);

/// When the file was last written; zero when it can't be opened. One that another program has open is tried again for
/// 250 ms.
FILETIME LastWriteTime(const std::wstring &path);

/// The expanded path of the main application: the candidate that exists, or else the one under %programfiles%.
std::wstring MainAppPath();

/// The expanded installation folder, chosen in the same way.
std::wstring InstallFolder();

/// The expanded path of the installed dock, chosen in the same way.
std::wstring DockExePath();

/// A stored path that names %programfiles% and exists only under %programfiles(x86)%, rewritten to that; any other path
/// as it stands. The result is unexpanded.
std::wstring MapProgramFiles(const std::wstring &path);

} // namespace lumenor
