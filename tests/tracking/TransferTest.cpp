// When records are written, when a payload is closed and handed over, and what is kept for the next start.

#include "tracking/Checksum.h"
#include "tracking/Tracking.h"

#include "system/Handles.h"
#include "system/HResultError.h"

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class Transfer : public Tracking {
protected:
  Transfer() {
    StartAgreed();
    settings32.SetText(L"NextElementSeq", L"untouched");
    settings32.SetText(L"NextTransferTime", L"untouched");
    log.Clear();
  }

  /// A payload of that many bytes.
  void WriteTemporary(std::size_t bytes) const {
    const std::string begin = "<payload><!--", end = "--></payload>";
    tests::WriteBytes(TemporaryFile(), begin + std::string(bytes - begin.size() - end.size(), 'x') + end);
  }

  bool IsSaved() const { return settings32.Text(L"NextTransferTime") != L"untouched"; }

  std::vector<std::wstring> Files() const { return tests::ListFolder(PayloadFolder()); }
};

// Flush.

TEST_F(Transfer, AFlushOfNothingStillMakesTheFile) {
  tracker.Flush();
  EXPECT_EQ("<?xml version=\"1.0\" encoding = \"utf-8\"?>\n<payload/>\n", OpenPayload());
  EXPECT_THAT(Files(), ElementsAre(L"ruqDock.tmp"));
  EXPECT_FALSE(IsSaved());
}

TEST_F(Transfer, TheFolderIsMadeWithTheFirstWriting) {
  tracker.Flush();
  tracker.Flush();
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Creating directory " + tests::Utf8(PayloadFolder()) + "\\"));
}

TEST_F(Transfer, AFlushWritesTheRecordsAndDropsThem) {
  AddButtons(3);
  tracker.Flush();
  EXPECT_THAT(tracker.GetRecords(), IsEmpty());
  EXPECT_THAT(Elements(OpenPayload()), ElementsAre("Button 1 1", "Button 2 2", "Button 3 3"));
}

TEST_F(Transfer, BeforeItsTimeNothingIsHandedOver) {
  clock.SetUtc(Moment(2024, 3, 12, 6, 7, 7, 999));
  tracker.Flush();
  EXPECT_THAT(Files(), ElementsAre(L"ruqDock.tmp"));
  EXPECT_EQ(0u, Occurrences(OpenPayload(), "session-tracking-info"));
  EXPECT_THAT(starts.All(), IsEmpty());
}

TEST_F(Transfer, AtItsTimeThePayloadIsClosedOnceAndMoved) {
  AddButtons(2);
  MakeDue();
  tracker.Flush();
  ASSERT_THAT(Files(), SizeIs(1));
  EXPECT_EQ(1u, Occurrences(ClosedPayload(), "<session-tracking-info "));
  EXPECT_THAT(Elements(ClosedPayload()), ElementsAre("Button 1 1", "Button 2 2"));
  EXPECT_THAT(tracker.GetRecords(), IsEmpty());
  EXPECT_THAT(starts.All(), SizeIs(1));
}

TEST_F(Transfer, ADuePayloadIsDoneInThisOrder) {
  tests::MakeFolders(PayloadFolder());
  AddButtons(2);
  MakeDue();
  clock.SetLocal(Moment(2024, 3, 12, 8, 7, 8));
  tracker.Flush();
  // The folder's lines, then those of the next payload's beginning; the machine has no facts here.
  ASSERT_THAT(log.Lines(), SizeIs(8));
  EXPECT_THAT(log.Lines().at(0), HasSubstr("Attempting to move"));
  EXPECT_EQ("INFO: RUQMENT: running TWRuq.exe", log.Lines().at(1));
  EXPECT_THAT(log.Lines().at(2), HasSubstr("unable to open reg key"));
  // The next session began when the last numbers were kept already.
  EXPECT_EQ(L"3", settings32.Text(L"NextElementSeq"));
  EXPECT_EQ(L"3/19/2024 6:7:8", settings32.Text(L"NextTransferTime"));
  tracker.TrackDockOpen();
  EXPECT_EQ(1u, tracker.GetRecords().at(0).SequenceId);
  EXPECT_EQ(thirdId, tracker.GetRecords().at(0).SessionID);
}

