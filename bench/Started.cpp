#include "Started.h"

#include <psapi.h>

#include "system/HResultError.h"

namespace lumenor::bench {

Started::Started(std::wstring commandLine) {
  STARTUPINFOW start = {};
  start.cb = sizeof(start);
  PROCESS_INFORMATION started = {};
  ThrowIfFalse(
      ::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &started));
  const KernelHandle thread(started.hThread);
  process.Reset(started.hProcess);
}

Started::~Started() {
  ::TerminateProcess(process.Get(), 0);
  ::WaitForSingleObject(process.Get(), 5000);
}

double Started::PeakPrivateMegabytes() const {
  PROCESS_MEMORY_COUNTERS counters = {};
  ThrowIfFalse(::GetProcessMemoryInfo(process.Get(), &counters, sizeof(counters)));
  return static_cast<double>(counters.PeakPagefileUsage) / (1024 * 1024);
}

} // namespace lumenor::bench
