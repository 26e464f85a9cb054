// The records of what the user does; writing and transfer are tested elsewhere.

#include "tracking/Tracking.h"

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

/// All fields of a record, in their order.
std::string Whole(const TrackRecord &record) {
  const SYSTEMTIME &time = record.TrackTimestamp;
  std::wstring text;
  for (const std::wstring &field :
       {record.Name, record.Type, record.Feature, record.SubFeature, record.ActionType, record.ActionParams,
        record.TouchPoint, record.Action, record.SessionID, std::to_wstring(record.SequenceId),
        std::to_wstring(record.SubSessionID), std::to_wstring(record.ActionCount),
        std::to_wstring(time.wHour) + L":" + std::to_wstring(time.wMinute) + L":" + std::to_wstring(time.wSecond)})
    text += field + L"|";
  return tests::Utf8(text);
}

const std::string session = "00000002-0203-0405-0607-08090a0b0c0d";

class Events : public Tracking {
protected:
  Events() { StartAgreed(); }

  std::vector<std::string> Records() const {
    std::vector<std::string> lines;
    for (const TrackRecord &record : tracker.GetRecords())
      lines.push_back(Whole(record));
    return lines;
  }

  const Element mail = Entry(L"Mail", L"exe", L"C:\\mail.exe");
};

TEST_F(Events, OpeningTheDock) {
  tracker.TrackDockOpen();
  EXPECT_THAT(Records(), ElementsAre("Dock|Window|Dock|||||Open|" + session + "|1|1|0|6:7:8|"));
}

TEST_F(Events, ClosingTheDock) {
  tracker.TrackDockClose();
  EXPECT_THAT(Records(), ElementsAre("Dock|Window|Dock|||||Close|" + session + "|1|1|0|6:7:8|"));
}

TEST_F(Events, AClickOnAButton) {
  tracker.TrackIconClick(mail);
  EXPECT_THAT(Records(),
              ElementsAre("Mail|DockIconType|Dock||exe|C:\\mail.exe|Dock|Click|" + session + "|1|0|1|6:7:8|"));
}

TEST_F(Events, AClickInAFlyout) {
  tracker.TrackPopupClick(mail);
  EXPECT_THAT(Records(),
              ElementsAre("Mail|DockIconType|Dock|DockPopup|exe|C:\\mail.exe|Dock|Click|" + session + "|1|0|1|6:7:8|"));
}

TEST_F(Events, AnAddedButton) {
  tracker.TrackIconAdd(mail);
  EXPECT_THAT(Records(), ElementsAre("Mail|DockIconType|Dock||exe|C:\\mail.exe||Add|" + session + "|1|0|1|6:7:8|"));
}

TEST_F(Events, ARemovedButton) {
  tracker.TrackIconDelete(mail);
  EXPECT_THAT(Records(), ElementsAre("Mail|DockIconType|Dock||exe|C:\\mail.exe||Delete|" + session + "|1|0|1|6:7:8|"));
}

TEST_F(Events, ASearchOfTheWeb) {
  tracker.TrackUrlSearch();
  EXPECT_THAT(Records(), ElementsAre("Search|Url|Dock|||||Search|" + session + "|1|0|1|6:7:8|"));
}

TEST_F(Events, ASearchOfTheHelp) {
  tracker.TrackHelpSearch();
  EXPECT_THAT(Records(), ElementsAre("Search|helpSearch|Dock|||||Search|" + session + "|1|0|1|6:7:8|"));
}

TEST_F(Events, OpeningAndClosingAreNeverCountedTogether) {
  tracker.TrackDockOpen();
  tracker.TrackDockOpen();
  tracker.TrackDockClose();
  tracker.TrackDockClose();
  EXPECT_THAT(Records(), ElementsAre("Dock|Window|Dock|||||Open|" + session + "|1|1|0|6:7:8|",
                                     "Dock|Window|Dock|||||Open|" + session + "|2|1|0|6:7:8|",
                                     "Dock|Window|Dock|||||Close|" + session + "|3|1|0|6:7:8|",
                                     "Dock|Window|Dock|||||Close|" + session + "|4|1|0|6:7:8|"));
}

