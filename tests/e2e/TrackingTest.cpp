// What the dock counts of its use: payload files, and their transfer to the collector.

#include <algorithm>
#include <cstdint>

#include <gtest/gtest.h>

#include "e2e/Browser.h"
#include "e2e/DockProcess.h"
#include "e2e/DragProgram.h"
#include "e2e/Input.h"
#include "e2e/Payloads.h"
#include "e2e/ResetDialog.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

namespace lumenor::e2e {
namespace {

using tests::Utf8;
using Names = std::vector<std::wstring>;

constexpr wchar_t toolsDocument[] = L"Lumenor.MainFrame.Windows.DockViewWindow.Tools";
constexpr POINT farAway = {640, 700};
constexpr UINT_PTR trackingTimer = 8;
constexpr ULONGLONG sevenDays = 7 * 24 * 3600 * oneSecond;

/// The checksum that a closed payload is named by, from its definition.
std::uint32_t Checksum(const std::string &bytes) {
  std::uint32_t checksum = 0xFFFFFFFF;
  for (const char byte : bytes) {
    checksum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit)
      checksum = checksum >> 1 ^ (checksum % 2 != 0 ? 0xEDB88320 : 0);
  }
  return checksum;
}

class Tracking : public ::testing::Test {
protected:
  Tracking() {
    const auto write = [&](const wchar_t *document, int number, const wchar_t *head) {
      installation.WriteStub(L"xx_xx", document, number,
                             {.head = head, .actionType = L"exe", .actionParams = Program(head), .position = number});
    };
    write(mainDocument, 0, L"Fixed");
    installation.WriteStub(L"xx_xx", mainDocument, 1,
                           {.head = L"Tools", .actionType = L"xml", .actionParams = toolsDocument, .position = 1});
    write(toolsDocument, 0, L"Entry");
    write(userDocument, 0, L"First");
    write(userDocument, 1, L"Second");
    installation.WriteSearchProviders(
        {{.head = L"Web", .actionType = L"url", .actionParams = L"http://web.example/?q="},
         {.head = L"Help", .actionType = L"helpSearch"}});
    ::SetEnvironmentVariableW(L"LUMENOR_HELP_RECORD", HelpRecord().c_str());
    MoveCursor(farAway);
  }
  ~Tracking() override {
    ::SetEnvironmentVariableW(L"LUMENOR_HELP_RECORD", nullptr);
    ReleaseLeftButton();
  }

  std::wstring HelpRecord() const { return installation.LogFolder() + L"\\helped.txt"; }

  /// The stored action of the button of that name.
  std::wstring Program(const std::wstring &head) const { return installation.RecorderCommand(head); }

  /// The element of a click on the bar's button of that name.
  std::string ClickElement(const wchar_t *head, int sequence, int count) const {
    return ElementText(Utf8(head), "DockIconType", sequence, "Click",
                       {{"ActionCount", std::to_string(count)},
                        {"TouchPoint", "Dock"},
                        {"ActionType", "exe"},
                        {"ActionParams", Utf8(Program(head))}});
  }

  /// Clicks there and waits until the program was started.
  void ClickAndWait(POINT place) const {
    const std::size_t before = installation.RecordedStarts().size();
    Click(place);
    ASSERT_LT(before, installation.WaitForCommandLines(before + 1).size());
  }

  void ClickInFlyout(const DockProcess &dock) const {
    const std::size_t before = installation.RecordedStarts().size();
    OpenPopup(dock, dock.MainButton(1));
    EXPECT_TRUE(ChooseRow(dock, 0));
    EXPECT_EQ(before + 1, installation.WaitForCommandLines(before + 1).size());
  }

  std::string Payload() const { return ReadBytes(OpenPayload(installation)); }

  /// The one payload that was handed over; empty without one.
  std::string ClosedPayload() const {
    const Names names = ClosedPayloads(installation);
    return names.size() == 1 ? ReadBytes(PayloadFolder(installation) + L"\\" + names[0]) : std::string();
  }

  bool ComesToClosedPayload() const {
    return WaitFor([&] { return ClosedPayloads(installation).size() == 1; });
  }

  /// What the collector was started with so far.
  std::vector<RecordedStart> CollectorStarts() const {
    std::vector<RecordedStart> starts = installation.RecordedStarts();
    std::erase_if(starts,
                  [](const RecordedStart &start) { return start.commandLine.find(L"TWRuq") == std::wstring::npos; });
    return starts;
  }

  std::string AppId() const { return Utf8(DockValue(L"AppID").value_or(L"none")); }

