// What a payload looks like, to the byte.

#include "tracking/Payload.h"

#include <initializer_list>

#include "system/Xml.h"
#include "tracking/Tracking.h"

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

const std::string declaration = "<?xml version=\"1.0\" encoding = \"utf-8\"?>\n";

using NamedValues = std::vector<std::pair<std::string, std::string>>;

/// An `element` with its rows.
std::string Recorded(const std::string &name, const std::string &type, const std::string &sequence,
                     const NamedValues &rows) {
  std::string text = "<element name=\"" + name + "\" type=\"" + type + "\" sequence-id=\"" + sequence + "\">";
  for (const auto &[rowName, value] : rows)
    text += "<attribute name=\"" + rowName + "\" value=\"" + value + "\"/>";
  return text + "</element>";
}

/// The rows that every record begins with.
NamedValues Rows(const std::string &action, const std::string &time, const NamedValues &more) {
  NamedValues rows = {{"SessionID", "00000002-0203-0405-0607-08090a0b0c0d"},
                      {"Feature", "Dock"},
                      {"Action", action},
                      {"TrackTimestamp", time}};
  rows.insert(rows.end(), more.begin(), more.end());
  return rows;
}

class PayloadFile : public Tracking {
protected:
  PayloadFile() {
    machine.SetText(L"pcbrand", L"Maker & Sons");
    machine.SetText(L"Platform", L"VRA");
    machine.SetText(L"applicationid", L"dock-7");
    StartAgreed();
  }

  /// A second later in each minute than in the one before.
  void SetMinute(WORD minute) const { clock.SetUtc(Moment(2024, 3, 5, 6, minute, static_cast<WORD>(minute - 9), 999)); }

  /// A day with the dock: all that can be recorded.
  void UseDock() {
    SetMinute(10);
    tracker.TrackDockOpen();
    for (const WORD minute : std::initializer_list<WORD>{11, 12, 13}) {
      SetMinute(minute);
      tracker.TrackIconClick(Entry(L"Mail", L"exe", L"C:\\mail.exe"));
    }
    SetMinute(14);
    tracker.TrackPopupClick(Entry(L"News", L"url", L"http://news.example/?a=1&b=2"));
    SetMinute(15);
    tracker.TrackIconAdd(Entry(L"Paint", L"exe", L"\"C:\\p p.exe\""));
    SetMinute(16);
    tracker.TrackIconDelete(Entry(L"Notes", L"xml", L""));
    SetMinute(17);
    tracker.TrackUrlSearch();
    SetMinute(18);
    tracker.TrackHelpSearch();
    SetMinute(19);
    tracker.TrackDockClose();
  }

  /// What UseDock brings about.
  const std::string used =
      Recorded("Dock", "Window", "1", Rows("Open", "3/5/2024 6:10:1 UTC", {{"SubSessionID", "1"}})) +
      Recorded("Mail", "DockIconType", "2",
               Rows("Click", "3/5/2024 6:11:2 UTC",
                    {{"ActionCount", "3"},
                     {"TouchPoint", "Dock"},
                     {"ActionType", "exe"},
                     {"ActionParams", "C:\\mail.exe"}})) +
      Recorded("News", "DockIconType", "3",
               Rows("Click", "3/5/2024 6:14:5 UTC",
                    {{"ActionCount", "1"},
                     {"TouchPoint", "Dock"},
                     {"SubFeature", "DockPopup"},
                     {"ActionType", "url"},
                     {"ActionParams", "http://news.example/?a=1&amp;b=2"}})) +
      Recorded("Paint", "DockIconType", "4",
               Rows("Add", "3/5/2024 6:15:6 UTC",
                    {{"ActionCount", "1"}, {"ActionType", "exe"}, {"ActionParams", "&quot;C:\\p p.exe&quot;"}})) +
      Recorded("Notes", "DockIconType", "5", Rows("Delete", "3/5/2024 6:16:7 UTC", {{"ActionCount", "1"}})) +
      Recorded("Search", "Url", "6", Rows("Search", "3/5/2024 6:17:8 UTC", {{"ActionCount", "1"}})) +
      Recorded("Search", "helpSearch", "7", Rows("Search", "3/5/2024 6:18:9 UTC", {{"ActionCount", "1"}})) +
      Recorded("Dock", "Window", "8", Rows("Close", "3/5/2024 6:19:10 UTC", {{"SubSessionID", "1"}}));

