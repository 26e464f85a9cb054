// Failures of the disk and the clock: no record is lost or written twice, whatever fails.

#include "tracking/Tracking.h"

#include "support/FailingDisk.h"
#include "support/HeldFile.h"
#include "system/Handles.h"
#include "system/HResultError.h"

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Lt;
using testing::SizeIs;

class Faults : public Tracking {
protected:
  Faults() {
    StartAgreed();
    log.Clear();
  }

  HRESULT FlushFailure() {
    return HResultOf([&] { tracker.Flush(); });
  }

  /// Opens the temporary file and lets others do no more than `share`.
  FileHandle Lock(DWORD share) const {
    return FileHandle(::CreateFileW(TemporaryFile().c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
  }

  /// A flush after the end of the failure writes the waiting records once, and none is left.
  void ExpectAllWritten(const std::vector<std::string> &elements) {
    EXPECT_EQ(S_OK, FlushFailure());
    EXPECT_EQ(elements, Elements(OpenPayload()));
    EXPECT_THAT(tracker.GetRecords(), IsEmpty());
    EXPECT_EQ(S_OK, FlushFailure());
    EXPECT_EQ(elements, Elements(OpenPayload()));
  }

  const std::string noPayload = "ERROR: RUQMENT: no payload in " + tests::Utf8(TemporaryFile());
};

// The folder.

TEST_F(Faults, AFileInThePlaceOfTheFolder) {
  tests::WriteBytes(PayloadFolder(), "a file");
  AddButtons(2);
  EXPECT_THAT(FlushFailure(), Lt(0));
  EXPECT_THAT(Summary(tracker.GetRecords()), ElementsAre("Button 1 1", "Button 2 2"));
  EXPECT_EQ("a file", tests::ReadBytes(PayloadFolder()));
  ::DeleteFileW(PayloadFolder().c_str());
  ExpectAllWritten({"Button 1 1", "Button 2 2"});
}

TEST_F(Faults, NoFolderToMakeTheFolderIn) {
  tests::DeleteTree(folders.UserFolder());
  AddButtons(2);
  EXPECT_THAT(FlushFailure(), Lt(0));
  EXPECT_THAT(tracker.GetRecords(), SizeIs(2));
  EXPECT_FALSE(tests::Exists(folders.UserFolder()));
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Creating directory " + tests::Utf8(PayloadFolder()) + "\\"));
  tests::MakeFolders(folders.UserFolder());
  ExpectAllWritten({"Button 1 1", "Button 2 2"});
}

TEST_F(Faults, AFolderThatVanishesBetweenTwoWritings) {
  AddButtons(1, L"lost with its file ");
  tracker.Flush();
  tests::DeleteTree(PayloadFolder());
  AddButtons(1);
  ExpectAllWritten({"Button 1 2"});
}

// The file.

TEST_F(Faults, AFileThatIsLockedAltogetherIsLeftAlone) {
  AddButtons(1, L"before ");
  tracker.Flush();
  const std::string before = OpenPayload();
  log.Clear();
  AddButtons(2);
  {
    const FileHandle locked = Lock(0);
    ASSERT_TRUE(locked);
    EXPECT_EQ(S_OK, FlushFailure());
    EXPECT_THAT(Summary(tracker.GetRecords()), ElementsAre("Button 1 2", "Button 2 3"));
    EXPECT_THAT(log.Lines(), ElementsAre(noPayload));
  }
  EXPECT_EQ(before, OpenPayload());
  ExpectAllWritten({"before 1 1", "Button 1 2", "Button 2 3"});
}

TEST_F(Faults, ADuePayloadThatIsLockedAltogetherStaysAndIsStillDue) {
  AddButtons(1, L"before ");
  tracker.Flush();
  const std::string before = OpenPayload();
  AddButtons(1);
  MakeDue();
  {
    const FileHandle locked = Lock(0);
    ASSERT_TRUE(locked);
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_SHARING_VIOLATION), FlushFailure());
    EXPECT_THAT(Summary(tracker.GetRecords()), ElementsAre("Button 1 2"));
    EXPECT_TRUE(tracker.IsTransferDue());
    EXPECT_THAT(starts.All(), IsEmpty());
  }
  EXPECT_EQ(before, OpenPayload());
  EXPECT_EQ(S_OK, FlushFailure());
  EXPECT_THAT(Elements(ClosedPayload()), ElementsAre("before 1 1", "Button 1 2"));
  EXPECT_THAT(tracker.GetRecords(), IsEmpty());
}

