// A test program that hangs: sleeper [seconds]. It says that a test has begun, and sleeps, for ever without an
// argument, in two threads.

#include <cstdio>
#include <cstdlib>

#include "system/Windows.h"

namespace {

DWORD forHowLongMs = INFINITE;

DWORD WINAPI SleepBesideMain(void *) {
  ::Sleep(forHowLongMs);
  return 0;
}

} // namespace

int main(int argumentCount, char **arguments) {
  if (argumentCount > 1)
    forHowLongMs = static_cast<DWORD>(std::atoi(arguments[1])) * 1000;
  std::puts("[ RUN      ] Sleeper.Sleeps");
  std::fflush(stdout);
  ::CloseHandle(::CreateThread(nullptr, 0, SleepBesideMain, nullptr, 0, nullptr));
  ::Sleep(forHowLongMs);
}