  static std::string SessionInfo(const std::string &start, const std::string &end) {
    return "<session-tracking-info appName=\"lumenor3.4\"><attribute name=\"version\" value=\"3.4\"/>"
           "<attribute name=\"start\" value=\"" +
           start + "\"/><attribute name=\"end\" value=\"" + end +
           "\"/><attribute name=\"brand\" value=\"Maker &amp; Sons\"/><attribute name=\"platform\" value=\"VRA\"/>"
           "<attribute name=\"applicationid\" value=\"dock-7\"/></session-tracking-info>";
  }
};

TEST_F(PayloadFile, OfOneRecordIsThis) {
  tracker.TrackDockOpen();
  tracker.WritePayload(false);
  EXPECT_EQ("<?xml version=\"1.0\" encoding = \"utf-8\"?>\n"
            "<payload><element name=\"Dock\" type=\"Window\" sequence-id=\"1\">"
            "<attribute name=\"SessionID\" value=\"00000002-0203-0405-0607-08090a0b0c0d\"/>"
            "<attribute name=\"Feature\" value=\"Dock\"/>"
            "<attribute name=\"Action\" value=\"Open\"/>"
            "<attribute name=\"TrackTimestamp\" value=\"3/5/2024 6:7:8 UTC\"/>"
            "<attribute name=\"SubSessionID\" value=\"1\"/>"
            "</element></payload>\n",
            OpenPayload());
}

TEST_F(PayloadFile, OfNoRecordIsAnEmptyRoot) {
  tracker.WritePayload(false);
  EXPECT_EQ(declaration + "<payload/>\n", OpenPayload());
}

TEST_F(PayloadFile, OpenOneHasARowForEachThingThatIsKnown) {
  UseDock();
  tracker.Flush();
  EXPECT_EQ(declaration + "<payload>" + used + "</payload>\n", OpenPayload());
}

TEST_F(PayloadFile, ThatIsWrittenTwiceHasTheNewRecordsBehindTheOld) {
  UseDock();
  tracker.Flush();
  tracker.TrackDockOpen();
  tracker.Flush();
  EXPECT_EQ(declaration + "<payload>" + used +
                Recorded("Dock", "Window", "9", Rows("Open", "3/5/2024 6:19:10 UTC", {{"SubSessionID", "1"}})) +
                "</payload>\n",
            OpenPayload());
}

TEST_F(PayloadFile, ThatIsClosedByTimeHasItsHeaderFirst) {
  UseDock();
  MakeDue();
  tracker.Flush();
  EXPECT_EQ(declaration + "<payload>" + SessionInfo("3/5/2024 6:7:8 UTC", "3/12/2024 6:7:8 UTC") + used +
                "</payload>\n",
            ClosedPayload());
}

TEST_F(PayloadFile, ThatIsClosedForItsSizeHasItsHeaderFirst) {
  UseDock();
  tracker.TrackIconDelete(Entry(std::wstring(51200, L'x'), L"", L""));
  clock.SetUtc(Moment(2024, 3, 5, 7, 0, 0));
  tracker.Flush();
  EXPECT_EQ(declaration + "<payload>" + SessionInfo("3/5/2024 6:7:8 UTC", "3/5/2024 7:0:0 UTC") + used +
                Recorded(std::string(51200, 'x'), "DockIconType", "9",
                         Rows("Delete", "3/5/2024 6:19:10 UTC", {{"ActionCount", "1"}})) +
                "</payload>\n",
            ClosedPayload());
}

TEST_F(PayloadFile, ThatIsClosedWithoutARecordIsItsHeader) {
  tracker.WritePayload(true);
  EXPECT_EQ(declaration + "<payload>" + SessionInfo("3/5/2024 6:7:8 UTC", "3/5/2024 6:7:8 UTC") + "</payload>\n",
            OpenPayload());
}

