// What the dock does on its messages, and its end.

#include "dock/bar/MainDlg.h"

#include <new>
#include <stdexcept>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "content/Documents.h"
#include "dock/bar/BarFixture.h"
#include "dock/Commands.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "support/Desk.h"
#include "support/HandleCounts.h"
#include "support/HeldFile.h"
#include "support/ImportSlot.h"
#include "support/LogCapture.h"
#include "support/MessagePump.h"
#include "system/Handles.h"

extern "C" decltype(&::FindWindowW) __imp_FindWindowW;
extern "C" decltype(&::TerminateThread) __imp_TerminateThread;

namespace lumenor {

namespace {

/// A dock of which a chosen step fails, once.
class FailingDock : public CMainDlg {
public:
  bool failsToMove = false;
  bool failsToPaint = false;

  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override {
    if (std::exchange(failsToPaint, false))
      throw std::runtime_error("paint");
    CMainDlg::Paint(target, rect);
  }

protected:
  void MoveToBounds() override {
    if (std::exchange(failsToMove, false))
      throw std::runtime_error("move");
    CMainDlg::MoveToBounds();
  }
  void OnTopChanged() override {
    if (std::exchange(failsToMove, false))
      throw 42;
    CMainDlg::OnTopChanged();
  }
};

std::vector<KernelHandle> endedThreads;
decltype(&::TerminateThread) platformTerminateThread = nullptr;

BOOL WINAPI NoteEnd(HANDLE thread, DWORD exitCode) {
  HANDLE copy = nullptr;
  ::DuplicateHandle(::GetCurrentProcess(), thread, ::GetCurrentProcess(), &copy, 0, FALSE, DUPLICATE_SAME_ACCESS);
  endedThreads.emplace_back(copy);
  return platformTerminateThread(thread, exitCode);
}

class MainDlg : public BarFixture {
protected:
  CMainDlg &StartWith(int userCount) {
    SaveDocument(PictureElements(userCount), userDocument);
    return Start();
  }

  FailingDock &StartFailing() {
    auto failing = std::make_unique<FailingDock>();
    FailingDock &result = *failing;
    dock = std::move(failing);
    dock->Create(nullptr);
    return result;
  }

  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::SendMessageW(dock->handle, message, wParam, lParam);
  }

  std::vector<LONG> Place() const {
    RECT place{};
    ::GetWindowRect(dock->handle, &place);
    return {place.left, place.top, place.right, place.bottom};
  }

