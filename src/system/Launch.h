#pragma once
// Stored command lines and the start of programs. Stateless; any thread that may call the shell.

#include <string>

namespace lumenor {

/// A stored command line taken apart.
struct CommandLine {
  std::wstring program;
  std::wstring arguments;
};

/// Splits a stored command line. The program may be quoted; unquoted it ends at the first blank behind which the text
/// before it is an existing file. The program comes back mapped and expanded, the arguments as they stand.
CommandLine SplitCommandLine(const std::wstring &commandLine);

/// Opens `program` (a file or an address) through the shell, in a normal window; `arguments` may be empty. A failure is
/// silent by design: the user sees that nothing opened.
void OpenWithShell(const std::wstring &program, const std::wstring &arguments);

} // namespace lumenor