TEST_F(PayloadFile, ClosedWithRecordsStandingTakesThemAlong) {
  UseDock();
  tracker.WritePayload(true);
  EXPECT_EQ(declaration + "<payload>" + SessionInfo("3/5/2024 6:7:8 UTC", "3/5/2024 6:19:10 UTC") + used +
                "</payload>\n",
            OpenPayload());
}

TEST_F(PayloadFile, TheNextOneStartsWhenTheOneBeforeWasHandedOver) {
  MakeDue();
  tracker.Flush();
  clock.SetUtc(Moment(2024, 3, 13, 1, 2, 3));
  tracker.WritePayload(true);
  EXPECT_EQ(declaration + "<payload>" + SessionInfo("3/12/2024 6:7:8 UTC", "3/13/2024 1:2:3 UTC") + "</payload>\n",
            OpenPayload());
}

TEST_F(PayloadFile, WithoutAStartAllIsEmptyAndTimesAreZeros) {
  UsageTracker bare;
  bare.ReadOptIn();
  clock.SetUtc({});
  bare.TrackDockOpen();
  bare.WritePayload(true);
  EXPECT_EQ(
      declaration +
          "<payload><session-tracking-info appName=\"\"><attribute name=\"version\" value=\"\"/>"
          "<attribute name=\"start\" value=\"0/0/0 0:0:0 UTC\"/><attribute name=\"end\" value=\"0/0/0 0:0:0 UTC\"/>"
          "<attribute name=\"brand\" value=\"\"/><attribute name=\"platform\" value=\"\"/>"
          "<attribute name=\"applicationid\" value=\"\"/></session-tracking-info>"
          "<element name=\"Dock\" type=\"Window\" sequence-id=\"1\"><attribute name=\"SessionID\" value=\"\"/>"
          "<attribute name=\"Feature\" value=\"Dock\"/><attribute name=\"Action\" value=\"Open\"/>"
          "<attribute name=\"TrackTimestamp\" value=\"0/0/0 0:0:0 UTC\"/>"
          "<attribute name=\"SubSessionID\" value=\"1\"/></element></payload>\n",
      OpenPayload());
}

TEST_F(PayloadFile, AnActionNeedsItsTypeAndItsParameters) {
  tracker.TrackIconAdd(Entry(L"a", L"exe", L""));
  tracker.TrackIconAdd(Entry(L"b", L"", L"C:\\p.exe"));
  tracker.TrackIconAdd(Entry(L"c", L"", L""));
  tracker.WritePayload(false);
  EXPECT_EQ(0u, Occurrences(OpenPayload(), "\"ActionType\""));
  EXPECT_EQ(0u, Occurrences(OpenPayload(), "\"ActionParams\""));
  EXPECT_EQ(3u, Occurrences(OpenPayload(), "\"ActionCount\""));
}

// The declaration.

TEST_F(PayloadFile, TheDeclarationKeepsItsBlanksAtEveryWriting) {
  for (int round = 0; round < 4; ++round) {
    tracker.TrackDockOpen();
    tracker.WritePayload(round == 3);
    EXPECT_THAT(OpenPayload(), StartsWith(declaration + "<payload>"));
    EXPECT_EQ(1u, Occurrences(OpenPayload(), "<?"));
  }
}

TEST_F(PayloadFile, AnotherDeclarationIsReplaced) {
  tests::WriteBytes(TemporaryFile(), "<?xml version='1.0' encoding='utf-8' standalone='yes'?><payload><a/></payload>");
  tracker.WritePayload(false);
  EXPECT_EQ(declaration + "<payload><a/></payload>\n", OpenPayload());
}

TEST_F(PayloadFile, AMissingDeclarationIsPutIn) {
  tests::WriteBytes(TemporaryFile(), "<payload><a/></payload>");
  tracker.WritePayload(false);
  EXPECT_EQ(declaration + "<payload><a/></payload>\n", OpenPayload());
}

TEST_F(PayloadFile, TheDeclarationStandsBeforeAllElse) {
  tests::WriteBytes(TemporaryFile(), "<?xml version='1.0'?><!--c--><?other p?><payload/>");
  tracker.WritePayload(false);
  EXPECT_THAT(OpenPayload(), StartsWith(declaration + "<!--c-->"));
  EXPECT_EQ(2u, Occurrences(OpenPayload(), "<?"));
}

