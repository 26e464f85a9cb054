#include "support/StartProgram.h"

#include <cstdio>

#include "support/TestFolders.h"

namespace lumenor::tests {

StartedProgram StartProgram(const std::wstring &commandLine, StartOptions options) {
  constexpr int mostStarts = 3;
  options.startup.cb = sizeof options.startup;
  for (int i = 0; i < mostStarts; ++i) {
    std::wstring words = commandLine; // the platform writes into it
    PROCESS_INFORMATION started = {};
    if (::CreateProcessW(nullptr, words.data(), nullptr, nullptr, options.inheritsHandles, options.flags, nullptr,
                         nullptr, &options.startup, &started)) {
      const KernelHandle thread(started.hThread);
      return {KernelHandle(started.hProcess), started.dwProcessId};
    }
    const DWORD error = ::GetLastError();
    std::printf("%s can't be started, error %lu\n", Utf8(commandLine).c_str(), error);
    if (error != ERROR_INTERNAL_ERROR)
      break;
  }
  return {};
}

} // namespace lumenor::tests
