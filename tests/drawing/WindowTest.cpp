#include "toolkit/drawing/Window.h"

#include <optional>
#include <stdexcept>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/WindowOnScreen.h"
#include "system/HResultError.h"

namespace lumenor {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A template of the tests' resources.
constexpr WORD framedDialogId = 900;

using WindowMessages = WindowOnScreen;
using WindowGuard = WindowOnScreen;

} // namespace

// How it comes up.

TEST_F(WindowOnScreen, ComesUpWithoutFrameLayeredAndTopmost) {
  Open();
  EXPECT_EQ(::GetWindowLongW(window.handle, GWL_STYLE) & 0xCC0001, 0);
  EXPECT_EQ(::GetWindowLongW(window.handle, GWL_EXSTYLE) & 0x80008, 0x80008);
  RECT client{};
  ::GetClientRect(window.handle, &client);
  EXPECT_THAT(ScreenBoundsOf(window.handle), ElementsAre(120, 140, client.right, client.bottom));
}

TEST_F(WindowOnScreen, KeepsNothingOfTheFrameOfItsTemplate) {
  window.dialogId = framedDialogId;
  Open();
  ASSERT_TRUE(::IsWindow(window.handle));
  EXPECT_EQ(::GetWindowLongW(window.handle, GWL_STYLE) & 0xCC0001, 0);
}

TEST_F(WindowOnScreen, ComesUpAtItsBoundsWithTheFocus) {
  Open();
  EXPECT_TRUE(::IsWindowVisible(window.handle));
  EXPECT_THAT(ScreenBoundsOf(window.handle), ElementsAre(120, 140, 200, 80));
  EXPECT_TRUE(HasFocus(window.handle));
  EXPECT_EQ(window.GetHandle(), window.handle);
}

TEST_F(WindowOnScreen, KeepsTheTitleOfItsTemplate) {
  Open();
  wchar_t title[40] = {};
  ::GetWindowTextW(window.handle, title, 40);
  EXPECT_STREQ(title, L"Lumenor Dock");
}

