#pragma once
// The command line of the dock, which has no options of its own. Any thread.

#include <string>

namespace lumenor {

/// True when every argument of `commandLine` (without the program's name) is written as an option, that is, begins
/// with "-" or "/". Which options they are isn't looked at.
bool CheckCommandLine(const std::wstring &commandLine);

} // namespace lumenor