  /// All times lie between the start of the test and now, in order, and there is one session.
  void ExpectOneSession(const std::string &payload) const {
    ULONGLONG last = begin;
    for (const std::string &time : ValuesOf(payload, "TrackTimestamp")) {
      EXPECT_LE(last, TimeOf(time)) << time;
      last = TimeOf(time);
    }
    EXPECT_LE(last, Now());
    const auto sessions = ValuesOf(payload, "SessionID");
    ASSERT_FALSE(sessions.empty());
    EXPECT_TRUE(IsUuid(sessions[0])) << sessions[0];
    EXPECT_EQ(static_cast<std::ptrdiff_t>(sessions.size()), std::count(sessions.begin(), sessions.end(), sessions[0]));
  }

  const Installation installation;
  const Browser browser{installation};
  const ULONGLONG begin = Now();
};

TEST_F(Tracking, WithConsentThePayloadHoldsEveryUseInOrder) {
  installation.OptIn();
  ShownDock dock(installation);
  const POINT fixed = dock.MainButton(0);
  for (const LONG aside : {0, 15, -15}) // no two on one spot, which would be a double click
    ClickAndWait({fixed.x + aside, fixed.y});
  ClickInFlyout(dock);

  const std::wstring path = installation.WriteAside(L"New.txt", "a file");
  {
    const DragProgram other({path});
    ASSERT_TRUE(other.IsUp());
    const POINT first = dock.UserButton(0);
    other.DragTo({first.x - 20, first.y});
    ASSERT_TRUE(WaitFor([&] { return dock.Control(2002) != nullptr; }));
  }
  const POINT second = dock.UserButton(1);
  DragThrough({second, {second.x + 20, second.y}, farAway});
  ASSERT_TRUE(WaitFor([&] { return dock.Control(2001) == nullptr; }));

  EnterText(dock, L"secret");
  PressKey(VK_RETURN);
  ASSERT_EQ(Names{L"http://web.example/?q=secret"}, browser.WaitForAddresses(1));
  ChooseProvider(dock, 1);
  Click(dock.SearchButton());
  ASSERT_TRUE(WaitFor([&] { return !ReadBytes(HelpRecord()).empty(); }));
  EXPECT_EQ(0U, CloseByButton(dock));

  const std::string payload = Payload();
  EXPECT_EQ(PayloadText(
                {WindowElement(1, "Open"), ClickElement(L"Fixed", 2, 3),
                 ElementText("Entry", "DockIconType", 3, "Click",
                             {{"ActionCount", "1"},
                              {"TouchPoint", "Dock"},
                              {"SubFeature", "DockPopup"},
                              {"ActionType", "exe"},
                              {"ActionParams", Utf8(Program(L"Entry"))}}),
                 ElementText("New", "DockIconType", 4, "Add",
                             {{"ActionCount", "1"}, {"ActionType", "exe"}, {"ActionParams", "\"" + Utf8(path) + "\""}}),
                 ElementText("Second", "DockIconType", 5, "Delete",
                             {{"ActionCount", "1"}, {"ActionType", "exe"}, {"ActionParams", Utf8(Program(L"Second"))}}),
                 ElementText("Search", "Url", 6, "Search", {{"ActionCount", "1"}}),
                 ElementText("Search", "helpSearch", 7, "Search", {{"ActionCount", "1"}}), WindowElement(8, "Close")}),
            Masked(payload));
  ExpectOneSession(payload);
  EXPECT_EQ(Names(), ClosedPayloads(installation));
}

TEST_F(Tracking, AButtonDroppedAtItsOwnPlaceIsNotCounted) {
  installation.OptIn();
  ShownDock dock(installation);
  const POINT second = dock.UserButton(1);
  MoveCursor(second);
  PressLeftButton();
  MoveCursor({second.x + 6, second.y});
  ASSERT_TRUE(WaitFor([&] { return !::IsWindowVisible(dock.Control(2001)); })) << "it is being dragged";
  LetGo({second.x + 20, second.y});
  ASSERT_TRUE(WaitFor([&] { return ::IsWindowVisible(dock.Control(2001)) != FALSE; }));
  EXPECT_EQ(0U, CloseByButton(dock));
  EXPECT_EQ(PayloadText({WindowElement(1, "Open"), WindowElement(2, "Close")}), Masked(Payload()));
}

TEST_F(Tracking, WithoutConsentNoPayloadIsWrittenButTheApplicationIdIs) {
  std::string firstId;
  for (const bool wasAsked : {false, true}) {
    installation.InstallCollector();
    if (wasAsked)
      installation.OptIn(false);
    ShownDock dock(installation);
    ClickAndWait(dock.MainButton(0));
    ::PostMessageW(dock.Bar(), WM_TIMER, trackingTimer, 0);
    EXPECT_EQ(0U, CloseByButton(dock));
    EXPECT_FALSE(Exists(PayloadFolder(installation)));
    EXPECT_TRUE(IsUuid(AppId())) << AppId();
    EXPECT_TRUE(firstId.empty() || firstId == AppId());
    firstId = AppId();
  }
  EXPECT_TRUE(CollectorStarts().empty());
}

TEST_F(Tracking, ADuePayloadIsClosedNamedByItsChecksumAndPassedToTheCollector) {
  installation.OptIn();
  const std::wstring collector = installation.InstallCollector();
  SetMachineValue(L"pcbrand", L"Brand & Sons");
  SetMachineValue(L"Platform", L"VRA");
  SetMachineValue(L"applicationid", L"machine 7");
  SetTrackingValue(L"NextTransferTime", L"1/2/2020 3:4:5");
  ShownDock dock(installation);
  ClickAndWait(dock.MainButton(0));
  const ULONGLONG closing = Now();
  ::PostMessageW(dock.Bar(), WM_TIMER, trackingTimer, 0);
  ASSERT_TRUE(ComesToClosedPayload());
  ASSERT_TRUE(WaitFor([&] { return TrackingValue(L"NextTransferTime") != L"1/2/2020 3:4:5"; }));

  const std::string payload = ClosedPayload();
  EXPECT_EQ(PayloadText({WindowElement(1, "Open"), ClickElement(L"Fixed", 2, 1)},
                        HeaderText("Brand & Sons", "VRA", "machine 7")),
            Masked(payload));
  EXPECT_EQ(Names{std::to_wstring(Checksum(payload)) + L".ruq"}, ClosedPayloads(installation));
  EXPECT_FALSE(Exists(OpenPayload(installation)));
  ExpectOneSession(payload);
  const std::string start = ValuesOf(payload, "start").at(0), end = ValuesOf(payload, "end").at(0);
  EXPECT_TRUE(start.ends_with(" UTC") && end.ends_with(" UTC")) << start << ", " << end;
  EXPECT_TRUE(begin <= TimeOf(start) && TimeOf(start) <= closing) << start;
  EXPECT_TRUE(closing <= TimeOf(end) && TimeOf(end) <= Now()) << end;

  EXPECT_EQ(L"3", TrackingValue(L"NextElementSeq"));
  const ULONGLONG next = TimeOf(Utf8(TrackingValue(L"NextTransferTime").value_or(L"")));
  EXPECT_TRUE(closing + sevenDays <= next && next <= Now() + sevenDays);

  ASSERT_TRUE(WaitFor([&] { return CollectorStarts().size() == 1; }));
  EXPECT_EQ(L"\"" + collector + L"\" lumenor3.4", CollectorStarts()[0].commandLine);
  EXPECT_EQ(PayloadFolder(installation), CollectorStarts()[0].folder) << "the platform expands what it is given";

  ClickAndWait(dock.UserButton(0));
  EXPECT_EQ(0U, CloseByButton(dock));
  EXPECT_EQ(PayloadText({ClickElement(L"First", 3, 1), WindowElement(4, "Close")}), Masked(Payload()));
  EXPECT_EQ(ValuesOf(payload, "SessionID").at(0), ValuesOf(Payload(), "SessionID").at(0));
  EXPECT_EQ(1U, ClosedPayloads(installation).size());
  EXPECT_EQ(1U, CollectorStarts().size());
}

TEST_F(Tracking, ADuePayloadIsClosedEvenWithoutACollector) {
  installation.OptIn();
  SetTrackingValue(L"NextTransferTime", L"1/2/2020 3:4:5");
  ShownDock dock(installation);
  ::PostMessageW(dock.Bar(), WM_TIMER, trackingTimer, 0);
  ASSERT_TRUE(ComesToClosedPayload());
  EXPECT_EQ(PayloadText({WindowElement(1, "Open")}, HeaderText("", "", AppId())), Masked(ClosedPayload()));
  ClickAndWait(dock.MainButton(0));
  EXPECT_EQ(0U, CloseByButton(dock));
}

TEST_F(Tracking, ADuePayloadWaitsAtTheCloseForTheNextRun) {
  installation.OptIn();
  installation.InstallCollector();
  SetTrackingValue(L"NextTransferTime", L"1/2/2020 3:4:5");
  for (const char *run : {"first", "second"}) {
    ShownDock dock(installation);
    EXPECT_EQ(0U, CloseByButton(dock));
    EXPECT_EQ(Names(), ClosedPayloads(installation)) << run;
  }
  EXPECT_EQ(PayloadText({WindowElement(1, "Open"), WindowElement(2, "Close"), WindowElement(1, "Open"),
                         WindowElement(2, "Close")}),
            Masked(Payload()));
  EXPECT_NE(ValuesOf(Payload(), "SessionID").at(1), ValuesOf(Payload(), "SessionID").at(2)) << "a session a run";
  EXPECT_EQ(L"1/2/2020 3:4:5", TrackingValue(L"NextTransferTime"));
  EXPECT_TRUE(CollectorStarts().empty());
}

TEST_F(Tracking, APayloadThatHasGrownTooBigIsTransferredAtTheClose) {
  installation.OptIn();
  installation.InstallCollector();
  const std::string former(51200, 'x'); // what earlier runs have collected
  ::CreateDirectoryW(installation.UserFolder().c_str(), nullptr);
  ::CreateDirectoryW(PayloadFolder(installation).c_str(), nullptr);
  WriteBytes(OpenPayload(installation), "<payload><element name=\"" + former + "\"/></payload>");
  ShownDock dock(installation);
  EXPECT_EQ(0U, CloseByButton(dock));

  const std::string payload = ClosedPayload();
  EXPECT_EQ(PayloadText({"<element name=\"" + former + "\"/>", WindowElement(1, "Open"), WindowElement(2, "Close")},
                        HeaderText("", "", AppId())),
            Masked(payload));
  EXPECT_EQ(Names{std::to_wstring(Checksum(payload)) + L".ruq"}, ClosedPayloads(installation));
  EXPECT_FALSE(Exists(OpenPayload(installation)));
  EXPECT_TRUE(WaitFor([&] { return CollectorStarts().size() == 1; }));
  EXPECT_EQ(std::nullopt, TrackingValue(L"NextTransferTime")) << "the time of the next transfer is unchanged";
}

TEST_F(Tracking, AResetOpensTheDockAgainInTheSamePayload) {
  installation.OptIn();
  ShownDock dock(installation);
  ClickAndWait(dock.MainButton(0));
  ASSERT_TRUE(Reset(dock));
  EXPECT_FALSE(Exists(OpenPayload(installation))) << "a reset closes nothing";
  ClickAndWait(dock.MainButton(0));
  EXPECT_EQ(0U, CloseByButton(dock));
  EXPECT_EQ(PayloadText({WindowElement(1, "Open"), ClickElement(L"Fixed", 2, 2), WindowElement(3, "Open"),
                         WindowElement(4, "Close")}),
            Masked(Payload()));
  ExpectOneSession(Payload());
}

TEST_F(Tracking, TheEndOfTheSessionWritesThePayload) {
  installation.OptIn();
  ShownDock dock(installation);
  ClickAndWait(dock.UserButton(1));
  EXPECT_EQ(1, ::SendMessageW(dock.Bar(), WM_QUERYENDSESSION, 0, ENDSESSION_LOGOFF));
  EXPECT_EQ(1, ::SendMessageW(dock.Bar(), WM_ENDSESSION, TRUE, static_cast<LPARAM>(ENDSESSION_LOGOFF)));
  EXPECT_EQ(PayloadText({WindowElement(1, "Open"), ClickElement(L"Second", 2, 1), WindowElement(3, "Close")}),
            Masked(Payload()));
}

TEST_F(Tracking, APayloadThatCannotBeWrittenAtTheCloseCostsNoButtons) {
  installation.OptIn();
  installation.WriteDocument(userDocument,
                             {{.head = L"Mine", .actionType = L"exe", .actionParams = Program(L"Mine")},
                              {.head = L"Gone", .actionType = L"exe", .actionParams = L"C:\\gone.exe", .image = L""}});
  WriteBytes(PayloadFolder(installation), "a file where the folder should be");
  ShownDock dock(installation);
  const DragProgram other({installation.WriteAside(L"New.txt", "a file")});
  ASSERT_TRUE(other.IsUp());
  const POINT first = dock.UserButton(0);
  other.DragTo({first.x - 20, first.y});
  ASSERT_TRUE(WaitFor([&] { return dock.Control(2001) != nullptr; }));

  Click(dock.CloseButton());

  EXPECT_TRUE(WaitFor([&] { return dock.Bar() == nullptr; }));
  const std::string document = ReadBytes(installation.DocumentPath(userDocument));
  EXPECT_EQ(3, CountOf(document, "<ActionParamsBackup")) << "the dock has saved it";
  for (const char *head : {"New", "Mine", "Gone"})
    EXPECT_EQ(1, CountOf(document, "<Head>" + std::string(head) + "</Head>"));
  EXPECT_EQ("a file where the folder should be", ReadBytes(PayloadFolder(installation)));
}

} // namespace
} // namespace lumenor::e2e