TEST_F(Faults, AFileThatOthersReadCannotBeWritten) {
  AddButtons(1, L"before ");
  tracker.Flush();
  const std::string before = OpenPayload();
  AddButtons(2);
  {
    const FileHandle locked = Lock(FILE_SHARE_READ);
    ASSERT_TRUE(locked);
    EXPECT_THAT(FlushFailure(), Lt(0));
    EXPECT_THAT(FlushFailure(), Lt(0));
    EXPECT_THAT(Summary(tracker.GetRecords()), ElementsAre("Button 1 2", "Button 2 3"));
  }
  EXPECT_EQ(before, OpenPayload());
  ExpectAllWritten({"before 1 1", "Button 1 2", "Button 2 3"});
}

TEST_F(Faults, AFileThatIsInUseForAMomentIsWritten) {
  AddButtons(1, L"before ");
  tracker.Flush();
  AddButtons(1);
  {
    const tests::HeldFile held(TemporaryFile(), 2);
    EXPECT_EQ(S_OK, FlushFailure());
  }
  ExpectAllWritten({"before 1 1", "Button 1 2"});
}

TEST_F(Faults, AFileThatOthersReadForAMomentIsWritten) {
  AddButtons(1, L"before ");
  tracker.Flush();
  AddButtons(1);
  {
    const tests::HeldFile held(TemporaryFile(), 2, FILE_SHARE_READ);
    EXPECT_EQ(S_OK, FlushFailure());
  }
  ExpectAllWritten({"before 1 1", "Button 1 2"});
}

TEST_F(Faults, APayloadThatIsInUseForAMomentIsHandedOver) {
  tests::WriteBytes(TemporaryFile(), "123456789");
  const tests::HeldFile held(TemporaryFile(), 2, FILE_SHARE_READ);
  EXPECT_EQ(S_OK, HResultOf([&] { tracker.TransferPayload(); }));
  EXPECT_THAT(tests::ListFolder(PayloadFolder()), ElementsAre(L"873187033.ruq"));
  EXPECT_FALSE(held.IsHeld());
}

TEST_F(Faults, AFullDiskKeepsTheFileAndTheRecords) {
  AddButtons(1, L"before ");
  tracker.Flush();
  const std::string before = OpenPayload();
  AddButtons(2);
  {
    const tests::FullDisk full(100);
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_DISK_FULL), FlushFailure());
  }
  EXPECT_EQ(before, OpenPayload());
  EXPECT_THAT(tests::ListFolder(PayloadFolder()), ElementsAre(L"ruqDock.tmp"));
  ExpectAllWritten({"before 1 1", "Button 1 2", "Button 2 3"});
}

/// Not every platform keeps an administrator from writing such a file; a record is in one place either way.
TEST_F(Faults, AReadOnlyFile) {
  AddButtons(1, L"before ");
  tracker.Flush();
  AddButtons(2);
  ::SetFileAttributesW(TemporaryFile().c_str(), FILE_ATTRIBUTE_READONLY);
  const bool isWritten = FlushFailure() == S_OK;
  EXPECT_THAT(tracker.GetRecords(), SizeIs(isWritten ? 0 : 2));
  EXPECT_THAT(Elements(OpenPayload()), SizeIs(isWritten ? 3 : 1));
  ::SetFileAttributesW(TemporaryFile().c_str(), FILE_ATTRIBUTE_NORMAL);
  ExpectAllWritten({"before 1 1", "Button 1 2", "Button 2 3"});
}

TEST_F(Faults, TheTwentiethRecordStandsThoughItsWritingRaises) {
  tests::WriteBytes(PayloadFolder(), "a file");
  EXPECT_THAT(HResultOf([&] { AddButtons(20); }), Lt(0));
  EXPECT_THAT(tracker.GetRecords(), SizeIs(20));
  EXPECT_EQ(S_OK, HResultOf([&] { tracker.TrackIconAdd(Entry(L"Button 20")); })); // counted, not written
  EXPECT_THAT(HResultOf([&] { tracker.TrackUrlSearch(); }), Lt(0));
  ASSERT_THAT(tracker.GetRecords(), SizeIs(21));
  EXPECT_EQ(2u, tracker.GetRecords().at(19).ActionCount);
  ::DeleteFileW(PayloadFolder().c_str());
  tracker.TrackHelpSearch();
  EXPECT_THAT(Elements(OpenPayload()), SizeIs(22));
}

