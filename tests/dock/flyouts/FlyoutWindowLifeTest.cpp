// What a flyout outlives: failures of its handlers, a request to close, a refresh amid the making of its rows.

#include <functional>
#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>

#include "dock/flyouts/DockButton.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "dock/Rectangles.h"
#include "dock/TestBar.h"
#include "support/FailingClass.h"
#include "system/WindowException.h"
#include "toolkit/drawing/WICHelper.h"

#include <wincodec.h>

namespace lumenor {

namespace {

constexpr RECT givenBounds = {300, 400, 540, 999};

const ElementList threeElements = {MakeElement(L"Mail"), MakeElement(L"News"), MakeElement(L"Weather")};

class FlyoutLife : public ::testing::Test {
protected:
  ~FlyoutLife() override { ForgetWindowException(); }

  /// Notes what `flyout` tells of its showing and hiding.
  void ListenTo(FlyoutWindow &flyout) { flyout.Visible.AddListener(&listener); }

  void OnVisible(PropertyChangeEventArgs<lumenor::Visibility> *args) { heard.push_back(args->newValue); }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  std::vector<lumenor::Visibility> heard;
  TypedEventListener<FlyoutLife, PropertyChangeEventArgs<lumenor::Visibility>> listener{this, &FlyoutLife::OnVisible};
};

/// A flyout of which the platform's message `failing` fails ahead of every handler.
class FailingFlyout : public TestFlyout {
public:
  using TestFlyout::TestFlyout;

  UINT failing = WM_NULL;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId) override {
    if (failing != WM_NULL && message == failing)
      throw std::runtime_error("of a nested message");
    return TestFlyout::ProcessWindowMessage(window, message, wParam, lParam, result, mapId);
  }
};

void KeepAnEarlierFailure() {
  try {
    throw std::logic_error("earlier");
  } catch (...) {
    KeepWindowException();
  }
}

TEST_F(FlyoutLife, ReportsAFailureInItsActivationAndStays) {
  const desk::EventLogSpy eventLog;
  FailingFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  flyout.ToggleVisibility();
  flyout.failing = WM_SHOWWINDOW; // of the hiding
  ::SendMessageW(flyout.handle, WM_ACTIVATE, WA_INACTIVE, 0);
  EXPECT_EQ(std::vector<std::wstring>({L"caught an unhandled exception in OnActivate"}), eventLog.Reports());
  EXPECT_TRUE(::IsWindow(flyout.handle));
  flyout.failing = WM_NULL;
}

HWND toldWindow = nullptr;
WNDPROC rowProcedure = nullptr;

LRESULT CALLBACK TellOfTheEnd(HWND row, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_DESTROY)
    ::SendMessageW(toldWindow, WM_APP, 0, 0);
  return ::CallWindowProcW(rowProcedure, row, message, wParam, lParam);
}

TEST_F(FlyoutLife, ReportsAFailureInItsDestruction) {
  const desk::EventLogSpy eventLog;
  FailingFlyout flyout(givenBounds, L"Title", threeElements);
  toldWindow = flyout.Create(nullptr);
  flyout.failing = WM_APP;
  const HWND row = flyout.GetItems()[0]->GetHandle();
  rowProcedure =
      reinterpret_cast<WNDPROC>(::SetWindowLongPtrW(row, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&TellOfTheEnd)));
  ::SendMessageW(flyout.handle, WM_DESTROY, 0, 0);
  EXPECT_EQ(std::vector<std::wstring>({L"caught an unhandled exception in OnDestroy"}), eventLog.Reports());
  EXPECT_FALSE(::IsWindow(row));
  EXPECT_TRUE(::IsWindow(flyout.handle));
}

TEST_F(FlyoutLife, LeavesAFailureFromBeforeItsActivationAndItsDestructionToOthers) {
  const desk::EventLogSpy eventLog;
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  KeepAnEarlierFailure();
  ::SendMessageW(flyout.handle, WM_ACTIVATE, WA_INACTIVE, 0);
  ::SendMessageW(flyout.handle, WM_DESTROY, 0, 0);
  EXPECT_EQ(std::vector<std::wstring>(), eventLog.Reports());
  EXPECT_THROW(RethrowWindowException(), std::logic_error);
}

TEST_F(FlyoutLife, HidesWhenItIsAskedToCloseAndOpensAgain) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  const HWND window = flyout.Create(nullptr);
  ListenTo(flyout);
  flyout.ToggleVisibility();
  EXPECT_EQ(0, ::SendMessageW(window, WM_CLOSE, 0, 0));
  ASSERT_TRUE(::IsWindow(window));
  EXPECT_FALSE(::IsWindowVisible(window));
  EXPECT_EQ(lumenor::Visibility::Hidden, flyout.Visibility.Get());
  flyout.ToggleVisibility();
  EXPECT_TRUE(::IsWindowVisible(window));
  EXPECT_EQ(3u, flyout.GetItems().size());
  EXPECT_EQ(std::vector<lumenor::Visibility>(
                {lumenor::Visibility::Visible, lumenor::Visibility::Hidden, lumenor::Visibility::Visible}),
            heard);
}

