#include "Started.h"

#include <psapi.h>

#include "support/StartProgram.h"
#include "system/HResultError.h"

namespace lumenor::bench {

Started::Started(const std::wstring &commandLine) {
  process = tests::StartProgram(commandLine).process;
  if (!process)
    throw HResultError(E_FAIL);
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