TEST_F(WindowOnScreen, LiesAboveWindowsThatCameLaterAndAreNotTopmost) {
  Open();
  const desk::Backdrop later({120, 140, 320, 220}, RGB(9, 9, 9));
  // The focus that the window has asked for may come late, and raises it.
  ASSERT_TRUE(desk::PumpUntil([&] {
    ::SetWindowPos(later.Get(), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return ::WindowFromPoint({125, 145}) == later.Get();
  }));
  ::SetWindowPos(later.Get(), HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  ::SetWindowPos(later.Get(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  EXPECT_EQ(::WindowFromPoint({125, 145}), window.canvas.handle);
}

TEST_F(WindowOnScreen, HiddenOneStaysHidden) {
  window.onInitialize = [this] { window.Visibility.Set(Visibility::Hidden); };
  Open();
  EXPECT_TRUE(::IsWindow(window.handle));
  EXPECT_FALSE(::IsWindowVisible(window.handle));
  EXPECT_EQ(window.paints, 0);
}

TEST_F(WindowOnScreen, GivesItsChildItsSize) {
  Open();
  EXPECT_THAT(BoundsOf(window.canvas), ElementsAre(0, 0, 200, 80));
  EXPECT_EQ(window.GetRootHandle(), window.handle);
}

TEST_F(WindowOnScreen, DrawsWithTheFactoryOfTheWindowsThatStand) {
  Microsoft::WRL::ComPtr<ID2D1Factory> factory, laterFactory;
  window.onPaint = [&](ID2D1RenderTarget *target) { target->GetFactory(&factory); };
  Open();
  TestWindow later;
  later.onPaint = [&](ID2D1RenderTarget *target) { target->GetFactory(&laterFactory); };
  later.Create(nullptr);
  ASSERT_NE(factory.Get(), nullptr);
  EXPECT_EQ(laterFactory.Get(), factory.Get());
}

/// The factory of a window that comes when all others have gone.
Microsoft::WRL::ComPtr<ID2D1Factory> FactoryOfTheNext() {
  Microsoft::WRL::ComPtr<ID2D1Factory> factory;
  TestWindow().Target()->GetFactory(&factory);
  return factory;
}

TEST(DrawingFactory, GoesWithTheLastWindow) {
  const auto former = FactoryOfTheNext();
  EXPECT_NE(FactoryOfTheNext().Get(), former.Get());
}

TEST(DrawingFactory, OutlastsTheWindowsWhileItIsHeld) {
  std::optional<Window::FactoryHold> hold(std::in_place);
  const auto former = FactoryOfTheNext();
  EXPECT_EQ(FactoryOfTheNext().Get(), former.Get());
  hold.reset();
  EXPECT_NE(FactoryOfTheNext().Get(), former.Get());
}

TEST(DrawingFactory, IsMadeAnewOnceItIsForgotten) {
  const Window::FactoryHold hold;
  const auto former = FactoryOfTheNext();
  Window::ForgetFactory();
  const auto later = FactoryOfTheNext();
  EXPECT_NE(later.Get(), former.Get());
  EXPECT_EQ(FactoryOfTheNext().Get(), later.Get());
}

TEST_F(WindowOnScreen, RunsModallyUntilEndDialog) {
  window.onInitialize = [this] { ::PostMessageW(window.handle, WM_APP, 0, 0); };
  bool ended = false;
  window.onPaint = [&](ID2D1RenderTarget *) {
    if (!std::exchange(ended, true))
      ::EndDialog(window.handle, 42);
  };
  EXPECT_EQ(window.DoModal(nullptr), 42);
  EXPECT_EQ(window.handle, nullptr);
}

// Showing, hiding, moving.

TEST_F(WindowOnScreen, VisibilityHidesAndShowsWithARepaint) {
  Open();
  window.Visibility.Set(Visibility::Hidden);
  EXPECT_FALSE(::IsWindowVisible(window.handle));
  ::SetFocus(nullptr);
  window.paints = 0;
  window.Visibility.Set(Visibility::Visible);
  EXPECT_TRUE(::IsWindowVisible(window.handle));
  EXPECT_TRUE(HasFocus(window.handle));
  EXPECT_EQ(window.paints, 1);
}

TEST_F(WindowOnScreen, CollapsingEndsAsHidden) {
  Open();
  Watch<Visibility> watch(window.Visibility);
  window.Visibility.Set(Visibility::Collapsed);
  EXPECT_FALSE(::IsWindowVisible(window.handle));
  EXPECT_EQ(window.Visibility.Get(), Visibility::Hidden); // the platform's message has told so
  EXPECT_THAT(watch.values, ElementsAre(Visibility::Hidden, Visibility::Collapsed));
}

TEST_F(WindowOnScreen, VisibilityWithoutAWindowDoesNothing) {
  window.Visibility.Set(Visibility::Hidden);
  window.Visibility.Set(Visibility::Visible);
  EXPECT_EQ(window.paints, 0);
}

TEST_F(WindowOnScreen, PlatformsHidingAndShowingIsKeptInVisibility) {
  Open();
  ::ShowWindow(window.handle, SW_HIDE);
  EXPECT_EQ(window.Visibility.Get(), Visibility::Hidden);
  ::ShowWindow(window.handle, SW_SHOWNA);
  EXPECT_EQ(window.Visibility.Get(), Visibility::Visible);
}

TEST_F(WindowOnScreen, ShowMovesFocusesAndRepaints) {
  Open();
  ::SetFocus(nullptr);
  window.Width.Set(150);
  window.paints = 0;
  window.Show();
  EXPECT_THAT(ScreenBoundsOf(window.handle), ElementsAre(120, 140, 150, 80));
  EXPECT_TRUE(HasFocus(window.handle));
  EXPECT_EQ(window.paints, 1);
}

TEST_F(WindowOnScreen, ShowOfAHiddenOneDoesNothing) {
  Open();
  window.Visibility.Set(Visibility::Hidden);
  window.paints = 0;
  window.Show();
  EXPECT_FALSE(::IsWindowVisible(window.handle));
  EXPECT_EQ(window.paints, 0);
}

TEST_F(WindowOnScreen, LeftAndTopMoveTheWindow) {
  Open();
  window.Left.Set(300);
  EXPECT_THAT(ScreenBoundsOf(window.handle), ElementsAre(300, 140, 200, 80));
  window.Top.Set(250);
  EXPECT_THAT(ScreenBoundsOf(window.handle), ElementsAre(300, 250, 200, 80));
}

TEST_F(WindowOnScreen, WidthAndHeightAloneDoNotMoveTheWindow) {
  Open();
  window.Width.Set(150);
  window.Height.Set(60);
  EXPECT_THAT(ScreenBoundsOf(window.handle), ElementsAre(120, 140, 200, 80));
  EXPECT_THAT(BoundsOf(window.canvas), ElementsAre(0, 0, 150, 60));
  window.Left.Set(121);
  EXPECT_THAT(ScreenBoundsOf(window.handle), ElementsAre(121, 140, 150, 60));
}

TEST_F(WindowOnScreen, PlatformsMoveIsKeptInTheBounds) {
  Open();
  ::SetWindowPos(window.handle, nullptr, 300, 140, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  EXPECT_THAT(BoundsOf(window), ElementsAre(300, 140, 200, 80));
  ::SetWindowPos(window.handle, nullptr, 0, 0, 90, 70, SWP_NOMOVE | SWP_NOZORDER);
  EXPECT_THAT(BoundsOf(window), ElementsAre(300, 140, 90, 70));
  EXPECT_THAT(ScreenBoundsOf(window.handle), ElementsAre(300, 140, 90, 70));
}

TEST_F(WindowOnScreen, CloseRunsOnCloseAndDestroysTheWindow) {
  Open();
  std::vector<std::string> order;
  window.onClose = [&] { order.emplace_back(::IsWindow(window.handle) ? "close" : "close late"); };
  window.onDestroy = [&] { order.emplace_back("destroy"); };
  ::SendMessageW(window.handle, WM_CLOSE, 0, 0);
  EXPECT_THAT(order, ElementsAre("close", "destroy"));
  EXPECT_EQ(window.handle, nullptr);
}

// The message table, row by row.

TEST_F(WindowMessages, InitDialogAnswersOne) {
  Open();
  EXPECT_EQ(Ask(WM_INITDIALOG), HandledWith(1));
}

TEST_F(WindowMessages, ShowWindowSetsVisibilityAndGoesOn) {
  Open();
  EXPECT_EQ(Ask(WM_SHOWWINDOW, 0), unhandled);
  EXPECT_EQ(window.Visibility.Get(), Visibility::Hidden);
  EXPECT_EQ(Ask(WM_SHOWWINDOW, 5), unhandled);
  EXPECT_EQ(window.Visibility.Get(), Visibility::Visible);
}

TEST_F(WindowMessages, ShowWindowOfAVisibleOneChangesAndFiresNothing) {
  Open();
  const Watch<Visibility> watch(window.Visibility);
  window.paints = 0;
  ::SendMessageW(window.handle, WM_SHOWWINDOW, 1, 0);
  EXPECT_EQ(window.Visibility.Get(), Visibility::Visible);
  EXPECT_THAT(watch.values, IsEmpty());
  EXPECT_EQ(window.paints, 0);
}

TEST_F(WindowMessages, WindowPosChangedCopiesTheRecordAndGoesOn) {
  WINDOWPOS position{nullptr, nullptr, 11, -12, 13, 14, 0};
  EXPECT_EQ(Ask(WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&position)), unhandled);
  EXPECT_THAT(BoundsOf(window), ElementsAre(11, -12, 13, 14));
}

TEST_F(WindowMessages, DestroyAnswersZero) {
  Open();
  int destructions = 0;
  window.onDestroy = [&] { ++destructions; };
  EXPECT_EQ(Ask(WM_DESTROY), HandledWith(0));
  EXPECT_EQ(destructions, 1);
}

TEST_F(WindowMessages, CloseAnswersZero) {
  Open();
  EXPECT_EQ(Ask(WM_CLOSE), HandledWith(0));
  EXPECT_EQ(window.handle, nullptr);
}

TEST_F(WindowMessages, NcCalcSizeLeavesTheWholeWindowToTheClient) {
  Open();
  RECT rect{1, 2, 30, 40};
  EXPECT_EQ(Ask(WM_NCCALCSIZE, FALSE, reinterpret_cast<LPARAM>(&rect)), HandledWith(0));
  EXPECT_EQ(::SendMessageW(window.handle, WM_NCCALCSIZE, FALSE, reinterpret_cast<LPARAM>(&rect)), 0);
  EXPECT_THAT((std::vector<long>{rect.left, rect.top, rect.right, rect.bottom}), ElementsAre(1, 2, 30, 40));
}

TEST_F(WindowMessages, QueryEndSessionNeverHoldsALogOffUp) {
  Open();
  EXPECT_EQ(Ask(WM_QUERYENDSESSION), HandledWith(1));
  EXPECT_EQ(::SendMessageW(window.handle, WM_QUERYENDSESSION, 0, 0), 1);
}

TEST_F(WindowMessages, EndSessionAnswersOneOnlyWhenBothParametersAreSet) {
  Open();
  EXPECT_EQ(Ask(WM_ENDSESSION, 1, 1), HandledWith(1));
  EXPECT_EQ(Ask(WM_ENDSESSION, 1, 0), HandledWith(0));
  EXPECT_EQ(Ask(WM_ENDSESSION, 0, 1), HandledWith(0));
  EXPECT_EQ(Ask(WM_ENDSESSION, 0, 0), HandledWith(0));
  EXPECT_EQ(::SendMessageW(window.handle, WM_ENDSESSION, 1, 1), 1);
  EXPECT_EQ(window.sessionsEnded, 0); // nobody listens
}

TEST_F(WindowMessages, EndSessionCallsItsHandlerWhenSet) {
  Open();
  window.ListenToEndSession();
  ::SendMessageW(window.handle, WM_ENDSESSION, 1, 0);
  EXPECT_EQ(window.sessionsEnded, 1);
  EXPECT_TRUE(::IsWindow(window.handle));
}

namespace {

UINT lastReflected = 0;

LRESULT CALLBACK ReflectionProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message >= 0x2000 && message < 0x4000) {
    lastReflected = message;
    return 99;
  }
  return ::DefWindowProcW(window, message, wParam, lParam);
}

} // namespace

TEST_F(WindowMessages, MessageOfAControlIsReflectedToIt) {
  Open();
  const HWND control = ::CreateWindowExW(0, L"STATIC", nullptr, WS_CHILD, 0, 0, 5, 5, window.handle,
                                         reinterpret_cast<HMENU>(17), nullptr, nullptr);
  ::SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ReflectionProcedure));
  EXPECT_EQ(Ask(WM_COMMAND, 17, reinterpret_cast<LPARAM>(control)), HandledWith(99));
  EXPECT_EQ(lastReflected, WM_COMMAND + 0x2000U);
  NMHDR header{control, 17, 1};
  EXPECT_EQ(Ask(WM_NOTIFY, 17, reinterpret_cast<LPARAM>(&header)), HandledWith(99));
  EXPECT_EQ(lastReflected, WM_NOTIFY + 0x2000U);
  EXPECT_EQ(::SendMessageW(window.handle, WM_HSCROLL, 0, reinterpret_cast<LPARAM>(control)), 99);
  EXPECT_EQ(lastReflected, WM_HSCROLL + 0x2000U);
  EXPECT_EQ(Ask(WM_COMMAND, 17, 0), unhandled);
}