TEST_F(Transfer, ABigPayloadIsDoneInThisOrder) {
  WriteTemporary(60000);
  tracker.Flush();
  ASSERT_THAT(log.Lines(), SizeIs(8));
  EXPECT_THAT(log.Lines().at(5), HasSubstr("unable to open reg key"));
  EXPECT_THAT(log.Lines().at(6), HasSubstr("Attempting to move"));
  EXPECT_EQ("INFO: RUQMENT: running TWRuq.exe", log.Lines().at(7));
}

TEST_F(Transfer, AfterAHandOverTheNextIsSevenDaysAway) {
  MakeDue();
  tracker.Flush();
  tracker.Flush();
  EXPECT_THAT(Files(), SizeIs(2));
  EXPECT_THAT(Files(), testing::Contains(L"ruqDock.tmp"));
  clock.SetUtc(Moment(2024, 3, 19, 6, 7, 8));
  tracker.Flush();
  EXPECT_THAT(Files(), SizeIs(2));
  EXPECT_THAT(Files(), testing::Not(testing::Contains(L"ruqDock.tmp")));
}

TEST_F(Transfer, AfterAHandOverTheFileIsMadeAnew) {
  AddButtons(1, L"old ");
  MakeDue();
  tracker.Flush();
  EXPECT_FALSE(tests::Exists(TemporaryFile()));
  AddButtons(1, L"new ");
  tracker.Flush();
  EXPECT_THAT(Elements(OpenPayload()), ElementsAre("new 1 2"));
}

TEST_F(Transfer, ADuePayloadThatIsBigTooIsHandedOverOnce) {
  WriteTemporary(60000);
  MakeDue();
  tracker.Flush();
  EXPECT_THAT(Files(), SizeIs(1));
  EXPECT_EQ(1u, Occurrences(ClosedPayload(), "<session-tracking-info "));
  EXPECT_TRUE(IsSaved());
  EXPECT_THAT(starts.All(), SizeIs(1));
}

TEST_F(Transfer, TheTwentiethRecordMayHandOver) {
  MakeDue();
  AddButtons(20);
  EXPECT_THAT(Elements(ClosedPayload()), SizeIs(20));
  EXPECT_THAT(tracker.GetRecords(), IsEmpty());
}

TEST_F(Transfer, AtTheClosingOfTheDockADuePayloadStays) {
  MakeDue();
  tracker.TrackDockClose();
  tracker.WritePayload(false);
  tracker.CheckPayloadSize();
  EXPECT_THAT(Files(), ElementsAre(L"ruqDock.tmp"));
  EXPECT_THAT(Elements(OpenPayload()), ElementsAre("Dock 1"));
  EXPECT_FALSE(IsSaved());
}

TEST_F(Transfer, AtTheClosingOfTheDockABigPayloadGoes) {
  WriteTemporary(51200);
  tracker.TrackDockClose();
  tracker.WritePayload(false);
  tracker.CheckPayloadSize();
  EXPECT_THAT(Elements(ClosedPayload()), ElementsAre("Dock 1"));
}

// The size rule.

TEST_F(Transfer, APayloadOfExactly51200BytesStaysOpen) {
  WriteTemporary(51200);
  tracker.CheckPayloadSize();
  EXPECT_THAT(Files(), ElementsAre(L"ruqDock.tmp"));
  EXPECT_EQ(51200u, OpenPayload().size());
}

TEST_F(Transfer, APayloadOf51201BytesIsClosedAndMoved) {
  WriteTemporary(51201);
  tracker.CheckPayloadSize();
  EXPECT_THAT(Files(), SizeIs(1));
  EXPECT_EQ(1u, Occurrences(ClosedPayload(), "<session-tracking-info "));
  EXPECT_THAT(starts.All(), SizeIs(1));
}