TEST_F(Events, ThreeClicksAreOneRecordOfTheFirst) {
  tracker.TrackIconClick(mail);
  clock.SetUtc(Moment(2024, 3, 5, 6, 30, 0));
  tracker.TrackIconClick(mail);
  tracker.TrackIconClick(mail);
  EXPECT_THAT(Records(),
              ElementsAre("Mail|DockIconType|Dock||exe|C:\\mail.exe|Dock|Click|" + session + "|1|0|3|6:7:8|"));
}

TEST_F(Events, AMergeTakesNoSequenceNumber) {
  tracker.TrackIconClick(mail);
  tracker.TrackIconClick(mail);
  tracker.TrackDockClose();
  EXPECT_THAT(Summary(tracker.GetRecords()), ElementsAre("Mail 1", "Dock 2"));
}

TEST_F(Events, EachKindIsCountedByItself) {
  for (int round = 0; round < 2; ++round) {
    tracker.TrackIconClick(mail);
    tracker.TrackPopupClick(mail);
    tracker.TrackIconAdd(mail);
    tracker.TrackIconDelete(mail);
    tracker.TrackUrlSearch();
    tracker.TrackHelpSearch();
  }
  ASSERT_THAT(tracker.GetRecords(), SizeIs(6));
  for (const TrackRecord &record : tracker.GetRecords())
    EXPECT_EQ(2u, record.ActionCount);
}

TEST_F(Events, TheSameButtonInTheDockAndInAFlyoutAreTwo) {
  tracker.TrackIconClick(mail);
  tracker.TrackPopupClick(mail);
  tracker.TrackIconClick(mail);
  EXPECT_THAT(Records(),
              ElementsAre("Mail|DockIconType|Dock||exe|C:\\mail.exe|Dock|Click|" + session + "|1|0|2|6:7:8|",
                          "Mail|DockIconType|Dock|DockPopup|exe|C:\\mail.exe|Dock|Click|" + session + "|2|0|1|6:7:8|"));
}

TEST_F(Events, TheSameHeadWithOtherParametersAreTwo) {
  tracker.TrackIconClick(mail);
  tracker.TrackPopupClick(Entry(L"Mail", L"exe", L"C:\\other.exe"));
  EXPECT_THAT(tracker.GetRecords(), SizeIs(2));
}

/// Notes a use of `first` and of `second`; how many records that made.
template <typename Call>
std::size_t Kinds(UsageTracker &tracker, Call call, const Element &first, const Element &second) {
  (tracker.*call)(first);
  (tracker.*call)(second);
  return tracker.GetRecords().size();
}

class IconEvents : public Events, public testing::WithParamInterface<void (UsageTracker::*)(const Element &)> {
protected:
  std::size_t Records(const Element &second) { return Kinds(tracker, GetParam(), mail, second); }
};

TEST_P(IconEvents, AnotherNameKeepsThemApart) { EXPECT_EQ(2u, Records(Entry(L"Post", L"exe", L"C:\\mail.exe"))); }

TEST_P(IconEvents, AnotherActionTypeKeepsThemApart) { EXPECT_EQ(2u, Records(Entry(L"Mail", L"url", L"C:\\mail.exe"))); }

TEST_P(IconEvents, OtherParametersKeepThemApart) { EXPECT_EQ(2u, Records(Entry(L"Mail", L"exe", L"C:\\mail.exe /n"))); }

TEST_P(IconEvents, TheCaseOfLettersKeepsThemApart) { EXPECT_EQ(2u, Records(Entry(L"mail", L"exe", L"C:\\mail.exe"))); }

