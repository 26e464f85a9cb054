// The entry function of every test program.
//
// A crash under the test platform can end a process with status 0, and an assertion that fails opens a dialog that
// nobody sees. Both end the process here with a status of their own; the runner also demands the closing count.

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "system/Windows.h"

namespace {

constexpr int crashStatus = 70;

LONG WINAPI EndOnCrash(EXCEPTION_POINTERS *pointers) {
  std::fprintf(stderr, "crash: exception %08lx at %p\n", pointers->ExceptionRecord->ExceptionCode,
               pointers->ExceptionRecord->ExceptionAddress);
  std::fflush(stderr);
  ::TerminateProcess(::GetCurrentProcess(), crashStatus);
  return EXCEPTION_EXECUTE_HANDLER;
}

} // namespace

int main(int argumentCount, char **arguments) {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  ::SetUnhandledExceptionFilter(EndOnCrash);
  std::signal(SIGABRT, [](int) { __builtin_trap(); });
  ::testing::InitGoogleMock(&argumentCount, arguments);
  return RUN_ALL_TESTS();
}