TEST_F(WindowMessages, OtherMessagesAndOtherMapsStayUnhandled) {
  Open();
  EXPECT_EQ(Ask(WM_TIMER, 3), unhandled);
  EXPECT_EQ(Ask(WM_PAINT), unhandled);
  LRESULT result = unset;
  EXPECT_FALSE(window.ProcessWindowMessage(window.handle, WM_QUERYENDSESSION, 0, 0, result, 1));
  EXPECT_EQ(result, unset);
}

// The guard.

TEST_F(WindowGuard, ExceptionWhileComposingDestroysTheWindowAndIsReportedOnce) {
  const desk::EventLogSpy eventLog;
  window.onInitialize = [] { throw std::runtime_error("compose"); };
  EXPECT_EQ(window.Create(nullptr), nullptr);
  EXPECT_EQ(window.handle, nullptr);
  EXPECT_THAT(eventLog.Reports(), ElementsAre(L"caught an unhandled exception in OnInitDialog"));
}

TEST_F(WindowGuard, ExceptionWhileComposingEndsAModalDialogAndFreesItsOwner) {
  TestWindow owner;
  owner.Create(nullptr);
  const desk::EventLogSpy eventLog;
  window.onInitialize = [] { throw HResultError(E_FAIL); };
  window.DoModal(owner.handle);
  EXPECT_EQ(window.handle, nullptr);
  EXPECT_THAT(eventLog.Reports(), ElementsAre(L"caught an unhandled exception in OnInitDialog"));
  EXPECT_TRUE(::IsWindowEnabled(owner.handle));
  EXPECT_TRUE(::IsWindowVisible(owner.handle));
}