TEST_F(Transfer, WithoutAFileTheSizeRuleDoesNothing) {
  tracker.CheckPayloadSize();
  EXPECT_FALSE(tests::Exists(PayloadFolder()));
  tests::MakeFolders(PayloadFolder());
  tracker.CheckPayloadSize();
  EXPECT_THAT(Files(), IsEmpty());
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(Transfer, APayloadGrowsUntilItIsTooBigAndThenGoes) {
  int batches = 0;
  for (; tests::ListFolder(PayloadFolder()).size() < 2 && ClosedPayload().empty() && batches < 100; ++batches)
    AddButtons(20, std::to_wstring(batches) + L" ");
  EXPECT_LT(51200u, ClosedPayload().size());
  EXPECT_GT(65000u, ClosedPayload().size());
  EXPECT_THAT(Elements(ClosedPayload()), SizeIs(20 * static_cast<std::size_t>(batches)));
  EXPECT_FALSE(tests::Exists(TemporaryFile()));
}

TEST_F(Transfer, TheTimeOfTheNextMovesOnByTimeOnly) {
  WriteTemporary(60000);
  clock.SetUtc(Moment(2024, 3, 7, 0, 0, 0));
  tracker.Flush();
  EXPECT_FALSE(IsSaved());
  EXPECT_EQ(L"3/12/2024 6:7:8", NextTransferTime());
  MakeDue();
  tracker.Flush();
  EXPECT_EQ(L"3/19/2024 6:7:8", NextTransferTime());
}

TEST_F(Transfer, AClosingForSizeBeginsTheNextPayloadWithItsMoment) {
  WriteTemporary(60000);
  clock.SetUtc(Moment(2024, 3, 7, 1, 2, 3));
  tracker.Flush();
  clock.SetUtc(Moment(2024, 3, 8, 0, 0, 0));
  tracker.WritePayload(true);
  EXPECT_THAT(OpenPayload(), HasSubstr("<attribute name=\"start\" value=\"3/7/2024 1:2:3 UTC\"/>"
                                       "<attribute name=\"end\" value=\"3/8/2024 0:0:0 UTC\"/>"));
}

TEST_F(Transfer, AClosingForSizeLetsTheDayEndToo) {
  WriteTemporary(60000);
  clock.SetLocal(Moment(2024, 3, 6, 0, 0, 0));
  tracker.Flush();
  tracker.TrackDockOpen();
  EXPECT_EQ(thirdId, tracker.GetRecords().at(0).SessionID);
}

// The transfer.

TEST_F(Transfer, ThePayloadIsNamedByItsChecksum) {
  tests::WriteBytes(TemporaryFile(), "123456789");
  tracker.TransferPayload();
  EXPECT_THAT(Files(), ElementsAre(L"873187033.ruq"));
  EXPECT_EQ("123456789", ClosedPayload());
}

TEST_F(Transfer, TheChecksumInTheNameHasNoSign) {
  tests::WriteBytes(TemporaryFile(), "");
  tracker.TransferPayload();
  EXPECT_THAT(Files(), ElementsAre(L"4294967295.ruq"));
}

TEST_F(Transfer, AClosedPayloadHasTheNumberOfItsContent) {
  AddButtons(5);
  MakeDue();
  tracker.Flush();
  const std::uint32_t checksum = ContinueChecksum(checksumStart, ClosedPayload());
  EXPECT_THAT(Files(), ElementsAre(std::to_wstring(checksum) + L".ruq"));
}

TEST_F(Transfer, TheMoveIsLogged) {
  tests::WriteBytes(TemporaryFile(), "123456789");
  tracker.TransferPayload();
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Attempting to move file from : " + tests::Utf8(TemporaryFile()) + " to " +
                                           tests::Utf8(PayloadFolder()) + "\\873187033.ruq",
                                       "INFO: RUQMENT: running TWRuq.exe"));
}

TEST_F(Transfer, WithoutAFileTheMoveRaisesAndNothingStarts) {
  tests::MakeFolders(PayloadFolder());
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), HResultOf([&] { tracker.TransferPayload(); }));
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Attempting to move file from : " + tests::Utf8(TemporaryFile()) + " to " +
                                       tests::Utf8(PayloadFolder()) + "\\0.ruq"));
  EXPECT_THAT(starts.All(), IsEmpty());
}

TEST_F(Transfer, TheCollectorStartsInTheFolderAsItIsWritten) {
  collector.SetText(L"RuqPath", L"%ProgramFiles%\\Collector\\c.exe", REG_EXPAND_SZ);
  MakeDue();
  tracker.Flush();
  EXPECT_THAT(starts.All(), ElementsAre(ShellStart{false, L"open", folders.ProgramFiles() + L"\\Collector\\c.exe",
                                                   L"lumenor3.4", L"%appdata%\\Tarnwick\\Lumenor\\ruq\\", SW_HIDE}));
}

TEST_F(Transfer, TheCollectorStartsForABigPayloadToo) {
  collector.SetText(L"RuqPath", L"C:\\c.exe");
  WriteTemporary(60000);
  tracker.CheckPayloadSize();
  EXPECT_THAT(starts.All(), ElementsAre(ShellStart{false, L"open", L"C:\\c.exe", L"lumenor3.4",
                                                   L"%appdata%\\Tarnwick\\Lumenor\\ruq\\", SW_HIDE}));
}