TEST_F(Faults, ARecordIsCountedOnUntilItIsWritten) {
  tests::WriteBytes(PayloadFolder(), "a file");
  tracker.TrackUrlSearch();
  EXPECT_THAT(FlushFailure(), Lt(0));
  tracker.TrackUrlSearch();
  ::DeleteFileW(PayloadFolder().c_str());
  ExpectAllWritten({"Search 1"});
  EXPECT_THAT(OpenPayload(), HasSubstr("<attribute name=\"ActionCount\" value=\"2\"/>"));
}

class NoPayload : public Faults, public testing::WithParamInterface<std::string> {};

TEST_P(NoPayload, IsLeftAloneAndTheRecordsStay) {
  tests::WriteBytes(TemporaryFile(), GetParam());
  AddButtons(2);
  EXPECT_EQ(S_OK, FlushFailure());
  tracker.WritePayload(true);
  EXPECT_EQ(GetParam(), OpenPayload());
  EXPECT_THAT(tracker.GetRecords(), SizeIs(2));
  EXPECT_THAT(log.Lines(), ElementsAre(noPayload, noPayload));
  ::DeleteFileW(TemporaryFile().c_str());
  ExpectAllWritten({"Button 1 1", "Button 2 2"});
}

INSTANTIATE_TEST_SUITE_P(Files, NoPayload,
                         testing::Values("", "text", "<payload>", "<payload></payload", "<other/>", "<Payload/>",
                                         "<a><payload/></a>", "<payload xmlns=\"urn:other\"/>",
                                         std::string("\0\0\0\0", 4), std::string(2000, '\xFF')));

TEST_F(Faults, WhatIsNoPayloadIsHandedOverWhenItIsDueAndTheRecordsFollow) {
  tests::WriteBytes(TemporaryFile(), "123456789");
  AddButtons(2);
  MakeDue();
  EXPECT_EQ(S_OK, FlushFailure());
  EXPECT_THAT(tests::ListFolder(PayloadFolder()), ElementsAre(L"873187033.ruq"));
  EXPECT_THAT(tracker.GetRecords(), SizeIs(2));
  ExpectAllWritten({"Button 1 1", "Button 2 2"});
}

TEST_F(Faults, WhatIsNoPayloadAndBigIsHandedOverAndTheRecordsFollow) {
  tests::WriteBytes(TemporaryFile(), std::string(51201, 'x'));
  AddButtons(2);
  EXPECT_EQ(S_OK, FlushFailure());
  EXPECT_EQ(std::string(51201, 'x'), ClosedPayload());
  ExpectAllWritten({"Button 1 1", "Button 2 2"});
}

TEST_F(Faults, AFolderOfTheFilesName) {
  tests::MakeFolders(TemporaryFile());
  AddButtons(2);
  EXPECT_EQ(S_OK, FlushFailure());
  tracker.CheckPayloadSize();
  EXPECT_THAT(tracker.GetRecords(), SizeIs(2));
  EXPECT_THAT(log.Lines(), ElementsAre(noPayload));
  ::RemoveDirectoryW(TemporaryFile().c_str());
  ExpectAllWritten({"Button 1 1", "Button 2 2"});
}

// The transfer.

TEST_F(Faults, ATargetThatIsThereAlreadyRaisesAndThePayloadStaysClosed) {
  tests::WriteBytes(TemporaryFile(), "123456789");
  tests::WriteBytes(PayloadFolder() + L"\\873187033.ruq", "another");
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), HResultOf([&] { tracker.TransferPayload(); }));
  EXPECT_EQ("123456789", OpenPayload());
  EXPECT_EQ("another", ClosedPayload());
  EXPECT_THAT(starts.All(), IsEmpty());
}

/// A payload that can't be moved, as another one with the same content is there: the same day twice.
class TwinPayload : public Faults {
protected:
  TwinPayload() {
    UseDock();
    tracker.Flush();
    first = ClosedPayload();
    tracker = {};
    clock.SetUtc(Moment(2024, 3, 5, 6, 7, 8));
    identifiers.SetCount(1); // the session gets the same again
    settings32.SetText(L"NextTransferTime", L"");
    Start();
    UseDock();
  }

