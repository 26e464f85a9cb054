// The entry function of every test program.
//
// A crash under the test platform can end a process with status 0, and an assertion that fails opens a dialog that
// nobody sees. Both end the process here with a status of their own; the runner also demands the closing count.

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/GuardedMemory.h"
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

/// Has the platform look at all its heaps after each test, which those tell that check what stands around their blocks.
class HeapCheck : public ::testing::EmptyTestEventListener {
  void OnTestEnd(const ::testing::TestInfo &) override {
    HANDLE heaps[64];
    const DWORD count = std::min<DWORD>(::GetProcessHeaps(std::size(heaps), heaps), std::size(heaps));
    for (DWORD i = 0; i < count; ++i)
      EXPECT_TRUE(::HeapValidate(heaps[i], 0, nullptr)) << "a heap of the platform is damaged";
  }
};

void GuardAllMemory() {
  ::testing::UnitTest::GetInstance()->listeners().Append(new HeapCheck);
  lumenor::tests::GuardMemory();
}

} // namespace

int main(int argumentCount, char **arguments) {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  ::SetUnhandledExceptionFilter(EndOnCrash);
  std::signal(SIGABRT, [](int) { __builtin_trap(); });
  ::SetProcessDPIAware(); // as the product's manifest says of the dock
  ::testing::InitGoogleMock(&argumentCount, arguments);
  if (::GetEnvironmentVariableW(lumenor::tests::guardVariable, nullptr, 0) != 0)
    GuardAllMemory();
  return RUN_ALL_TESTS();
}
