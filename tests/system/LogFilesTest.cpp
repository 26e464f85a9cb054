#include "system/LogFiles.h"

#include <gmock/gmock.h>

#include "support/LogCapture.h"
#include "support/TestFolders.h"
#include "system/Log.h"

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::EnvironmentValue;
using tests::LogCapture;
using tests::TestFolders;

constexpr wchar_t currentLog[] = L"%ProgramData%\\Tarnwick\\Lumenor\\Logs\\RollingDock.log";
constexpr wchar_t logFolder[] = L"%ProgramData%\\Tarnwick\\Lumenor\\Logs\\";

constexpr std::size_t rollSize = 102400;

/// The name of the log that is rolled `seconds` after now.
std::wstring RolledName(int seconds) {
  FILETIME moment;
  ::GetSystemTimeAsFileTime(&moment);
  ULARGE_INTEGER ticks = {{moment.dwLowDateTime, moment.dwHighDateTime}};
  ticks.QuadPart += static_cast<ULONGLONG>(seconds) * 10000000;
  moment = {ticks.LowPart, ticks.HighPart};
  SYSTEMTIME time;
  ::FileTimeToSystemTime(&moment, &time);
  wchar_t name[80] = {};
  ::wsprintfW(name, L"RollingDock.%d-%d-%d.%d.%d.%d.log", time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute,
              time.wSecond);
  return name;
}

class LogFiles : public testing::Test {
protected:
  void FillCurrentLog(std::size_t size) { tests::WriteBytes(log.CurrentLog(), std::string(size, 'x')); }

  /// Rolled logs of other days, named "RollingDock.a<number>.log".
  void MakeRolledLogs(int count) {
    for (int i = 0; i < count; ++i)
      tests::WriteBytes(log.Folder() + L"\\RollingDock.a" + std::to_wstring(i) + L".log", "old");
  }

  std::vector<std::wstring> Names() const { return tests::ListFolder(log.Folder()); }

  const TestFolders folders;
  const LogCapture log{folders};
};

TEST_F(LogFiles, ALogOfExactlyTheSizeDoesNotRoll) {
  FillCurrentLog(rollSize);
  LogInfo("next");
  EXPECT_THAT(Names(), ElementsAre(L"RollingDock.log"));
  EXPECT_EQ(std::string(rollSize, 'x'), tests::ReadBytes(log.CurrentLog()).substr(0, rollSize));
  EXPECT_GT(tests::ReadBytes(log.CurrentLog()).size(), rollSize);
}

TEST_F(LogFiles, ALogOfAByteMoreRollsBeforeTheNextLine) {
  FillCurrentLog(rollSize + 1);
  const std::wstring earliest = RolledName(0);
  LogInfo("next");
  const std::wstring latest = RolledName(0);
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: next"));
  ASSERT_THAT(Names(), SizeIs(2));
  EXPECT_THAT(Names()[0], testing::AnyOf(earliest, latest));
  EXPECT_EQ(std::string(rollSize + 1, 'x'), tests::ReadBytes(log.Folder() + L"\\" + Names()[0]));
}

TEST_F(LogFiles, OneLineMayPassTheSize) {
  FillCurrentLog(rollSize);
  LogInfo("passes");
  LogInfo("next");
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: next"));
  EXPECT_THAT(Names(), SizeIs(2));
}

TEST_F(LogFiles, ATakenNameLeavesTheCurrentLogToGrow) {
  for (int seconds = 0; seconds < 20; ++seconds) // whichever second it is by then
    tests::WriteBytes(log.Folder() + L"\\" + RolledName(seconds), "taken");
  FillCurrentLog(rollSize + 1);
  RollLogFile(currentLog);
  EXPECT_EQ(std::string(rollSize + 1, 'x'), tests::ReadBytes(log.CurrentLog()));
  EXPECT_EQ("taken", tests::ReadBytes(log.Folder() + L"\\" + RolledName(0)));
}

TEST_F(LogFiles, ListingHasUnexpandedPathsOfRolledLogsAlone) {
  MakeRolledLogs(2);
  FillCurrentLog(1);
  tests::WriteBytes(log.Folder() + L"\\Other.1.log", "");
  EXPECT_THAT(ListRolledLogs(), testing::UnorderedElementsAre(std::wstring(logFolder) + L"RollingDock.a0.log",
                                                              std::wstring(logFolder) + L"RollingDock.a1.log"));
}

