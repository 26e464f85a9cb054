#pragma once
// Reading files from their beginning to their end. Stateless; any thread.

#include <string>
#include <string_view>

#include "system/Handles.h"

namespace lumenor {

/// The file at the expanded `path`, opened for reading beside other readers; empty when the platform can't open it.
FileHandle OpenForReading(const std::wstring &path);

/// The same; a file that is in use is tried again for a while. A failure sets the last error.
FileHandle OpenForReadingWhenFree(const std::wstring &path);

/// The next 1024 bytes of `file`, or what is left of them, in `buffer`; empty at the end of the file and when the
/// platform can't read on.
std::string_view ReadPiece(HANDLE file, std::string &buffer);

/// All bytes of the file at the expanded `path`, which is tried again for a while when it is in use. Raises
/// HResultError.
std::string ReadWholeFile(const std::wstring &path);

} // namespace lumenor
