// A test program that hangs: sleeper [seconds]. It reports that a test has begun, and sleeps in two threads, for ever
// without an argument.

#include <cstdio>
#include <cstdlib>

#include "system/Windows.h"

namespace {

DWORD sleepMs = INFINITE;

DWORD WINAPI SleepBesideMain(void *) {
  ::Sleep(sleepMs);
  return 0;
}

} // namespace

int main(int argumentCount, char **arguments) {
  if (argumentCount > 1)
    sleepMs = static_cast<DWORD>(std::atoi(arguments[1])) * 1000;
  std::puts("[ RUN      ] Sleeper.Sleeps");
  std::fflush(stdout);
  ::CloseHandle(::CreateThread(nullptr, 0, SleepBesideMain, nullptr, 0, nullptr));
  ::Sleep(sleepMs);
}
