// The entry function itself.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/Desk.h"
#include "support/ImportSlot.h"
#include "support/LogCapture.h"
#include "support/OptIn.h"
#include "support/TestFolders.h"
#include "system/EventLog.h"
#include "system/Instance.h"
#include "tracking/UsageTracker.h"

extern "C" decltype(&::RegisterWindowMessageW) __imp_RegisterWindowMessageW;
extern "C" decltype(&::SystemTimeToFileTime) __imp_SystemTimeToFileTime;

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int);

namespace lumenor {

namespace {

BOOL WINAPI HaveNoTime(const SYSTEMTIME *, LPFILETIME) {
  ::SetLastError(ERROR_INVALID_PARAMETER);
  return FALSE;
}

UINT WINAPI RegisterNothing(LPCWSTR) { return 0; }

TEST(Entry, EndsWhereTheMessageOfASecondStartCannotBeRegistered) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  const desk::EventLogSpy eventLog;
  const tests::CurrentFolder current(folders.Root());
  const tests::ImportSlot nothing(&__imp_RegisterWindowMessageW, &RegisterNothing);
  wchar_t noWords[] = L"";
  EXPECT_EQ(-1, ::wWinMain(instanceHandle, nullptr, noWords, SW_SHOW));
  EXPECT_EQ((std::vector<std::string>{"INFO: Dock Startup"}), log.Lines());
  EXPECT_EQ((std::vector<std::wstring>{}), eventLog.Reports());
}

TEST(Entry, ReportsAFailureAheadOfTheFirstCycleAndEnds) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  const tests::OptIn optIn(folders);
  const desk::EventLogSpy eventLog;
  const tests::CurrentFolder current(folders.Root()); // the entry function goes elsewhere
  const tests::ImportSlot noTime(&__imp_SystemTimeToFileTime, &HaveNoTime);
  wchar_t noWords[] = L"";
  int exitCode = 0;
  EXPECT_NO_THROW(exitCode = ::wWinMain(instanceHandle, nullptr, noWords, SW_SHOW));
  usageTracker = UsageTracker();
  EXPECT_EQ(-1, exitCode);
  EXPECT_EQ((std::vector<std::wstring>{L"Failed to initialize Lumenor"}), eventLog.Reports());
  const std::vector<std::string> lines = log.Lines();
  ASSERT_LE(2U, lines.size());
  EXPECT_EQ("FATAL: Failed to initialize Lumenor", lines[lines.size() - 2]);
  EXPECT_EQ(0U,
            lines.back().rfind("ERROR: Failed to initialize Lumenor: a call failed with 0x80070057 at tracking/", 0))
      << lines.back();
}

} // namespace

} // namespace lumenor
