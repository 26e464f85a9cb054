#include "app/CommandLine.h"

#include "system/Windows.h"

#include <shellapi.h>

#include "system/Handles.h"

namespace lumenor {

bool CheckCommandLine(const std::wstring &commandLine) {
  if (commandLine.empty())
    return true;
  int count = 0;
  const LocalMemory<PWSTR> arguments(::CommandLineToArgvW(commandLine.c_str(), &count));
  if (!arguments)
    return true;
  bool passed = true;
  for (int i = 0; i < count; ++i) {
    const wchar_t first = arguments.Get()[i][0];
    passed = passed && (first == L'-' || first == L'/');
  }
  return passed;
}

} // namespace lumenor