  const desk::EventLogSpy eventLog;
};

using Numbers = std::vector<LONG>;
using Texts = std::vector<std::wstring>;

TEST_F(MainDlg, ClosingSavesTheUsersButtonsAndEndsTheProcess) {
  StartWith(2);
  const ElementList records = dock->GetUserElements();
  SaveDocument({}, userDocument);
  EXPECT_EQ(0, Send(WM_CLOSE));
  EXPECT_EQ(nullptr, dock->handle);
  EXPECT_EQ(0, TakeQuitCode());
  EXPECT_EQ(records, LoadDocument(userDocument, false));
}

TEST_F(MainDlg, NothingIsSavedWhileItRuns) {
  StartWith(1);
  const std::string before = UserDocumentText();
  dock->AddButton(PictureElement(L"New"), 1);
  EXPECT_EQ(before, UserDocumentText());
}

TEST_F(MainDlg, TheEndOfTheSessionSavesAndQuitsNothing) {
  StartWith(2);
  const ElementList records = dock->GetUserElements();
  SaveDocument({}, userDocument);
  EXPECT_EQ(1, Send(WM_ENDSESSION, TRUE, ENDSESSION_LOGOFF));
  EXPECT_EQ(records, LoadDocument(userDocument, false));
  EXPECT_NE(nullptr, dock->handle);
  EXPECT_EQ(std::nullopt, TakeQuitCode());
}

TEST_F(MainDlg, NeverHoldsUpALogOff) {
  StartWith(0);
  EXPECT_EQ(1, Send(WM_QUERYENDSESSION));
}

TEST_F(MainDlg, ABrokenUserDocumentIsLeftUnchanged) {
  tests::WriteBytes(DocumentPath(userDocument), "<UIRoot><never closed");
  Start();
  EXPECT_EQ(ElementList{}, dock->GetUserElements());
  Send(WM_CLOSE);
  EXPECT_EQ("<UIRoot><never closed", UserDocumentText());
  EXPECT_EQ(0, TakeQuitCode());
}

TEST_F(MainDlg, ABrokenUserDocumentIsSetAsideForNewButtons) {
  tests::WriteBytes(DocumentPath(userDocument), "<UIRoot><never closed");
  Start().AddButton(PictureElement(L"New"), 0);
  Send(WM_CLOSE);
  EXPECT_EQ("<UIRoot><never closed", tests::ReadBytes(DocumentPath(userDocument) + L".broken"));
  EXPECT_EQ(L"New", LoadDocument(userDocument, false).at(0).Head);
}

TEST_F(MainDlg, AUserDocumentThatWasInUseAtTheStartIsKeptAtTheClose) {
  SaveDocument(PictureElements(5), userDocument);
  const std::string before = UserDocumentText();
  {
    const tests::HeldFile held(DocumentPath(userDocument));
    Start();
  }
  EXPECT_EQ(ElementList{}, dock->GetUserElements());
  Send(WM_ENDSESSION, TRUE, ENDSESSION_LOGOFF);
  Send(WM_CLOSE);
  EXPECT_EQ(before, UserDocumentText());
  EXPECT_EQ(0, TakeQuitCode());
}

TEST_F(MainDlg, AUserDocumentThatIsInUseForAMomentAtTheStartIsRead) {
  SaveDocument(PictureElements(5), userDocument);
  const tests::HeldFile held(DocumentPath(userDocument), 2);
  Start();
  EXPECT_EQ(5u, dock->GetUserElements().size());
}

TEST_F(MainDlg, AUserDocumentThatWasInUseAtTheStartIsSetAsideForNewButtons) {
  SaveDocument(PictureElements(5), userDocument);
  const std::string before = UserDocumentText();
  {
    const tests::HeldFile held(DocumentPath(userDocument));
    Start().AddButton(PictureElement(L"New"), 0);
  }
  Send(WM_CLOSE);
  EXPECT_EQ(before, tests::ReadBytes(DocumentPath(userDocument) + L".broken"));
  EXPECT_EQ(ElementList{PictureElement(L"New")}, LoadDocument(userDocument, false));
}

TEST_F(MainDlg, AFailedSaveEndsTheWindowButNotTheProcess) {
  StartWith(1);
  ::DeleteFileW(DocumentPath(userDocument).c_str());
  ::CreateDirectoryW(DocumentPath(userDocument).c_str(), nullptr);
  dock->AddButton(PictureElement(L"New"), 0);
  Send(WM_CLOSE);
  EXPECT_EQ(nullptr, dock->handle);
  EXPECT_EQ(std::nullopt, TakeQuitCode());
  EXPECT_EQ(Texts{L"caught an unhandled exception in OnClose"}, eventLog.Reports());
}

TEST_F(MainDlg, TakesTheWindowsOfItsButtonsAlong) {
  const int before = tests::CountWindows();
  SaveDocument(PictureElements(2), mainDocument);
  StartWith(3);
  EXPECT_LT(before, tests::CountWindows());
  Send(WM_CLOSE);
  dock.reset();
  EXPECT_EQ(before, tests::CountWindows());
}

TEST_F(MainDlg, DestroysAWindowThatStillExists) {
  StartWith(1);
  const HWND window = dock->handle;
  dock.reset();
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_EQ(Texts{}, eventLog.Reports());
}

TEST_F(MainDlg, EndsItsRegistryThread) {
  endedThreads.clear();
  const tests::ImportSlot slot(&__imp_TerminateThread, &NoteEnd);
  platformTerminateThread = slot.Former();
  StartWith(0);
  Send(WM_CLOSE);
  EXPECT_EQ(0U, endedThreads.size());
  dock.reset();
  ASSERT_EQ(1U, endedThreads.size());
  EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(endedThreads[0].Get(), 60'000));
  endedThreads.clear();
}

TEST_F(MainDlg, ResetRebuildsTheDocumentsAndSavesNothing) {
  SaveDocument({PictureElement(L"Fixed")}, mainDocument);
  StartWith(2);
  const HWND window = dock->handle;
  EXPECT_EQ(0, Send(ResetDockMessage));
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_EQ(999, TakeQuitCode());
  EXPECT_EQ(ElementList{}, LoadDocument(userDocument, false)) << "there are no stubs";
  EXPECT_EQ(ElementList{}, LoadDocument(mainDocument, false));
}

TEST_F(MainDlg, ResetRebuildsTheDocumentsOfTheNewFixedFlyouts) {
  const std::wstring stub =
      L"<UIRoot><" + std::wstring(mainDocument) +
      L"><Elements><Element><Head>F</Head><ActionType>xml</ActionType><ActionParams>Flyout.One</ActionParams>"
      L"</Element></Elements></" +
      mainDocument + L"></UIRoot>";
  tests::WriteText(folders.CommonFolder() + L"\\LangRes\\xx_xx\\" + mainDocument + L".1.dstb", stub);
  SaveDocument({}, mainDocument);
  SaveDocument({PictureElement(L"Old")}, L"Flyout.One");
  SaveDocument({PictureElement(L"Other")}, L"Flyout.Two");
  StartWith(0);
  Send(ResetDockMessage);
  EXPECT_EQ(1U, LoadDocument(mainDocument, false).size());
  EXPECT_EQ(ElementList{}, LoadDocument(L"Flyout.One", false));
  EXPECT_EQ(1U, LoadDocument(L"Flyout.Two", false).size());
}

TEST_F(MainDlg, AFailedResetIsReportedAndStillRestarts) {
  StartWith(0);
  ::DeleteFileW(DocumentPath(userDocument).c_str());
  ::CreateDirectoryW(DocumentPath(userDocument).c_str(), nullptr);
  Send(ResetDockMessage);
  EXPECT_EQ(999, TakeQuitCode());
  EXPECT_EQ(Texts{L"caught an unhandled exception in OnResetDock"}, eventLog.Reports());
}

TEST_F(MainDlg, AFailedHandlerLeavesNoBarOneReportAndALivingProcess) {
  StartFailing().failsToMove = true;
  Send(WM_DISPLAYCHANGE);
  EXPECT_EQ(nullptr, dock->handle);
  EXPECT_EQ(std::nullopt, TakeQuitCode());
  EXPECT_EQ(Texts{L"caught an unhandled exception in OnDisplayChange"}, eventLog.Reports());
}

TEST_F(MainDlg, ReportsEachHandlerByItsName) {
  SaveDocument(PictureElements(1), userDocument);
  FailingDock *failing = &StartFailing();
  const HWND button = failing->GetUserButtons().at(0)->GetHandle();
  failing->failsToPaint = true;
  Send(RemoveButtonMessage, reinterpret_cast<WPARAM>(button));
  EXPECT_EQ(nullptr, dock->handle);
  failing = &StartFailing();
  failing->Top.Set(500);
  failing->failsToMove = true;
  Send(DockAtTopMessage);
  EXPECT_EQ(nullptr, dock->handle);
  failing = &StartFailing();
  failing->failsToMove = true;
  Send(DockAtBottomMessage);
  EXPECT_EQ(nullptr, dock->handle);
  EXPECT_EQ((Texts{L"caught an unhandled exception in OnRemoveButton", L"caught an unhandled exception in OnDockAtTop",
                   L"caught an unhandled exception in OnDockAtBottom"}),
            eventLog.Reports());
}

TEST_F(MainDlg, StartsTheMainApplicationOnceAfterTwoMinutes) {
  StartWith(0);
  EXPECT_EQ(0, Send(WM_TIMER, StartMainApplicationTimer));
  EXPECT_EQ((std::vector<Launch>{
                {nullptr, L"open", folders.InstallFolder() + L"\\Lumenor.exe", L"mode=windowless", SW_HIDE}}),
            shell.Launches());
  EXPECT_TRUE(mainApplicationStarted);
  EXPECT_FALSE(::KillTimer(dock->handle, StartMainApplicationTimer));
}

TEST_F(MainDlg, StartsNothingAtItsOtherTimers) {
  StartWith(0);
  Send(WM_TIMER, FadeTimer);
  Send(WM_TIMER, TrackingTimer);
  EXPECT_EQ(std::vector<Launch>{}, shell.Launches());
  EXPECT_FALSE(mainApplicationStarted);
}

/// The places of the windows that `owner` owns, shown or not.
std::vector<Numbers> PlacesOfOwned(HWND owner) {
  struct Search {
    HWND owner;
    std::vector<Numbers> places;
  } search{owner, {}};
  const auto note = [](HWND window, LPARAM lParam) -> BOOL {
    auto &found = *reinterpret_cast<Search *>(lParam);
    RECT place{};
    if (::GetWindow(window, GW_OWNER) == found.owner && ::GetWindowRect(window, &place))
      found.places.push_back({place.left, place.top, place.right, place.bottom});
    return TRUE;
  };
  ::EnumThreadWindows(::GetCurrentThreadId(), note, reinterpret_cast<LPARAM>(&search));
  return search.places;
}

TEST_F(MainDlg, PlacesItsFlyoutsWhateverItsMemoryHeldBefore) {
  const auto destroy = [](CMainDlg *dialog) { dialog->~CMainDlg(); };
  std::vector<LONG> memory(sizeof(CMainDlg) / sizeof(LONG), 2000);
  const std::unique_ptr<CMainDlg, decltype(destroy)> dialog(new (memory.data()) CMainDlg, destroy);
  dialog->Create(nullptr);
  const std::vector<Numbers> places = PlacesOfOwned(dialog->handle);
  EXPECT_THAT(places, testing::Contains(Numbers{838, 2, 838 + 240, 2 + 40}));
  EXPECT_THAT(places, testing::Contains(Numbers{805, 51, 805 + 240, 51}));
}

TEST_F(MainDlg, TakesTheSearchProviderThatIsSent) {
  StartWith(0);
  Element provider;
  provider.Head = L"Somewhere";
  provider.ActionType = L"url";
  provider.ActionParams = L"http://search.invalid/?q=";
  EXPECT_EQ(1, SendAddress(dock->handle, SetSearchProviderMessage, &provider));
  EXPECT_EQ(provider, dock->GetSelectedProvider());
}

TEST_F(MainDlg, StartsWithoutASearchProvider) {
  StartWith(0);
  EXPECT_EQ(Element(), dock->GetSelectedProvider());
}

TEST_F(MainDlg, SurvivesMessagesThatPointNowhere) {
  StartWith(1);
  EXPECT_EQ(1, Send(SetSearchProviderMessage, 0));
  EXPECT_EQ(0, Send(WM_NOTIFY, 0, 0));
  EXPECT_EQ(0, Send(RemoveButtonMessage, 0));
  EXPECT_EQ(0, Send(RemoveButtonMessage, reinterpret_cast<WPARAM>(dock->handle)));
  EXPECT_NE(nullptr, dock->handle);
  EXPECT_EQ(1U, dock->GetUserElements().size());
  EXPECT_EQ(1U, dock->GetUserButtons().size());
}

TEST_F(MainDlg, LooksAtNoAddressThatItDidntSend) {
  StartWith(1);
  Element provider;
  provider.Head = L"Somewhere";
  const Element selected = dock->GetSelectedProvider();
  const tests::LogCapture log(folders);
  for (const UINT message : {DragAddMessage, SetSearchProviderMessage}) {
    for (const WPARAM address : {WPARAM{16}, ~WPARAM{0}, reinterpret_cast<WPARAM>(&provider)}) {
      log.Clear();
      EXPECT_EQ(1, Send(message, address));
      ::PostMessageW(dock->handle, message, address, 0);
      tests::PumpMessages();
      const std::string line =
          "ERROR: Message " + std::to_string(message) + " with an address that the dock didn't send";
      EXPECT_THAT(log.Lines(), testing::ElementsAre(line, line));
    }
  }
  EXPECT_EQ(selected, dock->GetSelectedProvider());
  EXPECT_EQ(1U, dock->GetUserElements().size());
}

TEST_F(MainDlg, MovesToTheBottomAndBack) {
  WriteTexts({{L"Button.Tooltip.DockAtTop", L"At top"}, {L"Button.Tooltip.DockAtBottom", L"At bottom"}});
  StartWith(0);
  const BarTree tree(*dock);
  EXPECT_EQ(0, Send(DockAtBottomMessage));
  EXPECT_EQ((Numbers{190, 947, 1090, 1024}), Place());
  EXPECT_EQ(L"At bottom", tree.dockPositionButton.Name.Get());
  EXPECT_EQ(1, tree.dockPositionButton.Checked.Get()) << "the handlers don't touch the toggle";
  EXPECT_EQ(0, Send(DockAtTopMessage));
  EXPECT_EQ((Numbers{190, 1, 1090, 78}), Place());
  EXPECT_EQ(L"At top", tree.dockPositionButton.Name.Get());
}

TEST_F(MainDlg, TheToggleWritesTheEdgeAndTheRegistryMovesTheBar) {
  StartWith(0);
  const BarTree tree(*dock);
  tree.dockPositionButton.Checked.Set(0);
  EXPECT_EQ(L"Bottom", registry.Text(L"DockPosition"));
  EXPECT_EQ((Numbers{190, 1, 1090, 78}), Place());
  EXPECT_TRUE(tests::PumpUntil([&] { return Place() == Numbers{190, 947, 1090, 1024}; }));
  tree.dockPositionButton.Checked.Set(1);
  EXPECT_EQ(L"Top", registry.Text(L"DockPosition"));
  EXPECT_TRUE(tests::PumpUntil([&] { return Place() == Numbers{190, 1, 1090, 78}; }));
}

TEST_F(MainDlg, AnotherProgramMovesTheBarByTheRegistry) {
  StartWith(0);
  registry.SetText(L"DockPosition", L"Left");
  EXPECT_TRUE(tests::PumpUntil([&] { return Place() == Numbers{190, 947, 1090, 1024}; }));
}

TEST_F(MainDlg, AChangedDisplayPutsItBackInPlaceAtTheTop) {
  StartWith(0);
  const RECT elsewhere = {5, 6, 305, 46};
  dock->SetBounds(&elsewhere);
  EXPECT_EQ(0, Send(WM_DISPLAYCHANGE));
  EXPECT_EQ((Numbers{190, 1, 1090, 78}), Place());
  EXPECT_EQ(900, BarTree(*dock).root.Width.Get());
}

TEST_F(MainDlg, AChangedDisplayPutsItBackInPlaceAtTheBottom) {
  registry.SetText(L"DockPosition", L"Bottom");
  StartWith(0);
  dock->Left.Set(7);
  Send(WM_DISPLAYCHANGE);
  EXPECT_EQ((Numbers{190, 947, 1090, 1024}), Place());
}

TEST_F(MainDlg, IsComposedOnce) {
  StartWith(1);
  const HWND button = dock->GetUserButtons().at(0)->GetHandle();
  Send(WM_INITDIALOG);
  EXPECT_TRUE(::IsWindow(dock->handle));
  EXPECT_EQ(1U, dock->GetUserButtons().size());
  EXPECT_EQ(button, dock->GetUserButtons().at(0)->GetHandle());
  EXPECT_EQ((std::vector<std::wstring>{}), eventLog.Reports());
}

HWND WINAPI FindNoWindow(LPCWSTR, LPCWSTR) { return nullptr; }

TEST_F(MainDlg, AChangedDisplayWithoutATaskBarEndsTheWindow) {
  StartWith(0);
  const HWND window = dock->handle;
  const tests::ImportSlot gone(&__imp_FindWindowW, &FindNoWindow);
  Send(WM_DISPLAYCHANGE);
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_EQ((std::vector<std::wstring>{L"caught an unhandled exception in OnDisplayChange"}), eventLog.Reports());
}

TEST_F(MainDlg, ComesToTheFrontWhenASecondDockAsks) {
  StartWith(0);
  dockActivateMessage = ::RegisterWindowMessageW(L"LumenorTestActivate");
  const desk::Backdrop other({400, 400, 500, 500}, RGB(1, 2, 3));
  ::SetForegroundWindow(other.Get());
  ASSERT_TRUE(tests::PumpUntil([&] { return ::GetForegroundWindow() == other.Get(); }));
  EXPECT_EQ(0, Send(dockActivateMessage));
  EXPECT_TRUE(tests::PumpUntil([&] { return ::GetForegroundWindow() == dock->handle; }));
}

TEST_F(MainDlg, StaysAwakeWhileAFlyoutIsOpen) {
  Element element = PictureElement(L"Folder");
  element.ActionType = L"xml";
  element.ActionParams = L"Flyout.One";
  SaveDocument(PictureElements(2), L"Flyout.One");
  SaveDocument({element}, userDocument);
  Start();
  FlyoutWindow *const flyout = dock->GetUserButtons().at(0)->GetFlyout();
  ASSERT_NE(nullptr, flyout);
  EXPECT_FALSE(dock->IsKeptAwake());
  flyout->ToggleVisibility();
  EXPECT_TRUE(dock->IsKeptAwake());
  flyout->ToggleVisibility();
  EXPECT_FALSE(dock->IsKeptAwake());
}

} // namespace

} // namespace lumenor
