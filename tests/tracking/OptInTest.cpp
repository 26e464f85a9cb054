// Whether the user agreed, according to the collector's ini file.

#include "tracking/Tracking.h"

#include "system/Handles.h"
#include "system/HResultError.h"
#include "tracking/Collector.h"

#include <psapi.h>

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OptIn : public Tracking {
protected:
  bool Agreed(const std::string &content) {
    WriteIni(content);
    UsageTracker fresh;
    fresh.ReadOptIn();
    return fresh.IsEnabled();
  }

  /// The most memory that this process ever had.
  static std::size_t PeakMemory() {
    PROCESS_MEMORY_COUNTERS counters = {};
    ::K32GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters);
    return counters.PeakWorkingSetSize;
  }

  /// A file of `size` bytes, all of them blanks but for `end`.
  void WriteBigIni(std::size_t size, const std::string &end) const {
    WriteIni("");
    const FileHandle file(::CreateFileW(IniFile().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    const std::string blanks(65536, ' ');
    DWORD written = 0;
    for (std::size_t left = size - end.size(); left != 0; left -= written)
      ::WriteFile(file.Get(), blanks.data(), static_cast<DWORD>(std::min(left, blanks.size())), &written, nullptr);
    ::WriteFile(file.Get(), end.data(), static_cast<DWORD>(end.size()), &written, nullptr);
  }
};

TEST_F(OptIn, IsOffBeforeItIsRead) { EXPECT_FALSE(tracker.IsEnabled()); }

TEST_F(OptIn, ALineOfTheFileTurnsItOn) {
  WriteIni("[Choice]\nTrack=1\n");
  tracker.ReadOptIn();
  EXPECT_TRUE(tracker.IsEnabled());
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: RUQMENT: RuqOptIn=1"));
}

TEST_F(OptIn, AFileThatSaysNothingLeavesItOff) {
  WriteIni("[Choice]\nTrack=0\n");
  tracker.ReadOptIn();
  EXPECT_FALSE(tracker.IsEnabled());
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: RUQMENT: RuqOptIn=0"));
}

TEST_F(OptIn, AnEmptyFileLeavesItOff) { EXPECT_FALSE(Agreed("")); }

TEST_F(OptIn, WithoutTheKeyNothingIsLogged) {
  tracker.ReadOptIn();
  EXPECT_FALSE(tracker.IsEnabled());
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(OptIn, WithoutTheValueNothingIsLogged) {
  collector.Create();
  collector32.SetText(L"RuqIniFile", IniFile());
  tests::WriteBytes(IniFile(), "\nTrack=1");
  tracker.ReadOptIn();
  EXPECT_FALSE(tracker.IsEnabled());
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(OptIn, AValueThatIsNoTextIsNone) {
  tests::WriteBytes(IniFile(), "\nTrack=1");
  collector.SetText(L"RuqIniFile", IniFile(), REG_MULTI_SZ);
  tracker.ReadOptIn();
  EXPECT_FALSE(tracker.IsEnabled());
}

TEST_F(OptIn, WithoutTheFileNothingIsLogged) {
  collector.SetText(L"RuqIniFile", folders.Root() + L"\\missing.ini");
  tracker.ReadOptIn();
  EXPECT_FALSE(tracker.IsEnabled());
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(OptIn, TheKeyOfOldProgramsCountsWhenTheOtherIsMissing) {
  collector32.SetText(L"RuqIniFile", IniFile());
  tests::WriteBytes(IniFile(), "\nTrack=1");
  tracker.ReadOptIn();
  EXPECT_TRUE(tracker.IsEnabled());
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: RUQMENT: RuqOptIn=1"));
}

TEST_F(OptIn, TheFilesPathIsExpanded) {
  tests::WriteBytes(folders.AppData() + L"\\c.ini", "\nTrack=1");
  collector.SetText(L"RuqIniFile", L"%APPDATA%\\c.ini", REG_EXPAND_SZ);
  tracker.ReadOptIn();
  EXPECT_TRUE(tracker.IsEnabled());
}

TEST_F(OptIn, TheFirstLineDoesNotCount) {
  EXPECT_FALSE(Agreed("Track=1\n"));
  EXPECT_TRUE(Agreed("\nTrack=1"));
  EXPECT_TRUE(Agreed("Track=1\nTrack=1"));
}

TEST_F(OptIn, ALineEndOfTwoCharactersDoes) { EXPECT_TRUE(Agreed("[Choice]\r\nTrack=1\r\n")); }

TEST_F(OptIn, ACarriageReturnAloneIsNoLineEnd) { EXPECT_FALSE(Agreed("[Choice]\rTrack=1\r")); }

TEST_F(OptIn, AnyNumberThatBeginsWithOneCounts) {
  EXPECT_TRUE(Agreed("\nTrack=10"));
  EXPECT_TRUE(Agreed("\nTrack=1x"));
  EXPECT_FALSE(Agreed("\nTrack=01"));
}

TEST_F(OptIn, OnlyTheVeryTextCounts) {
  EXPECT_FALSE(Agreed("\ntrack=1"));
  EXPECT_FALSE(Agreed("\nTRACK=1"));
  EXPECT_FALSE(Agreed("\n Track=1"));
  EXPECT_FALSE(Agreed("\nTrack =1"));
  EXPECT_FALSE(Agreed("\nTrack="));
}

TEST_F(OptIn, TheTextIsFoundWhereverThePiecesOfReadingBreakIt) {
  for (std::size_t before = 1014; before <= 1026; ++before) {
    EXPECT_TRUE(Agreed(std::string(before, 'x') + "\nTrack=1")) << before;
    EXPECT_TRUE(Agreed(std::string(before + 1024, 'x') + "\nTrack=1 and more")) << before;
  }
}

TEST_F(OptIn, TheTextIsNotPutTogetherOfWhatIsApart) {
  EXPECT_FALSE(Agreed(std::string(1020, 'x') + "\nTra" + std::string(1024, 'x') + "ck=1"));
  EXPECT_FALSE(Agreed(std::string(1020, 'x') + "\nTraxck=1"));
}

TEST_F(OptIn, NullsBeforeTheTextAreBytesLikeOthers) {
  EXPECT_TRUE(Agreed(std::string("a\0b\0\0", 5) + "\nTrack=1"));
  EXPECT_TRUE(Agreed(std::string(2000, '\0') + "\nTrack=1"));
  EXPECT_TRUE(Agreed(std::string(1020, '\0') + "\nTrack=1"));
}

TEST_F(OptIn, AFileOfTwoByteCharactersDoesNotCount) {
  EXPECT_FALSE(Agreed(std::string("\n\0T\0r\0a\0c\0k\0=\0001\0", 16)));
}

TEST_F(OptIn, TheTextIsFoundAtTheEndOfAHugeFileInLittleMemory) {
  WriteBigIni(50'000'000, "\nTrack=1");
  const std::size_t before = PeakMemory();
  ASSERT_NE(0u, before);
  tracker.ReadOptIn();
  EXPECT_TRUE(tracker.IsEnabled());
  EXPECT_LT(PeakMemory() - before, 8'000'000u);
}

TEST_F(OptIn, AHugeFileWithoutTheTextLeavesItOff) {
  WriteBigIni(50'000'000, "\nTrack=");
  tracker.ReadOptIn();
  EXPECT_FALSE(tracker.IsEnabled());
}

TEST_F(OptIn, AFolderOfThatNameLeavesItOff) {
  tests::MakeFolders(IniFile());
  collector.SetText(L"RuqIniFile", IniFile());
  tracker.ReadOptIn();
  EXPECT_FALSE(tracker.IsEnabled());
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: RUQMENT: RuqOptIn=0"));
}

TEST_F(OptIn, ALockedFileLeavesItOff) {
  WriteIni();
  const FileHandle locked(::CreateFileW(IniFile().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(locked);
  tracker.ReadOptIn();
  EXPECT_FALSE(tracker.IsEnabled());
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: RUQMENT: RuqOptIn=0"));
}

TEST_F(OptIn, AFileThatOthersReadIsRead) {
  WriteIni();
  const FileHandle shared(
      ::CreateFileW(IniFile().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(shared);
  tracker.ReadOptIn();
  EXPECT_TRUE(tracker.IsEnabled());
}

/// All that a tracker does when the user uses the dock, and its whole periodic work.
void UseAll(UsageTracker &tracker) {
  tracker.TrackDockOpen();
  for (int i = 0; i < 30; ++i)
    tracker.TrackIconAdd(Entry(std::to_wstring(i)));
  tracker.TrackIconClick(Entry(L"Mail"));
  tracker.TrackPopupClick(Entry(L"Mail"));
  tracker.TrackIconDelete(Entry(L"Mail"));
  tracker.TrackUrlSearch();
  tracker.TrackHelpSearch();
  tracker.TrackDockClose();
  tracker.Flush();
  tracker.WritePayload(false);
  tracker.WritePayload(true);
  tracker.CheckPayloadSize();
  tracker.TransferPayload();
  tracker.SetNextTransferTime();
  tracker.SaveSettings();
}

void ExpectNothingDone(const UsageTracker &tracker, const std::wstring &folder) {
  EXPECT_THAT(tracker.GetRecords(), IsEmpty());
  EXPECT_FALSE(tests::Exists(folder));
}

TEST_F(OptIn, WithoutAnIniFileNothingIsRecordedOrWritten) {
  settings32.Create();
  Start();
  UseAll(tracker);
  ExpectNothingDone(tracker, PayloadFolder());
  EXPECT_EQ(std::nullopt, settings32.Text(L"NextElementSeq"));
  EXPECT_THAT(starts.All(), IsEmpty());
  EXPECT_EQ(firstId, user.Text(L"AppID"));
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(OptIn, WithoutTheTextNothingIsRecordedOrWritten) {
  settings32.Create();
  WriteIni("Track=1\n");
  Start();
  UseAll(tracker);
  ExpectNothingDone(tracker, PayloadFolder());
  EXPECT_EQ(std::nullopt, settings32.Text(L"NextElementSeq"));
  EXPECT_THAT(starts.All(), IsEmpty());
  EXPECT_EQ(firstId, user.Text(L"AppID"));
}

TEST_F(OptIn, WithoutConsentNoTimeIsSetAtWhichAPayloadIsDue) {
  Start();
  tracker.SetNextTransferTime();
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_PARAMETER), HResultOf([&] { tracker.IsTransferDue(); }));
}

TEST_F(OptIn, APayloadThatIsThereStaysWithoutConsent) {
  const std::string big = "<payload><!--" + std::string(60000, 'x') + "--></payload>";
  tests::WriteBytes(TemporaryFile(), big);
  Start();
  UseAll(tracker);
  EXPECT_EQ(big, OpenPayload());
  EXPECT_THAT(log.Lines(), IsEmpty());
  EXPECT_THAT(tests::ListFolder(PayloadFolder()), ElementsAre(L"ruqDock.tmp"));
}

} // namespace
} // namespace lumenor