TEST_F(LogFiles, ListingWithoutRolledLogsIsEmpty) {
  FillCurrentLog(1);
  EXPECT_THAT(ListRolledLogs(), IsEmpty());
  tests::DeleteTree(log.Folder());
  EXPECT_THAT(ListRolledLogs(), IsEmpty());
}

TEST_F(LogFiles, WithTenRolledLogsAFurtherRollDeletesTheListingsFirst) {
  MakeRolledLogs(10);
  FillCurrentLog(rollSize + 1);
  RollLogFile(currentLog);
  std::vector<std::wstring> listing = ListRolledLogs();
  ASSERT_THAT(listing, SizeIs(11));
  PruneLogFiles();
  listing.erase(listing.begin());
  EXPECT_EQ(listing, ListRolledLogs());
}

TEST_F(LogFiles, ARollByALinePrunes) {
  MakeRolledLogs(10);
  FillCurrentLog(rollSize + 1);
  LogInfo("next");
  EXPECT_THAT(ListRolledLogs(), SizeIs(10));
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: next"));
}

TEST_F(LogFiles, WithNineRolledLogsAFurtherRollDeletesNone) {
  MakeRolledLogs(9);
  FillCurrentLog(rollSize + 1);
  LogInfo("next");
  EXPECT_THAT(ListRolledLogs(), SizeIs(10));
  for (int i = 0; i < 9; ++i)
    EXPECT_TRUE(tests::Exists(log.Folder() + L"\\RollingDock.a" + std::to_wstring(i) + L".log"));
}

TEST_F(LogFiles, WithMoreThanElevenTheListingsFirstGo) {
  MakeRolledLogs(14);
  std::vector<std::wstring> listing = ListRolledLogs();
  PruneLogFiles();
  listing.erase(listing.begin(), listing.begin() + 4);
  EXPECT_EQ(listing, ListRolledLogs());
}

TEST_F(LogFiles, ALogThatCantBeDeletedIsPassedOver) {
  MakeRolledLogs(11);
  const std::vector<std::wstring> listing = ListRolledLogs();
  const std::wstring first = log.Folder() + listing[0].substr(listing[0].find_last_of(L'\\'));
  ::SetFileAttributesW(first.c_str(), FILE_ATTRIBUTE_READONLY);
  PruneLogFiles();
  EXPECT_EQ(listing, ListRolledLogs());
}

TEST_F(LogFiles, APercentSignInTheFolderIsFormatText) {
  // "%%" in the folder's name is formatted to "%": the log rolls into the folder of that name.
  const EnvironmentValue programData(L"ProgramData", folders.Root() + L"\\a%%b");
  tests::WriteBytes(folders.Root() + L"\\a%%b\\Tarnwick\\Lumenor\\Logs\\RollingDock.log", "old");
  tests::MakeFolders(folders.Root() + L"\\a%b\\Tarnwick\\Lumenor\\Logs");
  RollLogFile(currentLog);
  EXPECT_THAT(tests::ListFolder(folders.Root() + L"\\a%%b\\Tarnwick\\Lumenor\\Logs"), IsEmpty());
  const auto rolled = tests::ListFolder(folders.Root() + L"\\a%b\\Tarnwick\\Lumenor\\Logs");
  ASSERT_THAT(rolled, SizeIs(1));
  EXPECT_EQ("old", tests::ReadBytes(folders.Root() + L"\\a%b\\Tarnwick\\Lumenor\\Logs\\" + rolled[0]));
}

class UnformattableFolder : public testing::TestWithParam<const wchar_t *> {};

TEST_P(UnformattableFolder, LeavesTheCurrentLogToGrow) {
  const TestFolders folders;
  const LogCapture log(folders);
  const std::wstring folder = folders.Root() + L"\\" + GetParam();
  const EnvironmentValue programData(L"ProgramData", folder);
  const std::wstring current = folder + L"\\Tarnwick\\Lumenor\\Logs\\RollingDock.log";
  tests::WriteBytes(current, std::string(rollSize + 1, 'x'));
  LogInfo("next");
  EXPECT_THAT(tests::ListFolder(folder + L"\\Tarnwick\\Lumenor\\Logs"), ElementsAre(L"RollingDock.log"));
  EXPECT_GT(tests::ReadBytes(current).size(), rollSize + 1);
}

INSTANTIATE_TEST_SUITE_P(LogFiles, UnformattableFolder,
                         testing::Values(L"%s", L"%n", L"%S%S", L"100 %", L"%99999d", L"%f", L"%.3d", L"%d",
                                         L"a name that is much longer than the buffer of a hundred characters leaves "
                                         L"room for, so that the rolled path doesn't fit"));

} // namespace
} // namespace lumenor