TEST_F(FlyoutLife, HidesOnTheKeysThatCloseAWindow) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  const HWND window = flyout.Create(nullptr);
  flyout.ToggleVisibility();
  ASSERT_TRUE(desk::PumpUntil([&] { return ::GetActiveWindow() == window; }));
  desk::PressKey(VK_MENU);
  desk::PressKey(VK_F4);
  desk::ReleaseKey(VK_F4);
  desk::ReleaseKey(VK_MENU);
  EXPECT_TRUE(desk::PumpUntil([&] { return !::IsWindowVisible(window); }));
  EXPECT_TRUE(::IsWindow(window));
  EXPECT_EQ(lumenor::Visibility::Hidden, flyout.Visibility.Get());
}

TEST_F(FlyoutLife, ReportsAFailureInItsClosingOnceAndStays) {
  const desk::EventLogSpy eventLog;
  FailingFlyout flyout(givenBounds, L"Title", threeElements);
  const HWND window = flyout.Create(nullptr);
  flyout.ToggleVisibility();
  flyout.failing = WM_SHOWWINDOW; // of the hiding
  ::SendMessageW(window, WM_CLOSE, 0, 0);
  EXPECT_EQ(std::vector<std::wstring>({L"caught an unhandled exception in OnClose"}), eventLog.Reports());
  EXPECT_TRUE(::IsWindow(window));
  flyout.failing = WM_NULL;
}

/// As long as it lives the creation of the `count`-th window of this thread from now on runs `onCreation`, as a message
/// that is handled just then does.
class CreationHook {
public:
  CreationHook(int count, std::function<void()> onCreation) {
    left = count;
    action = std::move(onCreation);
    hook = ::SetWindowsHookExW(WH_CBT, &Look, nullptr, ::GetCurrentThreadId());
  }
  ~CreationHook() { ::UnhookWindowsHookEx(hook); }
  CreationHook(const CreationHook &) = delete;
  CreationHook &operator=(const CreationHook &) = delete;

private:
  static LRESULT CALLBACK Look(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_CREATEWND && --left == 0)
      action();
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
  }

  static inline int left;
  static inline std::function<void()> action;
  HHOOK hook;
};

/// The header and the rows, as the tree has them.
std::vector<UIElement *> ChildrenOfList(FlyoutWindow &flyout) {
  auto &root = dynamic_cast<DockPanel &>(*flyout.GetChild());
  return dynamic_cast<StackPanel &>(*root.GetChildren().at(1)).GetChildren();
}

TEST_F(FlyoutLife, ARefreshWithinTheMakingOfItsRowsIsFollowedWhole) {
  for (int window = 1; window <= 3; ++window) {
    TestFlyout flyout(givenBounds, L"Title", threeElements);
    flyout.Create(nullptr);
    ElementList longer;
    for (int i = 0; i < 20; ++i)
      longer.push_back(MakeElement(L"New " + std::to_wstring(i)));
    {
      const CreationHook hook(window, [&] {
        flyout.SetElements(longer);
        flyout.CreateItems();
      });
      flyout.CreateItems();
    }
    ElementList rows;
    for (const auto &item : flyout.GetItems())
      rows.push_back(item->GetElement());
    EXPECT_EQ(longer, rows) << window;
    EXPECT_EQ(Rect(300, 400, 540, 400 + 40 + 20 * 40), ScreenRect(flyout.handle)) << window;
    const std::vector<UIElement *> children = ChildrenOfList(flyout);
    EXPECT_EQ(21u, children.size()) << window << ": the header and the rows, and nothing that was left behind";
  }
}

TEST_F(FlyoutLife, AListThatShrinksWithinTheMakingOfItsRowsIsFollowedWhole) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  {
    const CreationHook hook(2, [&] {
      flyout.SetElements({});
      flyout.CreateItems();
    });
    flyout.CreateItems();
  }
  EXPECT_TRUE(flyout.GetItems().empty());
  EXPECT_EQ(1u, ChildrenOfList(flyout).size());
  EXPECT_EQ(Rect(300, 400, 540, 440), ScreenRect(flyout.handle));
}

TEST_F(FlyoutLife, MakesItsRowsAgainAfterAMakingThatFailed) {
  const Element withPicture = MakeElement(L"Picture", L"", L"", L"nothing.png"); // which the built-in one stands for
  TestFlyout flyout(givenBounds, L"Title", {withPicture, withPicture});
  flyout.Create(nullptr);
  {
    const tests::FailingClass noPictures(CLSID_WICImagingFactory, E_ACCESSDENIED);
    ReleaseImagingFactory();
    EXPECT_ANY_THROW(flyout.CreateItems());
  }
  flyout.CreateItems();
  EXPECT_EQ(2u, flyout.GetItems().size());
  EXPECT_EQ(3u, ChildrenOfList(flyout).size());
}

} // namespace

} // namespace lumenor
