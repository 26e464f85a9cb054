#pragma once
// Starting other programs.

#include <string>

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor::tests {

struct StartedProgram {
  KernelHandle process; // none where it couldn't be started, which has been printed
  DWORD id = 0;
};

/// What CreateProcessW is told besides the command line.
struct StartOptions {
  DWORD flags = 0;
  bool inheritsHandles = false;
  STARTUPINFOW startup = {}; // its size is set by StartProgram
};

/// Starts a program by its command line. Wine 8 seems to lose a new process ahead of its first instruction once in many
/// thousands, with ERROR_INTERNAL_ERROR; it is started again then, twice at most.
StartedProgram StartProgram(const std::wstring &commandLine, StartOptions options = {});

} // namespace lumenor::tests
