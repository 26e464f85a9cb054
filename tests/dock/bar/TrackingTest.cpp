// What the dock tells of its use, and when.

#include "tracking/UsageTracker.h"

#include <stdexcept>

#include <gmock/gmock.h>

#include "content/Documents.h"
#include "dock/bar/BarFixture.h"
#include "dock/bar/HelpPanes.h"
#include "dock/dragdrop/DragState.h"
#include "dock/flyouts/FakeProvider.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "dock/TestBar.h"
#include "support/Desk.h"
#include "support/LogCapture.h"
#include "support/OptIn.h"
#include "system/HResultError.h"
#include "system/WindowException.h"
#include "tracking/Payload.h"

extern "C" decltype(&::ShellExecuteW) __imp_ShellExecuteW;

namespace lumenor {

namespace {

using Texts = std::vector<std::wstring>;

/// The dock of a user who agreed.
class TrackedDock : public BarFixture {
protected:
  TrackedDock() {
    usageTracker = UsageTracker();
    usageTracker.ReadOptIn();
    usageTracker.StartSession();
    usageTracker.LoadNextTransferTime();
    tests::MakeFolders(folders.UserFolder());
  }
  ~TrackedDock() override { usageTracker = UsageTracker(); }

  CMainDlg &StartWith(const ElementList &userElements) {
    SaveDocument(userElements, userDocument);
    return Start();
  }

  /// Starts with one button that is named "Button".
  DockButton &StartWithButton(const wchar_t *actionType, const wchar_t *actionParams) {
    Element element = PictureElement(L"Button");
    element.ActionType = actionType;
    element.ActionParams = actionParams;
    return *StartWith({element}).GetUserButtons().at(0);
  }

  static void Press(HWND button) { ::SendMessageW(button, WM_COMMAND, 0, reinterpret_cast<LPARAM>(button)); }

  /// The records that wait, a line each: what was done to what, where and how often.
  static Texts Waiting() {
    Texts lines;
    for (const TrackRecord &record : usageTracker.GetRecords())
      lines.push_back(record.Action + L" " + record.Name + L" " + record.SubFeature + L" " + record.ActionType + L" " +
                      record.ActionParams + L" " + std::to_wstring(record.ActionCount));
    return lines;
  }

  /// The actions in the payload on the disk, in order.
  static Texts Written() {
    Texts actions;
    const XmlDocumentPtr document = LoadXmlFile(PayloadPath());
    if (document == nullptr)
      return {L"no payload"};
    for (const XmlNodePtr &node : SelectNodes(document, L"/payload/element/attribute[@name='Action']"))
      actions.push_back(NodeAttribute(node, L"value"));
    return actions;
  }

  static std::wstring LastWaiting() { return Waiting().empty() ? L"nothing" : Waiting().back(); }

  static std::wstring LastWritten() { return Written().empty() ? L"nothing" : Written().back(); }

  void SearchWith(const wchar_t *actionType, const wchar_t *text) {
    Element provider;
    provider.ActionType = actionType;
    SendAddress(dock->handle, SetSearchProviderMessage, &provider);
    ::SetWindowTextW(BarTree(*dock).textBox.GetHandle(), text);
    Press(BarTree(*dock).searchButton.GetHandle());
  }

  /// Keeps the payload from being written: a file stands in the place of its folder.
  void BlockPayload() const { tests::WriteBytes(folders.UserFolder() + L"\\ruq", "no folder"); }

