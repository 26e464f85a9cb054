#pragma once
// Stored command lines and the start of programs. Stateless; any thread that may call the shell.

#include <string>

namespace lumenor {

/// The parts of a stored command line.
struct CommandLine {
  std::wstring program;
  std::wstring arguments;
};

/// Splits a stored command line. The program may be quoted; unquoted it ends at the first blank behind which the text
/// before it is an existing file. The program is returned mapped and expanded, the arguments unchanged.
CommandLine SplitCommandLine(const std::wstring &commandLine);

/// Whether the shell can be given `text` to open. A longer one, with its variables expanded, is written past the end of
/// a buffer by some versions of the shell, within this process.
bool FitsShell(const std::wstring &text);

/// Opens the file `program` through the shell, in a normal window; `arguments` may be empty. A failure is silent by
/// design: the user sees that nothing opened. A program whose name doesn't fit the shell isn't opened and gets a log
/// line.
void OpenWithShell(const std::wstring &program, const std::wstring &arguments);

} // namespace lumenor
