#include "app/CommandLine.h"

#include <algorithm>

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
  return std::all_of(arguments.Get(), arguments.Get() + count,
                     [](PCWSTR argument) { return argument[0] == L'-' || argument[0] == L'/'; });
}

} // namespace lumenor