TEST_P(IconEvents, AllElseOfAnEntryDoesNot) {
  Element second = mail;
  second.HeadMaxLength = 5;
  second.ToolTip = L"Another tip";
  second.ActionParamsBackup = L"C:\\backup.exe";
  second.Image = L"picture.png";
  second.Position = 7;
  EXPECT_EQ(1u, Records(second));
}

INSTANTIATE_TEST_SUITE_P(AllCalls, IconEvents,
                         testing::Values(&UsageTracker::TrackIconClick, &UsageTracker::TrackPopupClick,
                                         &UsageTracker::TrackIconAdd, &UsageTracker::TrackIconDelete));

TEST_F(Events, NamesThatContainNullsAreComparedWhole) {
  tracker.TrackIconAdd(Entry(std::wstring(L"a\0b", 3)));
  tracker.TrackIconAdd(Entry(std::wstring(L"a\0c", 3)));
  EXPECT_THAT(tracker.GetRecords(), SizeIs(2));
}

TEST_F(Events, AnEntryOfNoTextsAtAllIsRecorded) {
  tracker.TrackIconClick({});
  tracker.TrackIconClick({});
  EXPECT_THAT(Records(), ElementsAre("|DockIconType|Dock||||Dock|Click|" + session + "|1|0|2|6:7:8|"));
}

TEST_F(Events, AButtonCalledLikeTheSearchIsNoSearch) {
  tracker.TrackUrlSearch();
  tracker.TrackIconClick(Entry(L"Search", L"", L""));
  EXPECT_THAT(tracker.GetRecords(), SizeIs(2));
}

TEST_F(Events, AWrittenRecordIsNotCountedOn) {
  tracker.TrackIconClick(mail);
  tracker.Flush();
  tracker.TrackIconClick(mail);
  EXPECT_THAT(Records(),
              ElementsAre("Mail|DockIconType|Dock||exe|C:\\mail.exe|Dock|Click|" + session + "|2|0|1|6:7:8|"));
}

TEST_F(Events, TheTwentiethRecordIsWrittenWithAllBeforeIt) {
  AddButtons(19);
  EXPECT_THAT(tracker.GetRecords(), SizeIs(19));
  EXPECT_FALSE(tests::Exists(TemporaryFile()));
  tracker.TrackIconAdd(mail);
  EXPECT_THAT(tracker.GetRecords(), SizeIs(0));
  EXPECT_THAT(Elements(OpenPayload()), SizeIs(20));
  EXPECT_EQ("Mail 20", Elements(OpenPayload()).back());
}

TEST_F(Events, OpeningAndClosingMayBeTheTwentieth) {
  AddButtons(19);
  tracker.TrackDockClose();
  EXPECT_EQ("Dock 20", Elements(OpenPayload()).back());
  AddButtons(19);
  tracker.TrackDockOpen();
  EXPECT_EQ("Dock 40", Elements(OpenPayload()).back());
}

TEST_F(Events, AMergeNeverLeadsToAWriting) {
  tests::WriteBytes(TemporaryFile(), "no payload"); // nothing can be written, so more than twenty accumulate
  AddButtons(20);
  ASSERT_THAT(tracker.GetRecords(), SizeIs(20));
  ::DeleteFileW(TemporaryFile().c_str());
  tracker.TrackIconAdd(Entry(L"Button 7"));
  ASSERT_THAT(tracker.GetRecords(), SizeIs(20));
  EXPECT_EQ(2u, tracker.GetRecords().at(6).ActionCount);
  EXPECT_FALSE(tests::Exists(TemporaryFile()));
}

TEST_F(Events, AnyFurtherRecordBeyondTwentyLeadsToAWriting) {
  tests::WriteBytes(TemporaryFile(), "no payload");
  AddButtons(20);
  ::DeleteFileW(TemporaryFile().c_str());
  tracker.TrackUrlSearch();
  EXPECT_THAT(Elements(OpenPayload()), SizeIs(21));
}

} // namespace
} // namespace lumenor
