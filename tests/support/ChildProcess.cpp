#include "support/ChildProcess.h"

#include <cstdio>

#include "support/StartProgram.h"

namespace lumenor::tests {

namespace {

using Clock = std::chrono::steady_clock;

std::string (*describeAddress)(const void *address) = nullptr;

LONG WINAPI EndWithALine(EXCEPTION_POINTERS *pointers) {
  const void *const address = pointers->ExceptionRecord->ExceptionAddress;
  std::printf("crash: exception %08lx at %p %s\n", pointers->ExceptionRecord->ExceptionCode, address,
              describeAddress == nullptr ? "" : describeAddress(address).c_str());
  std::fflush(stdout);
  ::TerminateProcess(::GetCurrentProcess(), childCrashStatus);
  return EXCEPTION_EXECUTE_HANDLER;
}

} // namespace

void EndOnCrash(std::string (*describe)(const void *address)) {
  describeAddress = describe;
  ::SetUnhandledExceptionFilter(EndWithALine);
}

KernelHandle StartAgain(const std::wstring &words) {
  wchar_t path[MAX_PATH] = {};
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  return StartProgram(L"\"" + std::wstring(path) + L"\" " + words, {.inheritsHandles = true}).process;
}

DWORD WaitForChild(HANDLE process, const std::atomic<std::uint64_t> &progress, std::chrono::seconds longestSilence) {
  std::uint64_t last = progress;
  Clock::time_point moved = Clock::now();
  while (::WaitForSingleObject(process, 100) == WAIT_TIMEOUT) {
    if (progress != last) {
      last = progress;
      moved = Clock::now();
    } else if (Clock::now() - moved > longestSilence) {
      std::printf("hung\n");
      ::TerminateProcess(process, childCrashStatus);
    }
  }
  DWORD status = childCrashStatus;
  ::GetExitCodeProcess(process, &status);
  return status;
}

} // namespace lumenor::tests