TEST_F(Transfer, WithoutACollectorThePayloadIsMovedAndAnEmptyPathStarted) {
  collector.Delete();
  MakeDue();
  tracker.Flush();
  EXPECT_NE("", ClosedPayload());
  EXPECT_THAT(starts.All(), ElementsAre(ShellStart{false, L"open", L"", L"lumenor3.4",
                                                   L"%appdata%\\Tarnwick\\Lumenor\\ruq\\", SW_HIDE}));
}

TEST_F(Transfer, TheCollectorOfOldProgramsStartsWhenTheOtherKeyIsMissing) {
  collector.Delete();
  collector32.SetText(L"RuqPath", L"C:\\old.exe");
  tests::WriteBytes(TemporaryFile(), "x");
  tracker.TransferPayload();
  ASSERT_THAT(starts.All(), SizeIs(1));
  EXPECT_EQ(L"C:\\old.exe", starts.All().at(0).program);
}

TEST_F(Transfer, ACollectorsPathThatIsNoTextIsEmpty) {
  collector.SetNumber(L"RuqPath", 5);
  tests::WriteBytes(TemporaryFile(), "x");
  tracker.TransferPayload();
  ASSERT_THAT(starts.All(), SizeIs(1));
  EXPECT_EQ(L"", starts.All().at(0).program);
}

// What is kept in the registry.

TEST_F(Transfer, TheSettingsAreKeptAsTexts) {
  AddButtons(11);
  tracker.SaveSettings();
  EXPECT_EQ(L"12", settings32.Text(L"NextElementSeq"));
  EXPECT_EQ(L"3/12/2024 6:7:8", settings32.Text(L"NextTransferTime"));
}

TEST_F(Transfer, TheSettingsAreTextsWithTheirClosingNulls) {
  tracker.SaveSettings();
  RegistryKey key;
  ::RegOpenKeyExW(HKEY_CURRENT_USER, L"SOFTWARE\\Wow6432Node\\Tarnwick\\Lumenor\\Dock", 0, KEY_READ, key.Put());
  for (const auto &[name, expected] : {std::pair{L"NextElementSeq", 4u}, std::pair{L"NextTransferTime", 32u}}) {
    DWORD type = REG_NONE, bytes = 0;
    ::RegQueryValueExW(key.Get(), name, nullptr, &type, nullptr, &bytes);
    EXPECT_EQ(static_cast<DWORD>(REG_SZ), type);
    EXPECT_EQ(expected, bytes);
  }
}

TEST_F(Transfer, TheSettingsAreKeptInTheFirstKeyAlone) {
  settings.Create();
  tracker.SaveSettings();
  EXPECT_EQ(L"1", settings32.Text(L"NextElementSeq"));
  EXPECT_EQ(std::nullopt, settings.Text(L"NextElementSeq"));
  EXPECT_EQ(std::nullopt, settings.Text(L"NextTransferTime"));
}

TEST_F(Transfer, TheSettingsAreKeptInTheOtherKeyWhenTheFirstIsMissing) {
  settings32.Delete();
  settings.Create();
  tracker.SaveSettings();
  EXPECT_EQ(L"1", settings.Text(L"NextElementSeq"));
  EXPECT_EQ(L"3/12/2024 6:7:8", settings.Text(L"NextTransferTime"));
  EXPECT_EQ(std::nullopt, settings32.Text(L"NextElementSeq"));
}

TEST_F(Transfer, WithoutAKeyNoSettingsAreKeptAndNoKeyIsMade) {
  settings32.Delete();
  tracker.SaveSettings();
  for (const wchar_t *path :
       {L"SOFTWARE\\Tarnwick\\Lumenor\\Dock", L"SOFTWARE\\Wow6432Node\\Tarnwick\\Lumenor\\Dock"}) {
    RegistryKey key;
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, ::RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, key.Put()));
  }
}

TEST_F(Transfer, TheNextStartTakesTheKeptTimeAndCountsFromOneAgain) {
  AddButtons(5);
  MakeDue();
  tracker.Flush();
  EXPECT_EQ(L"6", settings32.Text(L"NextElementSeq"));
  tracker = {};
  clock.SetUtc(Moment(2024, 3, 14, 0, 0, 0));
  Start();
  tracker.TrackDockOpen();
  EXPECT_EQ(1u, tracker.GetRecords().at(0).SequenceId);
  EXPECT_EQ(L"3/19/2024 6:7:8", NextTransferTime());
}

} // namespace
} // namespace lumenor