  const tests::OptIn optIn{folders};
  const tests::KeptRegistryKey settings{HKEY_CURRENT_USER, L"SOFTWARE\\Wow6432Node\\Tarnwick\\Lumenor\\Dock"};
  const desk::EventLogSpy eventLog;
};

const wchar_t opened[] = L"Open Dock    0";

TEST_F(TrackedDock, ReportsItsOpening) {
  dock = std::make_unique<CMainDlg>();
  EXPECT_EQ(Texts{opened}, Waiting());
  dock->Create(nullptr);
  EXPECT_EQ(Texts{opened}, Waiting());
}

TEST_F(TrackedDock, ReportsAClickOnAButtonOnceItsActionRan) {
  const HWND button = StartWithButton(L"exe", L"C:\\gone.exe").GetHandle();
  Press(button);
  Press(button);
  EXPECT_EQ(2u, shell.Launches().size());
  EXPECT_EQ((Texts{opened, L"Click Button  exe C:\\gone.exe 2"}), Waiting());
}

TEST_F(TrackedDock, ReportsAClickThatStartsNothing) {
  Press(StartWithButton(L"odd", L"thing").GetHandle());
  EXPECT_EQ((Texts{opened, L"Click Button  odd thing 1"}), Waiting());
}

TEST_F(TrackedDock, ReportsNoCommandAndNoOpenedFlyout) {
  for (const wchar_t *command : {L"flyout", L"foryou", L"searchProvider", L"search"}) {
    Press(StartWithButton(L"exe", command).GetHandle());
    EXPECT_EQ(opened, LastWaiting()) << command;
  }
  Press(StartWithButton(L"xml", L"Test.Flyout").GetHandle());
  EXPECT_EQ(opened, LastWaiting());
}

HINSTANCE WINAPI FailToLaunch(HWND, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, INT) { throw std::runtime_error("launch"); }

TEST_F(TrackedDock, ReportsNoClickWhoseActionFailed) {
  const HWND button = StartWithButton(L"url", L"http://a.invalid/").GetHandle();
  const tests::ImportSlot failing(&__imp_ShellExecuteW, &FailToLaunch);
  Press(button);
  EXPECT_THROW(RethrowWindowException(), std::runtime_error);
  EXPECT_EQ(Texts{opened}, Waiting());
}

TEST_F(TrackedDock, ReportsAChoiceInTheFlyoutOfAButton) {
  SaveDocument({MakeElement(L"Row", L"url", L"http://row.invalid/", PicturePath())}, L"Test.Flyout");
  FlyoutWindow *const flyout = StartWithButton(L"xml", L"Test.Flyout").GetFlyout();
  ASSERT_NE(nullptr, flyout);
  Press(flyout->GetItems().at(0)->GetHandle());
  EXPECT_EQ((Texts{opened, L"Click Row DockPopup url http://row.invalid/ 1"}), Waiting());
}

TEST_F(TrackedDock, DistinguishesADockClickFromOneInAFlyout) {
  const Element element = MakeElement(L"Same", L"url", L"http://same.invalid/", PicturePath());
  SaveDocument({element}, L"Test.Flyout");
  StartWith({element, MakeElement(L"List", L"xml", L"Test.Flyout", PicturePath())});
  Press(dock->GetUserButtons()[0]->GetHandle());
  Press(dock->GetUserButtons()[1]->GetFlyout()->GetItems().at(0)->GetHandle());
  EXPECT_EQ(
      (Texts{opened, L"Click Same  url http://same.invalid/ 1", L"Click Same DockPopup url http://same.invalid/ 1"}),
      Waiting());
}

TEST_F(TrackedDock, ReportsNoChoiceOfASearchProviderButOfAProgramAmongThem) {
  Start();
  FakeProvider provider;
  provider.list = {MakeElement(L"Web", L"url", L"http://web.invalid/", PicturePath()),
                   MakeElement(L"Help", L"helpSearch", L"", PicturePath()),
                   MakeElement(L"Program", L"exe", L"C:\\gone.exe", PicturePath())};
  SearchProviderFlyout flyout({100, 100, 300, 300}, L"", provider);
  flyout.Create(dock->handle);
  for (const auto &item : flyout.GetItems())
    Press(item->GetHandle());
  EXPECT_EQ((Texts{opened, L"Click Program DockPopup exe C:\\gone.exe 1"}), Waiting());
  EXPECT_EQ(L"Help", dock->GetSelectedProvider().Head);
  ::DestroyWindow(flyout.handle);
}

TEST_F(TrackedDock, ReportsAnAddedButton) {
  Start();
  dock->AddButton(PictureElement(L"New"), 0);
  EXPECT_EQ((Texts{opened, L"Add New  exe C:\\windows\\New.exe 1"}), Waiting());
}

TEST_F(TrackedDock, ReportsNoButtonThatWasNotAdded) {
  StartWith(PictureElements(maxUserButtons));
  dock->AddButton(PictureElement(L"One too many"), 0);
  dock->AddButton(PictureElement(L"Behind the end"), 99);
  EXPECT_EQ(Texts{opened}, Waiting());
}

TEST_F(TrackedDock, ReportsNoButtonThatCouldNotBeMade) {
  Start();
  EXPECT_ANY_THROW(dock->AddButton(VanishedElement(L"Vanished"), 0));
  EXPECT_EQ(Texts{opened}, Waiting());
}

TEST_F(TrackedDock, ReportsARemovedButtonAtOnceAndOnce) {
  StartWith(PictureElements(2));
  dock->RemoveButton(dock->GetUserButtons()[1]->GetHandle());
  const Texts told = {opened, L"Delete Head 1  exe C:\\windows\\Head 1.exe 1"};
  EXPECT_EQ(told, Waiting());
  TakeQuitCode();
  EXPECT_EQ(1u, dock->GetUserButtons().size());
  EXPECT_EQ(told, Waiting());
}

TEST_F(TrackedDock, ReportsTheRemovedButtonAndNotItsNeighboursRecord) {
  StartWith({VanishedElement(L"Vanished"), PictureElement(L"First"), PictureElement(L"Second")});
  dock->RemoveButton(dock->GetUserButtons().at(0)->GetHandle());
  EXPECT_EQ(L"Delete First  exe C:\\windows\\First.exe 1", LastWaiting());
}

TEST_F(TrackedDock, ReportsNoRemovalOfANullWindow) {
  StartWith(PictureElements(1));
  dock->RemoveButton(nullptr);
  dock->RemoveButton(dock->handle);
  EXPECT_EQ(Texts{opened}, Waiting());
}

TEST_F(TrackedDock, ReportsNoMove) {
  StartWith(PictureElements(3));
  dock->MoveButton(0, 2);
  dock->MoveButton(1, 1);
  EXPECT_EQ(Texts{opened}, Waiting());
}

TEST_F(TrackedDock, ReportsSearchesWithoutTheirText) {
  const HelpPaneRegistration help;
  Start();
  SearchWith(L"url", L"secret");
  SearchWith(L"helpSearch", L"secret");
  SearchWith(L"url", L"other");
  ASSERT_EQ((Texts{opened, L"Search Search    2", L"Search Search    1"}), Waiting());
  EXPECT_EQ(L"Url", usageTracker.GetRecords()[1].Type);
  EXPECT_EQ(L"helpSearch", usageTracker.GetRecords()[2].Type);
}

TEST_F(TrackedDock, ReportsASearchThoughItsAddressIsTooLong) {
  Start();
  Element provider;
  provider.ActionType = L"url";
  provider.ActionParams = L"http://search.invalid/" + std::wstring(2100, L'x');
  SendAddress(dock->handle, SetSearchProviderMessage, &provider);
  ::SetWindowTextW(BarTree(*dock).textBox.GetHandle(), L"text");
  Press(BarTree(*dock).searchButton.GetHandle());
  EXPECT_EQ((Texts{opened, L"Search Search    1"}), Waiting());
  EXPECT_EQ(std::vector<Launch>{}, shell.Launches());
}

TEST_F(TrackedDock, ReportsAHelpSearchForBlanksThoughItOpensNothing) {
  const HelpPaneRegistration help;
  Start();
  SearchWith(L"helpSearch", L"   ");
  EXPECT_EQ(Texts(), helpSearches);
  EXPECT_EQ((Texts{opened, L"Search Search    1"}), Waiting());
}

TEST_F(TrackedDock, ReportsNoSearchThatDidNotTakePlace) {
  Start();
  SearchWith(L"url", L"");
  SearchWith(L"", L"text");
  SearchWith(L"exe", L"text");
  EXPECT_EQ(Texts{opened}, Waiting());
}

TEST_F(TrackedDock, ReportsNoHelpSearchThatFailed) {
  HelpPaneRegistration help;
  help.isThere = false;
  Start();
  SearchWith(L"helpSearch", L"text");
  EXPECT_THROW(RethrowWindowException(), HResultError);
  EXPECT_EQ(Texts{opened}, Waiting());
}

TEST_F(TrackedDock, WritesWhatItKnowsEveryHalfHour) {
  Press(StartWithButton(L"url", L"http://a.invalid/").GetHandle());
  ::SendMessageW(dock->handle, WM_TIMER, StartMainApplicationTimer, 0);
  EXPECT_EQ(Texts{L"no payload"}, Written());
  ::SendMessageW(dock->handle, WM_TIMER, TrackingTimer, 0);
  EXPECT_EQ((Texts{L"Open", L"Click"}), Written());
  EXPECT_EQ(Texts(), Waiting());
}

TEST_F(TrackedDock, WritesItsCloseAndThenTheUsersButtons) {
  StartWith(PictureElements(1));
  dock->AddButton(PictureElement(L"New"), 1);
  ::SendMessageW(dock->handle, WM_CLOSE, 0, 0);
  EXPECT_EQ((Texts{L"Open", L"Add", L"Close"}), Written());
  EXPECT_EQ(Texts(), Waiting());
  EXPECT_EQ(2u, LoadDocument(userDocument, false).size());
  EXPECT_EQ(0, TakeQuitCode());
}

TEST_F(TrackedDock, WritesItsCloseAtTheEndOfTheSession) {
  StartWith(PictureElements(1));
  ::SendMessageW(dock->handle, WM_ENDSESSION, TRUE, 0);
  EXPECT_EQ((Texts{L"Open", L"Close"}), Written());
  EXPECT_FALSE(TakeQuitCode().has_value());
}

TEST_F(TrackedDock, ReportsNoCloseAtAReset) {
  Start();
  ::SendMessageW(dock->handle, ResetDockMessage, 0, 0);
  dock.reset();
  Start();
  EXPECT_EQ((Texts{opened, opened}), Waiting());
  EXPECT_EQ(Texts{L"no payload"}, Written());
}

TEST_F(TrackedDock, HandsNoPayloadOverAtItsCloseThatIsOnlyDue) {
  settings.SetText(L"NextTransferTime", L"1/1/2001 0:0:0");
  usageTracker.LoadNextTransferTime();
  ASSERT_TRUE(usageTracker.IsTransferDue());
  Start();
  ::SendMessageW(dock->handle, WM_CLOSE, 0, 0);
  EXPECT_EQ((Texts{L"Open", L"Close"}), Written());
}

TEST_F(TrackedDock, HandsAPayloadOverAtItsCloseThatIsTooBig) {
  Start();
  tests::WriteBytes(PayloadPath(), "<payload><!--" + std::string(51200, ' ') + "--></payload>");
  ::SendMessageW(dock->handle, WM_CLOSE, 0, 0);
  EXPECT_EQ(Texts{L"no payload"}, Written());
  EXPECT_EQ(1u, tests::ListFolder(folders.UserFolder() + L"\\ruq").size());
}

TEST_F(TrackedDock, SavesTheUsersButtonsThoughThePayloadCannotBeWritten) {
  StartWith(PictureElements(1));
  dock->AddButton(PictureElement(L"New"), 1);
  BlockPayload();
  const HWND window = dock->handle;
  ::SendMessageW(window, WM_CLOSE, 0, 0);
  EXPECT_EQ(2u, LoadDocument(userDocument, false).size());
  EXPECT_EQ(Texts{L"caught an unhandled exception in OnClose"}, eventLog.Reports());
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_FALSE(TakeQuitCode().has_value());
  EXPECT_EQ(3u, Waiting().size());
}

TEST_F(TrackedDock, SavesTheUsersButtonsAtTheEndOfTheSessionThoughThePayloadCannotBeWritten) {
  StartWith(PictureElements(1));
  dock->AddButton(PictureElement(L"New"), 1);
  BlockPayload();
  ::SendMessageW(dock->handle, WM_ENDSESSION, TRUE, 0);
  EXPECT_EQ(2u, LoadDocument(userDocument, false).size());
  EXPECT_EQ(Texts{L"caught an unhandled exception in OnEndSession"}, eventLog.Reports());
}

TEST_F(TrackedDock, EndsTheWindowWhenThePayloadCannotBeWrittenByTheTimer) {
  Start();
  BlockPayload();
  const HWND window = dock->handle;
  ::SendMessageW(window, WM_TIMER, TrackingTimer, 0);
  EXPECT_EQ(Texts{L"caught an unhandled exception in OnTimer"}, eventLog.Reports());
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_EQ(Texts{opened}, Waiting());
}

TEST_F(TrackedDock, WritesAtTheTwentiethUse) {
  StartWith({});
  for (int i = 0; i < 18; ++i)
    usageTracker.TrackIconClick(MakeElement(L"Button " + std::to_wstring(i)));
  EXPECT_EQ(Texts{L"no payload"}, Written());
  dock->AddButton(PictureElement(L"Twentieth"), 0);
  EXPECT_EQ(20u, Written().size());
  EXPECT_EQ(L"Add", LastWritten());
}

TEST_F(TrackedDock, KeepsADroppedButtonThoughThePayloadCannotBeWritten) {
  const tests::LogCapture log(folders);
  StartWith(PictureElements(1));
  for (int i = 0; i < 18; ++i)
    usageTracker.TrackIconClick(MakeElement(L"Button " + std::to_wstring(i)));
  BlockPayload();
  const std::wstring file = folders.Root() + L"\\New.txt";
  tests::WriteBytes(file, "content");
  RECT first = {};
  ::GetWindowRect(dock->GetUserButtons().at(0)->GetHandle(), &first);
  log.Clear();
  dragOverButtons = true;
  SendAddress(dock->handle, DragAddMessage, file.c_str(), MAKELONG(first.left + 10, first.top + 20));
  ForgetDrag();
  EXPECT_THAT(log.Lines(),
              testing::Contains(testing::StartsWith("ERROR: MainDlg: a drop of " + tests::Utf8(file) + " failed")));
  EXPECT_EQ(Texts{}, eventLog.Reports());
  ASSERT_TRUE(::IsWindow(dock->handle));
  EXPECT_EQ(2u, dock->GetUserButtons().size());
  EXPECT_EQ(2u, dock->GetUserElements().size());
  EXPECT_EQ(20u, Waiting().size());
}

/// The dock of a user who wasn't asked or didn't agree.
class UntrackedDock : public TrackedDock {
protected:
  UntrackedDock() {
    usageTracker = UsageTracker();
    tests::WriteBytes(optIn.iniFile, "[Settings]\r\nTrack=0\r\n");
    usageTracker.ReadOptIn();
  }
};

TEST_F(UntrackedDock, ReportsNothingAndWritesNothing) {
  StartWith(PictureElements(1));
  Press(dock->GetUserButtons()[0]->GetHandle());
  dock->AddButton(PictureElement(L"New"), 0);
  dock->RemoveButton(dock->GetUserButtons()[0]->GetHandle());
  SearchWith(L"url", L"text");
  ::SendMessageW(dock->handle, WM_TIMER, TrackingTimer, 0);
  ::SendMessageW(dock->handle, WM_CLOSE, 0, 0);
  EXPECT_EQ(Texts(), Waiting());
  EXPECT_FALSE(tests::Exists(folders.UserFolder() + L"\\ruq"));
}

} // namespace

} // namespace lumenor