TEST_F(WindowGuard, ModalDialogThatIsClosedFreesItsOwner) {
  TestWindow owner;
  owner.Create(nullptr);
  window.onInitialize = [this] { ::PostMessageW(window.handle, WM_CLOSE, 0, 0); };
  window.DoModal(owner.handle);
  EXPECT_EQ(window.handle, nullptr);
  EXPECT_TRUE(::IsWindowEnabled(owner.handle));
}

TEST_F(WindowGuard, ExceptionOnShowing) {
  Open();
  const desk::EventLogSpy eventLog;
  Watch<Visibility> watch(window.Visibility);
  watch.onChange = [] { throw 5; };
  ::SendMessageW(window.handle, WM_SHOWWINDOW, 0, 0);
  EXPECT_EQ(window.handle, nullptr);
  EXPECT_THAT(eventLog.Reports(), ::testing::Contains(L"caught an unhandled exception in OnShowWindow"));
}

TEST_F(WindowGuard, ExceptionOnAMove) {
  Open();
  const desk::EventLogSpy eventLog;
  Watch<long> watch(window.Left);
  watch.onChange = [] { throw std::runtime_error("move"); };
  ::SetWindowPos(window.handle, nullptr, 300, 140, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  EXPECT_EQ(window.handle, nullptr);
  EXPECT_THAT(eventLog.Reports(), ElementsAre(L"caught an unhandled exception in OnWindowPosChanged"));
}

TEST_F(WindowGuard, ExceptionOnDestroy) {
  Open();
  const desk::EventLogSpy eventLog;
  window.onDestroy = [] { throw std::runtime_error("destroy"); };
  ::DestroyWindow(window.handle);
  EXPECT_EQ(window.handle, nullptr);
  EXPECT_THAT(eventLog.Reports(), ElementsAre(L"caught an unhandled exception in OnDestroy"));
}

TEST_F(WindowGuard, ExceptionOnClose) {
  Open();
  const desk::EventLogSpy eventLog;
  window.onClose = [] { throw std::runtime_error("close"); };
  ::SendMessageW(window.handle, WM_CLOSE, 0, 0);
  EXPECT_EQ(window.handle, nullptr);
  EXPECT_THAT(eventLog.Reports(), ElementsAre(L"caught an unhandled exception in OnClose"));
}

TEST_F(WindowGuard, ExceptionAtTheEndOfTheSession) {
  Open();
  const desk::EventLogSpy eventLog;
  window.ListenToEndSession();
  window.onEndSession = [] { throw std::runtime_error("session"); };
  EXPECT_EQ(Ask(WM_ENDSESSION, 1, 1).first, FALSE);
  EXPECT_EQ(window.handle, nullptr);
  EXPECT_THAT(eventLog.Reports(), ElementsAre(L"caught an unhandled exception in OnEndSession"));
}

TEST_F(WindowGuard, FailedMessageGoesOnToTheReflection) {
  Open();
  window.onClose = [] { throw std::runtime_error("close"); };
  EXPECT_EQ(Ask(WM_CLOSE), unhandled);
}

TEST_F(WindowGuard, ExceptionInAPaintOfTheInitialisationIsGuardedToo) {
  const desk::EventLogSpy eventLog;
  window.onPaint = [](ID2D1RenderTarget *) { throw std::runtime_error("paint"); };
  EXPECT_EQ(window.Create(nullptr), nullptr);
  EXPECT_THAT(eventLog.Reports(), ElementsAre(L"caught an unhandled exception in OnInitDialog"));
}

} // namespace lumenor
