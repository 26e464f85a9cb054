#include "system/Log.h"

#include <algorithm>
#include <cstdio>

#include <gmock/gmock.h>

#include "ChildRun.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"
#include "system/Handles.h"
#include "system/LogFiles.h"
#include "system/Windows.h"

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::EnvironmentValue;
using tests::LogCapture;
using tests::TestFolders;

static_assert(FormatFits<>("100%% of nothing"));
static_assert(FormatFits<const wchar_t *, int>("%S and %08x"));
static_assert(FormatFits<const char *, unsigned long>("%-20s%d"));
static_assert(!FormatFits<const char *>("%S"), "an 8-bit string is no wide one");
static_assert(!FormatFits<const wchar_t *>("%s"), "a wide string is no 8-bit one");
static_assert(!FormatFits<int>("%S"));
static_assert(!FormatFits<long long>("%d"), "64 bits are more than the conversion takes");
static_assert(!FormatFits<>("%d"), "a conversion without an argument");
static_assert(!FormatFits<int>("none"), "an argument without a conversion");
static_assert(!FormatFits<int>("%"), "a conversion that isn't finished");

void LogEachKind() {
  LogInfo("one");
  LogError("two");
  LogFatal("three");
}

std::vector<std::string> LinesAtLevel(std::int32_t level) {
  const TestFolders folders;
  const LogCapture log(folders, level);
  LogEachKind();
  return log.Lines();
}

TEST(LogLevel, EachLevelAddsTheMoreSevereKind) {
  EXPECT_THAT(LinesAtLevel(0), IsEmpty());
  EXPECT_THAT(LinesAtLevel(1), ElementsAre("INFO: one"));
  EXPECT_THAT(LinesAtLevel(2), ElementsAre("INFO: one", "ERROR: two"));
  EXPECT_THAT(LinesAtLevel(3), ElementsAre("INFO: one", "ERROR: two", "FATAL: three"));
  EXPECT_THAT(LinesAtLevel(99), ElementsAre("INFO: one", "ERROR: two", "FATAL: three"));
}

TEST(LogLevel, ANegativeLevelWritesNothing) {
  EXPECT_THAT(LinesAtLevel(-1), IsEmpty());
  EXPECT_THAT(LinesAtLevel(INT32_MIN), IsEmpty());
}

TEST(LogLevel, OffMakesNoFile) {
  const TestFolders folders;
  const LogCapture log(folders, 0);
  LogEachKind();
  EXPECT_THAT(tests::ListFolder(log.Folder()), IsEmpty());
}

TEST(LogLevel, IsTheNumberInTheEnvironment) {
  const EnvironmentValue variable(L"LUMENOR_LOGGING", L"2");
  EXPECT_EQ(2, ReadLogLevel());
  variable.Set(L"-7 or so");
  EXPECT_EQ(-7, ReadLogLevel());
  variable.Set(L"on");
  EXPECT_EQ(0, ReadLogLevel());
  variable.Set(L"");
  EXPECT_EQ(0, ReadLogLevel());
  variable.Remove();
  EXPECT_EQ(0, ReadLogLevel());
}

TEST(LogLevel, IsReadBeforeTheEntryFunction) {
  if (tests::IsChildRun()) {
    EXPECT_EQ(3, LogLevel);
    return;
  }
  EXPECT_EQ(0u, tests::RunThisTestAsChild({{L"LUMENOR_LOGGING", L"3"}}).exitCode);
}

TEST(LogLevel, StaysWhatItWasAtTheStart) {
  if (!tests::IsChildRun()) {
    EXPECT_EQ(0u, tests::RunThisTestAsChild({{L"LUMENOR_LOGGING", L"1"}}).exitCode);
    return;
  }
  const TestFolders folders;
  const std::wstring logs = folders.CommonFolder() + L"\\Logs";
  tests::MakeFolders(logs);
  const EnvironmentValue variable(L"LUMENOR_LOGGING", L"3");
  LogEachKind();
  EXPECT_TRUE(tests::ReadBytes(logs + L"\\RollingDock.log").ends_with("\tINFO: one\r\n"));
  variable.Set(L"0");
  LogEachKind();
  const std::string written = tests::ReadBytes(logs + L"\\RollingDock.log");
  EXPECT_EQ(2, std::count(written.begin(), written.end(), '\n'));
}

TEST(LogLine, IsFormattedLikePrintf) {
  const TestFolders folders;
  const LogCapture log(folders);
  LogInfo("%S has %d of %s, 100%%", L"wide", -3, "narrow");
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: wide has -3 of narrow, 100%"));
}

TEST(LogLine, StampIsPaddedWithBlanksAndEndsInATab) {
  SYSTEMTIME time = {2024, 3, 0, 7, 5, 4, 9, 6};
  EXPECT_EQ("2024. 3. 7- 5: 4: 9.6 UTC\t", FormatLogTimestamp(time));
  time = {2024, 12, 0, 31, 23, 59, 58, 999};
  EXPECT_EQ("2024.12.31-23:59:58.999 UTC\t", FormatLogTimestamp(time));
}

