#pragma once
// The command line of the dock, which has no options of its own. Any thread.

#include <string>

namespace lumenor {

/// True when every argument of `commandLine` (without the program's name) begins with "-" or "/", as an option does.
/// Which options they are doesn't matter.
bool CheckCommandLine(const std::wstring &commandLine);

} // namespace lumenor