TEST_F(PayloadFile, AFileOfTwoByteCharactersBecomesUtf8) {
  const std::wstring text = L"\uFEFF<?xml version=\"1.0\" encoding=\"utf-16\"?><payload><a b=\"\u00FC\"/></payload>";
  tests::WriteBytes(TemporaryFile(), std::string(reinterpret_cast<const char *>(text.data()), text.size() * 2));
  tracker.WritePayload(false);
  EXPECT_EQ(declaration + "<payload><a b=\"\xC3\xBC\"/></payload>\n", OpenPayload());
}

TEST_F(PayloadFile, WhatElseThePayloadHoldsStays) {
  tests::WriteBytes(TemporaryFile(), "<payload x=\"1\">text<!--c--><other>y</other></payload>");
  tracker.TrackDockOpen();
  tracker.WritePayload(false);
  EXPECT_THAT(OpenPayload(),
              StartsWith(declaration + "<payload x=\"1\">text<!--c--><other>y</other><element name=\"Dock\""));
}

// Texts.

class PayloadText : public PayloadFile, public testing::WithParamInterface<std::wstring> {};

TEST_P(PayloadText, IsReadBackAsXmlCanHoldIt) {
  tracker.TrackIconClick(Entry(GetParam(), L"t" + GetParam(), L"p" + GetParam()));
  tracker.WritePayload(false);
  tracker.TrackDockClose();
  tracker.WritePayload(false); // reads it and writes it again
  const XmlDocumentPtr document = LoadXmlFile(TemporaryFile());
  ASSERT_NE(nullptr, document);
  EXPECT_EQ(XmlText(GetParam()), ChildAttribute(document, L"/payload/element", L"name"));
  EXPECT_EQ(XmlText(L"t" + GetParam()), ChildAttribute(document, L"//attribute[@name='ActionType']", L"value"));
  EXPECT_EQ(XmlText(L"p" + GetParam()), ChildAttribute(document, L"//attribute[@name='ActionParams']", L"value"));
  EXPECT_EQ(2u, SelectNodes(document, L"/payload/element").size());
}

INSTANTIATE_TEST_SUITE_P(Texts, PayloadText,
                         testing::Values(L"", L"a \"quoted\" and 'this'", L"<a></payload>", L"&amp; & &#10;", L"]]>",
                                         L"two\nlines", L"two\r\nlines\r", L"a\ttab", L"  blanks  ",
                                         L"\u05E9\u05DC\u05D5\u05DD \u202Eabc", L"\u00FC\u65E5\uFFFD",
                                         L"\U0001F600\U0010FFFF", std::wstring({L'a', 0xD83D, L'b'}),
                                         std::wstring({0xDE00, 0xD83D}), std::wstring({1, 2, 0x1F, 0x7F}),
                                         std::wstring(L"a\0b", 3), std::wstring({0xFFFE, 0xFFFF}),
                                         std::wstring(20000, L'\u65E5')));

TEST_F(PayloadFile, TextsAreUtf8) {
  tracker.TrackIconDelete(Entry(L"\u00FC\u65E5\U0001F600", L"", L""));
  tracker.WritePayload(false);
  EXPECT_THAT(OpenPayload(), testing::HasSubstr("<element name=\"\xC3\xBC\xE6\x97\xA5\xF0\x9F\x98\x80\" "));
}

TEST_F(PayloadFile, TheMachinesTextsAreHeldToo) {
  machine.SetText(L"pcbrand", L"a\"<&\n\x01");
  tracker.InitSessionInfo();
  tracker.WritePayload(true);
  const XmlDocumentPtr document = LoadXmlFile(TemporaryFile());
  EXPECT_EQ(L"a\"<&\n\uFFFD", ChildAttribute(document, L"//attribute[@name='brand']", L"value"));
}

TEST_F(PayloadFile, LiesInTheUsersFolderUnderItsOwnName) {
  EXPECT_EQ(folders.AppData() + L"\\Tarnwick\\Lumenor\\ruq\\ruqDock.tmp", PayloadPath());
}

} // namespace
} // namespace lumenor