TEST(LogLine, BeginsWithTheTimeInUtcAndEndsInALineBreak) {
  const TestFolders folders;
  const LogCapture log(folders);
  SYSTEMTIME before = {}, after = {};
  ::GetSystemTime(&before);
  LogInfo("text");
  ::GetSystemTime(&after);
  const std::string line = tests::ReadBytes(log.CurrentLog());
  const std::string stamp = line.substr(0, line.find('\t') + 1);
  int fields[7] = {};
  ASSERT_EQ(7, std::sscanf(stamp.c_str(), "%d.%d.%d-%d:%d:%d.%d UTC", &fields[0], &fields[1], &fields[2], &fields[3],
                           &fields[4], &fields[5], &fields[6]));
  const SYSTEMTIME told = {static_cast<WORD>(fields[0]), static_cast<WORD>(fields[1]), 0,
                           static_cast<WORD>(fields[2]), static_cast<WORD>(fields[3]), static_cast<WORD>(fields[4]),
                           static_cast<WORD>(fields[5]), static_cast<WORD>(fields[6])};
  EXPECT_EQ(stamp, FormatLogTimestamp(told));
  FILETIME earliest, latest, written;
  ::SystemTimeToFileTime(&before, &earliest);
  ::SystemTimeToFileTime(&after, &latest);
  ::SystemTimeToFileTime(&told, &written);
  EXPECT_LE(::CompareFileTime(&earliest, &written), 0);
  EXPECT_LE(::CompareFileTime(&written, &latest), 0);
  EXPECT_EQ("INFO: text\r\n", line.substr(stamp.size()));
}

TEST(LogLine, HasNoLengthLimit) {
  const TestFolders folders;
  const LogCapture log(folders);
  const std::wstring text(70000, L'x');
  LogInfo("<%S>", text.c_str());
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: <" + std::string(70000, 'x') + ">"));
}

TEST(LogLine, OfAnEmptyMessageIsWritten) {
  const TestFolders folders;
  const LogCapture log(folders);
  LogInfo("%S", L"");
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: "));
}

TEST(LogLine, HoldsTheBytesOfTheFormatCall) {
  const TestFolders folders;
  const LogCapture log(folders);
  LogInfo("%S", L"Gr\u00FC\u00DFe");
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Gr\xFC\xDF"
                                       "e"));
}

TEST(LogLine, ThatTheFormatCallRefusesIsLost) {
  const TestFolders folders;
  const LogCapture log(folders);
  LogInfo("%S", L"\u65E5\u672C");
  LogInfo("next");
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: next"));
}

TEST(LogLine, IsLostWhileTheFileIsLocked) {
  const TestFolders folders;
  const LogCapture log(folders);
  LogInfo("first");
  {
    const FileHandle locked(::CreateFileW(log.CurrentLog().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(locked);
    LogInfo("second");
  }
  LogInfo("third");
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: first", "INFO: third"));
}

TEST(LogLine, IsLostWhileTheFileMayOnlyBeRead) {
  const TestFolders folders;
  const LogCapture log(folders);
  LogInfo("first");
  const FileHandle reader(::CreateFileW(log.CurrentLog().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
  ASSERT_TRUE(reader);
  LogInfo("second");
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: first"));
}

TEST(LogLine, LeavesNoHandleOpen) {
  const TestFolders folders;
  const LogCapture log(folders);
  LogInfo("text");
  const FileHandle alone(::CreateFileW(log.CurrentLog().c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                       OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  EXPECT_TRUE(alone) << "the file can't be opened for one alone";
}

TEST(LogLine, IsWrittenWhileAnotherProgramReadsAndWrites) {
  const TestFolders folders;
  const LogCapture log(folders);
  const FileHandle other(::CreateFileW(log.CurrentLog().c_str(), GENERIC_READ | GENERIC_WRITE,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS, 0, nullptr));
  ASSERT_TRUE(other);
  LogInfo("text");
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: text"));
}

TEST(LogFolder, IsMadeBelowAnExistingFolder) {
  const TestFolders folders;
  tests::MakeFolders(folders.CommonFolder());
  EnsureLogFolder();
  EXPECT_TRUE(tests::Exists(folders.CommonFolder() + L"\\Logs"));
}

TEST(LogFolder, ParentsAreNotMade) {
  const TestFolders folders;
  EnsureLogFolder();
  EXPECT_THAT(tests::ListFolder(folders.ProgramData()), IsEmpty());
}

TEST(LogFolder, WithoutItLogCallsReturnNormally) {
  const TestFolders folders;
  const LogCapture log(folders);
  tests::DeleteTree(folders.ProgramData());
  tests::WriteBytes(folders.ProgramData(), "a file in the folder's place");
  EnsureLogFolder();
  LogEachKind();
  EXPECT_EQ("a file in the folder's place", tests::ReadBytes(folders.ProgramData()));
}

TEST(LogFolder, IsFoundByAVariableInAnyCase) {
  const TestFolders folders;
  const LogCapture log(folders);
  const EnvironmentValue other(L"PROGRAMDATA", folders.Root() + L"\\E");
  tests::MakeFolders(folders.Root() + L"\\E\\Tarnwick\\Lumenor\\Logs");
  LogInfo("text");
  EXPECT_THAT(tests::ListFolder(folders.Root() + L"\\E\\Tarnwick\\Lumenor\\Logs"), ElementsAre(L"RollingDock.log"));
}

} // namespace
} // namespace lumenor
