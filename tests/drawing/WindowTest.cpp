#include "toolkit/drawing/Window.h"

#include <stdexcept>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/LowColorDisplay.h"
#include "drawing/Scene.h"
#include "support/Desk.h"
#include "support/HandleCounts.h"
#include "system/EventLog.h"
#include "system/HResultError.h"
#include "toolkit/ColorRectangle.h"
#include "toolkit/drawing/Button.h"

namespace lumenor {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr LRESULT unset = -77;
constexpr std::pair<BOOL, LRESULT> unhandled{FALSE, unset};

std::pair<BOOL, LRESULT> HandledWith(LRESULT result) { return {TRUE, result}; }

std::vector<long> BoundsOf(const UIElement &element) {
  return {element.Left.Get(), element.Top.Get(), element.Width.Get(), element.Height.Get()};
}

std::vector<long> ScreenBoundsOf(HWND window) {
  RECT rect{};
  ::GetWindowRect(window, &rect);
  return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

/// The platform gives the focus of a dialog on to a child.
bool HasFocus(HWND window) { return ::GetFocus() == window || ::IsChild(window, ::GetFocus()); }

/// Counts the firings of a property.
template <typename T> class Watch {
public:
  explicit Watch(Property<T> &property) { property.changed.AddListener(listener.get()); }
  void Note(PropertyChangeEventArgs<T> *args) {
    values.push_back(args->newValue);
    if (onChange)
      onChange();
  }
  std::vector<T> values;
  std::function<void()> onChange;

private:
  std::shared_ptr<EventListener<PropertyChangeEventArgs<T>>> listener = MakeListener(this, &Watch::Note);
};

class WindowOnScreen : public ::testing::Test {
protected:
  WindowOnScreen() {
    OpenDockEventLog();
    desk::MoveCursor({5, 5});
  }

  void Open() {
    window.Create(nullptr);
    desk::PumpAll();
  }

  std::pair<BOOL, LRESULT> Ask(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    LRESULT result = unset;
    const BOOL handled = window.ProcessWindowMessage(window.handle, message, wParam, lParam, result);
    return {handled, result};
  }

  TestWindow window;
};

using WindowMessages = WindowOnScreen;
using WindowGuard = WindowOnScreen;
using WindowRender = WindowOnScreen;

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
  ASSERT_EQ(::WindowFromPoint({125, 145}), later.Get());
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

// The repaint.

TEST_F(WindowRender, ShowsTheTreeOnTheScreenWithItsAlpha) {
  const desk::Backdrop blue({100, 120, 400, 300}, RGB(0, 0, 200));
  Open();
  const RECT left{0, 0, 40, 80}, right{160, 0, 200, 80};
  ColorRectangle red(left, window.Target(), Color{1, 0, 0, 1});
  ColorRectangle half(right, window.Target(), Color{1, 1, 1, 0.5F});
  red.SetBounds(&left);
  half.SetBounds(&right);
  window.canvas.AddChild(&red);
  window.canvas.AddChild(&half);
  window.Invalidate();
  EXPECT_TRUE(desk::PumpUntil([] { return desk::PixelAt({121, 141}) == 0xFF0000; }));
  EXPECT_EQ(desk::PixelAt({159, 219}), 0xFF0000U);
  EXPECT_EQ(desk::PixelAt({160, 180}), 0x0000C8U); // transparent
  EXPECT_EQ(desk::PixelAt({119, 180}), 0x0000C8U); // outside
  const std::uint32_t mixed = desk::PixelAt({300, 180});
  EXPECT_NEAR(mixed >> 16, 128, 2);
  EXPECT_NEAR(mixed & 0xFF, 228, 2);
}

TEST_F(WindowRender, OpacityFadesTheWholeWindowAtOnce) {
  const desk::Backdrop blue({100, 120, 400, 300}, RGB(0, 0, 200));
  Open();
  const RECT all{0, 0, 200, 80};
  ColorRectangle red(all, window.Target(), Color{1, 0, 0, 1});
  red.SetBounds(&all);
  window.canvas.AddChild(&red);
  window.paints = 0;
  window.Opacity.Set(51);
  EXPECT_EQ(window.paints, 1);
  const auto faded = [] {
    const std::uint32_t pixel = desk::PixelAt({200, 180});
    return (pixel >> 16) >= 50 && (pixel >> 16) <= 52 && (pixel & 0xFF) >= 158 && (pixel & 0xFF) <= 162;
  };
  EXPECT_TRUE(desk::PumpUntil(faded)) << std::hex << desk::PixelAt({200, 180});
}

TEST_F(WindowRender, HandsTheWholeWindowOverInOneCall) {
  Open();
  const LayerSpy layers;
  window.Opacity.Set(190);
  ASSERT_EQ(layers.Calls().size(), 1U);
  const LayerSpy::Call &call = layers.Calls()[0];
  EXPECT_THAT(
      (std::vector<long>{call.position.x, call.position.y, call.size.cx, call.size.cy, call.origin.x, call.origin.y}),
      ElementsAre(120, 140, 200, 80, 0, 0));
  EXPECT_EQ(call.key, 0U);
  EXPECT_EQ(call.blend.BlendOp, AC_SRC_OVER);
  EXPECT_EQ(call.blend.BlendFlags, 0);
  EXPECT_EQ(call.blend.SourceConstantAlpha, 190);
  EXPECT_EQ(call.blend.AlphaFormat, AC_SRC_ALPHA);
  EXPECT_EQ(call.flags, static_cast<DWORD>(ULW_ALPHA));
}

TEST_F(WindowRender, OnALowColorDisplayTheWindowIsOpaque) {
  Open();
  const tests::LowColorDisplay lowColor;
  const LayerSpy layers;
  window.Render();
  ASSERT_EQ(layers.Calls().size(), 1U);
  EXPECT_EQ(layers.Calls()[0].flags, static_cast<DWORD>(ULW_OPAQUE));
}

TEST_F(WindowRender, WorksFromInsideTheInitialisation) {
  int paintsInside = 0;
  window.onInitialize = [&] {
    window.Render();
    paintsInside = window.paints;
  };
  Open();
  EXPECT_EQ(paintsInside, 1);
  EXPECT_TRUE(::IsWindow(window.handle));
}

TEST_F(WindowRender, PaintsTheTreeInTheClientRectangleUnderTheIdentity) {
  Open();
  D2D1_MATRIX_3X2_F transform{};
  window.onPaint = [&](ID2D1RenderTarget *target) {
    target->GetTransform(&transform);
    const D2D1_MATRIX_3X2_F shifted{{{1, 0, 0, 1, 50, 50}}};
    target->SetTransform(&shifted);
  };
  window.Render();
  window.Render(); // what the pass before left behind is gone
  EXPECT_EQ(transform._11, 1.0F);
  EXPECT_EQ(transform._22, 1.0F);
  EXPECT_EQ(transform._31, 0.0F);
  EXPECT_EQ(transform._32, 0.0F);
}

TEST_F(WindowRender, InvalidationOfADescendantRepaintsAtOnce) {
  Button button(std::make_shared<RecordingPainter>());
  window.onInitialize = [&] { window.canvas.AddChild(&button); };
  Open();
  window.paints = 0;
  static_cast<UIElement &>(button).Invalidate();
  EXPECT_EQ(window.paints, 1);
  window.canvas.RemoveChild(&button);
}

TEST_F(WindowRender, OneInvalidationCostsOneRepaint) {
  Button button(std::make_shared<RecordingPainter>());
  const RECT bounds{10, 10, 50, 40};
  button.SetBounds(&bounds);
  window.onInitialize = [&] { window.canvas.AddChild(&button); };
  Open();
  window.paints = 0;
  const LayerSpy layers;
  ::InvalidateRect(button.handle, nullptr, TRUE);
  desk::PumpAll();
  EXPECT_EQ(window.paints, 1);
  EXPECT_EQ(layers.Calls().size(), 1U);
  window.canvas.RemoveChild(&button);
}

TEST_F(WindowRender, FailedEndDrawIsPostedAndTheBitmapShownAllTheSame) {
  Open();
  ID2D1Bitmap *none = nullptr;
  const D2D1_SIZE_U size{4, 4};
  const D2D1_BITMAP_PROPERTIES properties{{DXGI_FORMAT_B8G8R8A8_UNORM, D2D1_ALPHA_MODE_PREMULTIPLIED}, 0, 0};
  ASSERT_EQ(window.Target()->CreateBitmap(size, nullptr, 0, &properties, &none), S_OK);
  const Microsoft::WRL::ComPtr<ID2D1Bitmap> mask(none);
  mask->Release();
  ID2D1SolidColorBrush *plain = nullptr;
  const D2D1_COLOR_F white{1, 1, 1, 1};
  ASSERT_EQ(window.Target()->CreateSolidColorBrush(&white, nullptr, &plain), S_OK);
  const Microsoft::WRL::ComPtr<ID2D1SolidColorBrush> brush(plain);
  brush->Release();
  window.onPaint = [&](ID2D1RenderTarget *target) {
    target->FillOpacityMask(mask.Get(), brush.Get(), D2D1_OPACITY_MASK_CONTENT_GRAPHICS, nullptr, nullptr);
  };
  const LayerSpy layers;
  window.Render();
  EXPECT_EQ(layers.Calls().size(), 1U);
  MSG message{};
  ASSERT_TRUE(::PeekMessageW(&message, window.handle, 1034, 1034, PM_REMOVE));
  EXPECT_EQ(static_cast<HRESULT>(message.wParam), D2DERR_WRONG_STATE);
  EXPECT_EQ(message.lParam, 0);
  window.onPaint = nullptr;
  window.Render();
  EXPECT_FALSE(::PeekMessageW(&message, window.handle, 1034, 1034, PM_REMOVE));
}

TEST_F(WindowRender, WithoutAWindowFailsAsThePlatformSays) {
  try {
    window.Render();
    ADD_FAILURE() << "no exception";
  } catch (const HResultError &error) {
    EXPECT_EQ(error.Result(), HResultFromError(ERROR_INVALID_WINDOW_HANDLE));
  }
  EXPECT_THROW(window.Invalidate(), HResultError);
}

TEST_F(WindowRender, WithoutAWindowInvalidatesNobodyElse) {
  const desk::Backdrop other({700, 500, 760, 560}, RGB(10, 20, 30));
  desk::PumpAll();
  ::ValidateRect(other.Get(), nullptr);
  EXPECT_THROW(window.Invalidate(), HResultError);
  EXPECT_FALSE(::GetUpdateRect(other.Get(), nullptr, FALSE));
}

TEST_F(WindowRender, OfAnEmptyWindowShowsNothingAndDoesNotFail) {
  Open();
  window.Height.Set(0);
  window.Show();
  const LayerSpy layers;
  EXPECT_NO_THROW(window.Render());
  EXPECT_THAT(layers.Calls(), IsEmpty());
}

TEST_F(WindowRender, ChangeWhilePaintingCostsOneMorePassAndNoRecursion) {
  Open();
  int depth = 0, deepest = 0;
  window.onPaint = [&](ID2D1RenderTarget *) {
    deepest = std::max(deepest, ++depth);
    if (window.paints == 1)
      window.Opacity.Set(77);
    --depth;
  };
  window.paints = 0;
  const LayerSpy layers;
  window.Render();
  EXPECT_EQ(deepest, 1);
  EXPECT_EQ(window.paints, 2);
  ASSERT_EQ(layers.Calls().size(), 2U);
  EXPECT_EQ(layers.Calls()[1].blend.SourceConstantAlpha, 77);
  window.Render(); // and not a pass too many afterwards
  EXPECT_EQ(window.paints, 3);
}

TEST_F(WindowRender, ChangeAtEveryPaintEnds) {
  Open();
  window.onPaint = [&](ID2D1RenderTarget *) { window.Invalidate(); };
  window.paints = 0;
  window.Render();
  EXPECT_EQ(window.paints, 2);
}

TEST_F(WindowRender, FailureInsideAPaintLeavesTheNextOneWhole) {
  Open();
  window.onPaint = [](ID2D1RenderTarget *) { throw std::runtime_error("paint"); };
  EXPECT_THROW(window.Render(), std::runtime_error);
  window.onPaint = nullptr;
  window.paints = 0;
  const LayerSpy layers;
  window.Render();
  EXPECT_EQ(window.paints, 1);
  EXPECT_EQ(layers.Calls().size(), 1U);
  MSG message{};
  EXPECT_FALSE(::PeekMessageW(&message, window.handle, 1034, 1034, PM_REMOVE));
}

TEST_F(WindowRender, KeepsNoHandleBetweenRepaints) {
  Open();
  const RECT all{0, 0, 200, 80};
  ColorRectangle red(all, window.Target(), Color{1, 0, 0, 1});
  red.SetBounds(&all);
  window.canvas.AddChild(&red);
  for (int i = 0; i < 20; ++i)
    window.Invalidate();
  const int gdiObjects = tests::CountGdiObjects();
  for (int i = 0; i < 200; ++i)
    window.Invalidate();
  EXPECT_EQ(tests::CountGdiObjects(), gdiObjects);
}

TEST_F(WindowRender, FailedRepaintsKeepNoHandleEither) {
  Open();
  window.onPaint = [](ID2D1RenderTarget *) { throw std::runtime_error("paint"); };
  for (int i = 0; i < 5; ++i)
    EXPECT_THROW(window.Render(), std::runtime_error);
  const int gdiObjects = tests::CountGdiObjects();
  for (int i = 0; i < 50; ++i)
    EXPECT_THROW(window.Render(), std::runtime_error);
  EXPECT_EQ(tests::CountGdiObjects(), gdiObjects);
}

TEST_F(WindowRender, TargetTakesPremultipliedPixels) {
  const D2D1_PIXEL_FORMAT format = window.Target()->GetPixelFormat();
  EXPECT_EQ(format.format, DXGI_FORMAT_B8G8R8A8_UNORM);
  EXPECT_EQ(format.alphaMode, D2D1_ALPHA_MODE_PREMULTIPLIED);
}

} // namespace lumenor