  void UseDock() {
    AddButtons(2);
    MakeDue();
  }

  std::string SessionInfo(const std::string &end) const {
    return "<session-tracking-info appName=\"lumenor3.4\"><attribute name=\"version\" value=\"3.4\"/>"
           "<attribute name=\"start\" value=\"3/5/2024 6:7:8 UTC\"/><attribute name=\"end\" value=\"" +
           end +
           "\"/><attribute name=\"brand\" value=\"\"/><attribute name=\"platform\" value=\"\"/>"
           "<attribute name=\"applicationid\" value=\"" +
           tests::Utf8(firstId) + "\"/></session-tracking-info>";
  }

  std::string first;
};

TEST_F(TwinPayload, StaysClosedWhereItWasWritten) {
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), FlushFailure());
  EXPECT_NE("", first);
  EXPECT_EQ(first, OpenPayload());
  EXPECT_EQ(first, ClosedPayload());
  EXPECT_THAT(tracker.GetRecords(), IsEmpty());
  EXPECT_THAT(starts.All(), SizeIs(1)); // for the first alone
  EXPECT_TRUE(tracker.IsTransferDue());
  EXPECT_EQ(L"", settings32.Text(L"NextTransferTime"));
}

TEST_F(TwinPayload, GoesWithTheNextFlushUnderTwoHeaders) {
  EXPECT_THAT(FlushFailure(), Lt(0));
  ::DeleteFileW((PayloadFolder() + L"\\" + tests::ListFolder(PayloadFolder()).at(0)).c_str());
  tracker.TrackDockClose();
  clock.SetUtc(Moment(2024, 3, 12, 7, 0, 0));
  EXPECT_EQ(S_OK, FlushFailure());
  const std::string infos = SessionInfo("3/12/2024 7:0:0 UTC") + SessionInfo("3/12/2024 6:7:8 UTC");
  EXPECT_THAT(ClosedPayload(), HasSubstr("<payload>" + infos + "<element name=\"Button 1\""));
  EXPECT_THAT(Elements(ClosedPayload()), ElementsAre("Button 1 1", "Button 2 2", "Dock 3"));
  EXPECT_FALSE(tests::Exists(TemporaryFile()));
  EXPECT_FALSE(tracker.IsTransferDue());
}

TEST_F(TwinPayload, TakesFurtherRecordsBehindTheOthers) {
  EXPECT_THAT(FlushFailure(), Lt(0));
  tracker.TrackDockClose();
  tracker.WritePayload(false);
  EXPECT_THAT(OpenPayload(),
              HasSubstr("<payload>" + SessionInfo("3/12/2024 6:7:8 UTC") + "<element name=\"Button 1\""));
  EXPECT_THAT(Elements(OpenPayload()), ElementsAre("Button 1 1", "Button 2 2", "Dock 3"));
}

TEST_F(Faults, AClosedPayloadThatIsInUseStays) {
  tracker.TrackDockOpen();
  tracker.WritePayload(true);
  const std::string closed = OpenPayload();
  {
    const FileHandle locked = Lock(FILE_SHARE_READ);
    ASSERT_TRUE(locked);
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_SHARING_VIOLATION), HResultOf([&] { tracker.TransferPayload(); }));
  }
  EXPECT_EQ(closed, OpenPayload());
  EXPECT_THAT(starts.All(), IsEmpty());
  tracker.TransferPayload();
  EXPECT_EQ(closed, ClosedPayload());
}

TEST_F(Faults, AHandOverThatCannotWriteKeepsItsTime) {
  tests::WriteBytes(PayloadFolder(), "a file");
  AddButtons(1);
  MakeDue();
  EXPECT_THAT(FlushFailure(), Lt(0));
  EXPECT_TRUE(tracker.IsTransferDue());
  EXPECT_THAT(starts.All(), IsEmpty());
  ::DeleteFileW(PayloadFolder().c_str());
  EXPECT_EQ(S_OK, FlushFailure());
  EXPECT_THAT(Elements(ClosedPayload()), ElementsAre("Button 1 1"));
}

// The clock.

TEST_F(Faults, ASessionGoesOnOverMidnightUntilItsRecordsAreWritten) {
  tests::WriteBytes(PayloadFolder(), "a file");
  AddButtons(2);
  clock.SetLocal(Moment(2024, 3, 6, 0, 0, 1));
  EXPECT_THAT(FlushFailure(), Lt(0));
  tracker.TrackDockOpen();
  EXPECT_EQ(3u, tracker.GetRecords().at(2).SequenceId);
  ::DeleteFileW(PayloadFolder().c_str());
  EXPECT_EQ(S_OK, FlushFailure());
  EXPECT_EQ(3u, Occurrences(OpenPayload(), tests::Utf8(secondId)));
  tracker.TrackDockOpen();
  EXPECT_EQ(1u, tracker.GetRecords().at(0).SequenceId);
  EXPECT_EQ(thirdId, tracker.GetRecords().at(0).SessionID);
}

TEST_F(Faults, RecordsThatCouldNotBeReadBackKeepTheirSessionWhenAnotherBegins) {
  tests::WriteBytes(TemporaryFile(), "no payload");
  AddButtons(2);
  clock.SetLocal(Moment(2024, 3, 6, 0, 0, 1));
  EXPECT_EQ(S_OK, FlushFailure());
  tracker.TrackDockOpen();
  ::DeleteFileW(TemporaryFile().c_str());
  ExpectAllWritten({"Button 1 1", "Button 2 2", "Dock 1"});
  EXPECT_EQ(2u, Occurrences(OpenPayload(), tests::Utf8(secondId)));
  EXPECT_EQ(1u, Occurrences(OpenPayload(), tests::Utf8(thirdId)));
}

TEST_F(Faults, AClockThatIsSetBackDelaysTheHandOverAndKeepsTheSession) {
  AddButtons(1);
  clock.SetUtc(Moment(2020, 1, 1, 0, 0, 0));
  clock.SetLocal(Moment(2020, 1, 1, 2, 0, 0));
  tracker.TrackDockClose();
  EXPECT_EQ(S_OK, FlushFailure());
  EXPECT_FALSE(tracker.IsTransferDue());
  EXPECT_THAT(Elements(OpenPayload()), ElementsAre("Button 1 1", "Dock 2"));
  EXPECT_THAT(OpenPayload(), HasSubstr("\"3/5/2024 6:7:8 UTC\""));
  EXPECT_THAT(OpenPayload(), HasSubstr("\"1/1/2020 0:0:0 UTC\""));
  EXPECT_EQ(2u, Occurrences(OpenPayload(), tests::Utf8(secondId)));
}

TEST_F(Faults, AClockThatIsSetForwardHandsOverAtOnce) {
  AddButtons(1);
  clock.SetUtc(Moment(2030, 1, 1, 0, 0, 0));
  clock.SetLocal(Moment(2030, 1, 1, 2, 0, 0));
  EXPECT_EQ(S_OK, FlushFailure());
  EXPECT_THAT(Elements(ClosedPayload()), ElementsAre("Button 1 1"));
  EXPECT_EQ(L"1/8/2030 0:0:0", settings32.Text(L"NextTransferTime"));
}

TEST_F(Faults, WithoutIdentifiersTheRecordsAreWrittenUnderTheOldSession) {
  AddButtons(1);
  clock.SetLocal(Moment(2024, 3, 6, 0, 0, 1));
  identifiers.SetStatus(RPC_S_UUID_NO_ADDRESS);
  EXPECT_EQ(S_OK, FlushFailure());
  AddButtons(1);
  identifiers.SetStatus(RPC_S_OK);
  EXPECT_EQ(S_OK, FlushFailure());
  EXPECT_THAT(Elements(OpenPayload()), ElementsAre("Button 1 1", "Button 1 2"));
  EXPECT_EQ(2u, Occurrences(OpenPayload(), tests::Utf8(secondId)));
  tracker.TrackDockOpen();
  EXPECT_EQ(thirdId, tracker.GetRecords().at(0).SessionID);
}

TEST_F(Faults, AProcessWithoutASessionWritesItsRecordsBeforeItRaises) {
  tracker = {};
  identifiers.SetStatus(RPC_S_UUID_NO_ADDRESS);
  Start();
  AddButtons(1);
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_PARAMETER), FlushFailure());
  EXPECT_THAT(tracker.GetRecords(), IsEmpty());
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_PARAMETER), FlushFailure());
  EXPECT_THAT(Elements(OpenPayload()), ElementsAre("Button 1 1"));
}

} // namespace
} // namespace lumenor
