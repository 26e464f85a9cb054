#include "toolkit/drawing/Button.h"

#include <stdexcept>

#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/Scene.h"
#include "support/Desk.h"
#include "system/EventLog.h"
#include "system/WindowException.h"

namespace lumenor {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr RECT buttonBounds{20, 10, 100, 50};

/// A button with a listener on everything that it fires.
class WatchedButton : public Button {
public:
  explicit WatchedButton(std::shared_ptr<IButtonPainter> painter) : Button(std::move(painter)) {
    Click.AddListener(clicks.get());
    IsPressed.changed.AddListener(states.get());
    IsMouseOver.changed.AddListener(states.get());
  }

  void OnClick(ButtonEventArgs *args) {
    senders.push_back(args->sender);
    if (onClick)
      onClick();
  }
  void OnState(PropertyChangeEventArgs<int> *args) {
    ++stateChanges;
    if (onState)
      onState(args);
  }
  void OnDestroy() override { ++destructions; }

  /// The message map's answer: {handled, result}.
  std::pair<BOOL, LRESULT> Ask(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    LRESULT result = unset;
    const BOOL handled = ProcessWindowMessage(handle, message, wParam, lParam, result);
    return {handled, result};
  }

  static constexpr LRESULT unset = -77;
  std::vector<Button *> senders;
  int stateChanges = 0;
  int destructions = 0;
  std::function<void()> onClick;
  std::function<void(PropertyChangeEventArgs<int> *)> onState;
  std::shared_ptr<EventListener<ButtonEventArgs>> clicks = MakeListener(this, &WatchedButton::OnClick);
  std::shared_ptr<EventListener<PropertyChangeEventArgs<int>>> states = MakeListener(this, &WatchedButton::OnState);
};

constexpr std::pair<BOOL, LRESULT> unhandled{FALSE, WatchedButton::unset};

std::pair<BOOL, LRESULT> HandledWith(LRESULT result) { return {TRUE, result}; }

/// (IsPressed, IsMouseOver)
std::pair<int, int> StateOf(const Button &button) { return {button.IsPressed.Get(), button.IsMouseOver.Get()}; }

std::pair<int, int> State(int pressed, int mouseOver) { return {pressed, mouseOver}; }

std::vector<long> BoundsOf(const UIElement &element) {
  return {element.Left.Get(), element.Top.Get(), element.Width.Get(), element.Height.Get()};
}

/// {left, top, width, height} of a child window in its parent.
std::vector<long> WindowBoundsOf(HWND window) {
  RECT rect{};
  ::GetWindowRect(window, &rect);
  ::MapWindowPoints(nullptr, ::GetParent(window), reinterpret_cast<POINT *>(&rect), 2);
  return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

class ButtonOnScreen : public ::testing::Test {
protected:
  ButtonOnScreen() {
    desk::MoveCursor({5, 5});
    button.SetBounds(&buttonBounds);
    root.onInitialize = [this] { root.canvas.AddChild(&button); };
    root.Create(nullptr);
    desk::PumpAll();
  }

  ~ButtonOnScreen() override {
    desk::ReleaseLeftButton();
    desk::MoveCursor({5, 5});
  }

  /// Validates the button's window, so that the next invalidation shows.
  void Validate() { ::ValidateRect(button.handle, nullptr); }
  bool IsInvalid() { return ::GetUpdateRect(button.handle, nullptr, FALSE) != FALSE; }

  std::shared_ptr<RecordingPainter> painter = std::make_shared<RecordingPainter>();
  WatchedButton button{painter};
  TestWindow root;
};

using ButtonMessages = ButtonOnScreen;
using ButtonToolTip = ButtonOnScreen;

} // namespace

TEST_F(ButtonOnScreen, IsAnOwnerDrawnChildWindowOfItsPanel) {
  EXPECT_EQ(::GetParent(button.GetHandle()), root.canvas.GetHandle());
  EXPECT_EQ(::GetWindowLongW(button.GetHandle(), GWL_STYLE), 0x5000000B);
  EXPECT_EQ(::GetWindowLongW(button.GetHandle(), GWL_EXSTYLE), 0);
  EXPECT_EQ(::GetWindowTextLengthW(button.GetHandle()), 0);
}

TEST_F(ButtonOnScreen, AttachesItsPainterOnceWhenTheWindowIsMade) {
  EXPECT_EQ(painter->attaches, 1);
  EXPECT_EQ(painter->GetButton(), &button);
}

TEST(Button, StartsUpWithoutAWindowAndAtRest) {
  const Button button(std::make_shared<RecordingPainter>());
  EXPECT_EQ(button.handle, nullptr);
  EXPECT_EQ(StateOf(button), State(0, 0));
  EXPECT_STREQ(button.Click.Name(), L"Click");
  EXPECT_EQ(button.HasFocus.Get(), 0);
}

TEST_F(ButtonOnScreen, BoundsSurviveTheZeroSizeOfTheCreation) {
  const auto second = std::make_shared<RecordingPainter>();
  WatchedButton late(second);
  const RECT bounds{110, 20, 150, 60};
  late.SetBounds(&bounds);
  std::vector<long> widths;
  struct Watch {
    std::vector<long> *widths;
    void Note(PropertyChangeEventArgs<long> *args) { widths->push_back(args->newValue); }
  } watch{&widths};
  const auto listener = MakeListener(&watch, &Watch::Note);
  late.Width.changed.AddListener(listener.get());
  root.canvas.AddChild(&late);
  EXPECT_THAT(widths, ElementsAre(0, 40));
  EXPECT_THAT(BoundsOf(late), ElementsAre(110, 20, 40, 40));
  EXPECT_THAT(WindowBoundsOf(late.handle), ElementsAre(110, 20, 40, 40));
  root.canvas.RemoveChild(&late);
}

TEST_F(ButtonOnScreen, DetachingDestroysTheWindow) {
  const HWND window = button.handle;
  root.canvas.RemoveChild(&button);
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_EQ(button.handle, nullptr);
  EXPECT_EQ(button.destructions, 1);
}

TEST_F(ButtonOnScreen, PaintsByItsPainterInItsRectangleOfTheRoot) {
  painter->paints = 0;
  root.Render();
  EXPECT_EQ(painter->paints, 1);
  const D2D1_RECT_F &rect = painter->lastRect;
  EXPECT_THAT((std::vector<float>{rect.left, rect.top, rect.right, rect.bottom}), ElementsAre(20, 10, 100, 50));
}

TEST(Button, UnderAParentWithoutAWindowHasNoWindowAndIsNotPainted) {
  const auto painter = std::make_shared<RecordingPainter>();
  WatchedButton button(painter);
  button.SetBounds(&buttonBounds);
  Canvas canvas; // in no window
  canvas.AddChild(&button);
  EXPECT_EQ(button.GetHandle(), nullptr);
  EXPECT_EQ(painter->attaches, 0);
  EXPECT_THAT(BoundsOf(button), ElementsAre(20, 10, 80, 40));
  const D2D1_RECT_F rect{0, 0, 10, 10};
  button.Paint(nullptr, &rect);
  EXPECT_EQ(painter->paints, 0);
  canvas.RemoveChild(&button);
}

TEST(Button, WithoutAParentAttachesToNothing) {
  const auto painter = std::make_shared<RecordingPainter>();
  WatchedButton button(painter);
  button.SetBounds(&buttonBounds);
  button.OnAttached();
  EXPECT_EQ(button.GetHandle(), nullptr);
  EXPECT_THAT(desk::ToolTips(), IsEmpty());
  EXPECT_THAT(BoundsOf(button), ElementsAre(20, 10, 80, 40));
}

TEST(Button, StateWithoutAWindowInvalidatesNobody) {
  const desk::Backdrop other({700, 500, 760, 560}, RGB(10, 20, 30));
  desk::PumpAll();
  ::ValidateRect(other.Get(), nullptr);
  WatchedButton button(std::make_shared<RecordingPainter>());
  button.IsPressed.Set(1);
  button.SetPainter(std::make_shared<RecordingPainter>());
  EXPECT_FALSE(::GetUpdateRect(other.Get(), nullptr, FALSE));
}

TEST_F(ButtonOnScreen, SetPainterAttachesTheNewOneAndAsksForARepaint) {
  const auto second = std::make_shared<RecordingPainter>();
  Validate();
  button.SetPainter(second);
  EXPECT_EQ(second->attaches, 1);
  EXPECT_EQ(second->GetButton(), &button);
  EXPECT_TRUE(IsInvalid());
  painter->paints = 0;
  desk::PumpAll();
  EXPECT_EQ(painter->paints, 0);
  EXPECT_EQ(painter.use_count(), 1);
  EXPECT_EQ(second->paints, 1);
}

TEST_F(ButtonOnScreen, ClickArrivesOneTurnAfterTheRelease) {
  desk::MoveCursor(desk::MiddleOf(button.handle));
  ASSERT_TRUE(desk::PumpUntil([&] { return StateOf(button) == State(0, 1); }));
  desk::PressLeftButton();
  ASSERT_TRUE(desk::PumpUntil([&] { return StateOf(button) == State(1, 1); }));
  EXPECT_THAT(button.senders, IsEmpty());
  ::SendMessageW(button.handle, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
  EXPECT_EQ(StateOf(button), State(0, 1));
  EXPECT_THAT(button.senders, IsEmpty());
  desk::ReleaseLeftButton();
  EXPECT_TRUE(desk::PumpUntil([&] { return !button.senders.empty(); }));
  desk::PumpAll();
  EXPECT_THAT(button.senders, ElementsAre(&button));
}

TEST_F(ButtonOnScreen, RealClickFiresOnceWithTheButtonAsSender) {
  desk::MoveCursor(desk::MiddleOf(button.handle));
  desk::PressLeftButton();
  ASSERT_TRUE(desk::PumpUntil([&] { return StateOf(button) == State(1, 1); }));
  desk::ReleaseLeftButton();
  EXPECT_TRUE(desk::PumpUntil([&] { return !button.senders.empty(); }));
  desk::PumpAll();
  EXPECT_THAT(button.senders, ElementsAre(&button));
  EXPECT_EQ(StateOf(button), State(0, 1));
}

TEST_F(ButtonOnScreen, PressDraggedOffAndReleasedGivesNoClick) {
  desk::MoveCursor(desk::MiddleOf(button.handle));
  desk::PressLeftButton();
  ASSERT_TRUE(desk::PumpUntil([&] { return StateOf(button) == State(1, 1); }));
  desk::MoveCursor({5, 5});
  desk::ReleaseLeftButton();
  EXPECT_TRUE(desk::PumpUntil([&] { return StateOf(button) == State(0, 0); }));
  desk::PumpAll();
  EXPECT_THAT(button.senders, IsEmpty());
}

TEST_F(ButtonOnScreen, CursorThatLeavesEndsMouseOver) {
  desk::MoveCursor(desk::MiddleOf(button.handle));
  ASSERT_TRUE(desk::PumpUntil([&] { return StateOf(button) == State(0, 1); }));
  desk::MoveCursor({5, 5});
  EXPECT_TRUE(desk::PumpUntil([&] { return StateOf(button) == State(0, 0); }));
  desk::MoveCursor(desk::MiddleOf(button.handle)); // the tracking is asked for again at every move
  ASSERT_TRUE(desk::PumpUntil([&] { return StateOf(button) == State(0, 1); }));
  desk::MoveCursor({5, 5});
  EXPECT_TRUE(desk::PumpUntil([&] { return StateOf(button) == State(0, 0); }));
}

TEST_F(ButtonOnScreen, LeavingWhilePressedClearsBothStates) {
  ::SendMessageW(button.handle, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
  ::SendMessageW(button.handle, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
  ASSERT_EQ(StateOf(button), State(1, 1));
  ::SendMessageW(button.handle, WM_MOUSELEAVE, 0, 0);
  EXPECT_EQ(StateOf(button), State(0, 0));
  ::ReleaseCapture();
  desk::PumpAll();
  EXPECT_THAT(button.senders, IsEmpty());
}

TEST_F(ButtonOnScreen, SpaceKeyPressesAndClicks) {
  ::SetFocus(button.handle);
  ASSERT_TRUE(desk::PumpUntil([&] { return button.HasFocus.Get() == 1; }));
  desk::PressKey(VK_SPACE);
  EXPECT_TRUE(desk::PumpUntil([&] { return StateOf(button) == State(1, 0); }));
  EXPECT_THAT(button.senders, IsEmpty());
  desk::ReleaseKey(VK_SPACE);
  EXPECT_TRUE(desk::PumpUntil([&] { return !button.senders.empty(); }));
  EXPECT_EQ(StateOf(button), State(0, 0));
  EXPECT_THAT(button.senders, ElementsAre(&button));
}

TEST_F(ButtonOnScreen, FocusIsKeptInHasFocus) {
  ::SetFocus(button.handle);
  EXPECT_EQ(button.HasFocus.Get(), 1);
  ::SetFocus(root.handle);
  EXPECT_EQ(button.HasFocus.Get(), 0);
}

TEST(Button, DirectlyUnderAWindowNeverClicks) {
  WatchedButton button(std::make_shared<RecordingPainter>());
  TestWindow root;
  root.onInitialize = [&] { root.SetChild(&button); };
  root.Create(nullptr);
  desk::PumpAll();
  ::SendMessageW(button.handle, BM_CLICK, 0, 0);
  ::SendMessageW(root.handle, WM_COMMAND, MAKEWPARAM(0, BN_CLICKED), reinterpret_cast<LPARAM>(button.handle));
  desk::PumpAll();
  EXPECT_THAT(button.senders, IsEmpty());
}

TEST_F(ButtonOnScreen, CollapsingHidesTheWindowAndShowingShowsItWhereItWas) {
  const auto place = WindowBoundsOf(button.handle);
  button.Visibility.Set(Visibility::Collapsed);
  EXPECT_FALSE(::IsWindowVisible(button.handle));
  button.Left.Set(30);
  EXPECT_FALSE(::IsWindowVisible(button.handle));
  button.Left.Set(20);
  EXPECT_THAT(WindowBoundsOf(button.handle), place);
  button.Visibility.Set(Visibility::Visible);
  EXPECT_TRUE(::IsWindowVisible(button.handle));
  EXPECT_THAT(WindowBoundsOf(button.handle), place);
  button.Visibility.Set(Visibility::Hidden);
  EXPECT_FALSE(::IsWindowVisible(button.handle));
}

TEST_F(ButtonOnScreen, GeometryMovesTheWindowAndRaisesItAboveItsSiblings) {
  WatchedButton sibling(std::make_shared<RecordingPainter>());
  root.canvas.AddChild(&sibling);
  sibling.Width.Set(10);
  ASSERT_EQ(::GetTopWindow(root.canvas.handle), sibling.handle);
  button.Left.Set(25);
  EXPECT_EQ(::GetTopWindow(root.canvas.handle), button.handle);
  sibling.Top.Set(3);
  EXPECT_EQ(::GetTopWindow(root.canvas.handle), sibling.handle);
  button.Width.Set(70);
  EXPECT_EQ(::GetTopWindow(root.canvas.handle), button.handle);
  button.Top.Set(15);
  button.Height.Set(30);
  EXPECT_THAT(WindowBoundsOf(button.handle), ElementsAre(25, 15, 70, 30));
  root.canvas.RemoveChild(&sibling);
}

TEST_F(ButtonOnScreen, WindowMovedFromOutsideMovesTheElement) {
  ::SetWindowPos(button.handle, nullptr, 31, 17, 66, 44, SWP_NOZORDER);
  EXPECT_THAT(BoundsOf(button), ElementsAre(31, 17, 66, 44));
}

TEST_F(ButtonOnScreen, StateChangesOfOneBurstCostOneRepaint) {
  desk::PumpAll();
  root.paints = 0;
  const LayerSpy layers;
  ::SendMessageW(button.handle, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
  ::SendMessageW(button.handle, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
  ::SendMessageW(button.handle, WM_KEYDOWN, 'A', 0);
  EXPECT_EQ(root.paints, 0);
  desk::PumpAll();
  EXPECT_EQ(root.paints, 1);
  EXPECT_EQ(layers.Calls().size(), 1U);
  ::ReleaseCapture();
}

TEST_F(ButtonOnScreen, OpacityRepaintsTheRootAtOnce) {
  root.paints = 0;
  button.Opacity.Set(100);
  EXPECT_EQ(root.paints, 1);
}

TEST_F(ButtonOnScreen, ExceptionOfAClickListenerReachesTheLoop) {
  button.onClick = [] { throw std::runtime_error("listener"); };
  ::PostMessageW(button.handle, WM_COMMAND, MAKEWPARAM(0, BN_CLICKED), reinterpret_cast<LPARAM>(button.handle));
  EXPECT_THROW(desk::PumpAll(), std::runtime_error);
  EXPECT_TRUE(::IsWindow(button.handle));
}

TEST(Button, PainterThatFailsToAttachFailsTheComposition) {
  OpenDockEventLog();
  const desk::EventLogSpy eventLog;
  const auto painter = std::make_shared<RecordingPainter>();
  painter->onAttach = [] { throw std::runtime_error("painter"); };
  Button button(painter);
  TestWindow root;
  bool added = false;
  root.onInitialize = [&] {
    root.canvas.AddChild(&button);
    added = true;
  };
  root.Create(nullptr);
  EXPECT_FALSE(added);
  EXPECT_EQ(root.handle, nullptr);
  EXPECT_THAT(eventLog.Reports(), ElementsAre(L"caught an unhandled exception in OnInitDialog"));
}

// The message table, row by row.

TEST_F(ButtonMessages, PaintClimbsToTheRootAndStaysUnhandled) {
  root.paints = 0;
  EXPECT_EQ(button.Ask(WM_PAINT), unhandled);
  EXPECT_EQ(root.paints, 1);
}

TEST(ButtonWithoutWindow, PaintIsHandledWithOne) {
  WatchedButton button(std::make_shared<RecordingPainter>());
  EXPECT_EQ(button.Ask(WM_PAINT), HandledWith(1));
}

TEST_F(ButtonMessages, SpaceKeySetsIsPressed) {
  EXPECT_EQ(button.Ask(WM_KEYDOWN, VK_SPACE), unhandled);
  EXPECT_EQ(StateOf(button), State(1, 0));
  EXPECT_EQ(button.Ask(WM_KEYUP, VK_SPACE), unhandled);
  EXPECT_EQ(StateOf(button), State(0, 0));
}

TEST_F(ButtonMessages, EveryOtherKeyOnlyInvalidates) {
  for (const UINT message : {WM_KEYDOWN, WM_KEYUP}) {
    button.IsPressed.Set(message == WM_KEYUP);
    const auto before = StateOf(button);
    Validate();
    EXPECT_EQ(button.Ask(message, 'A'), unhandled);
    EXPECT_EQ(StateOf(button), before);
    EXPECT_TRUE(IsInvalid());
  }
}

TEST_F(ButtonMessages, LeftButtonSetsIsPressed) {
  EXPECT_EQ(button.Ask(WM_LBUTTONDOWN), unhandled);
  EXPECT_EQ(StateOf(button), State(1, 0));
  EXPECT_EQ(button.Ask(WM_LBUTTONUP), unhandled);
  EXPECT_EQ(StateOf(button), State(0, 0));
}

TEST_F(ButtonMessages, EveryMouseMoveSetsIsMouseOverAndTracksTheLeave) {
  desk::MoveCursor(desk::MiddleOf(button.handle)); // the platform tracks only where the cursor is
  ASSERT_TRUE(desk::PumpUntil([&] { return StateOf(button) == State(0, 1); }));
  for (int move = 0; move < 2; ++move) {
    TRACKMOUSEEVENT cancel{sizeof(cancel), TME_LEAVE | TME_CANCEL, button.handle, 0};
    ::TrackMouseEvent(&cancel);
    EXPECT_EQ(button.Ask(WM_MOUSEMOVE), unhandled);
    EXPECT_EQ(StateOf(button), State(0, 1));
    TRACKMOUSEEVENT tracking{sizeof(tracking), TME_QUERY, nullptr, 0};
    ::TrackMouseEvent(&tracking);
    EXPECT_EQ(tracking.hwndTrack, button.handle);
    EXPECT_EQ(tracking.dwFlags, static_cast<DWORD>(TME_LEAVE));
  }
}

TEST_F(ButtonMessages, MouseLeaveClearsBothStates) {
  button.IsPressed.Set(1);
  button.IsMouseOver.Set(1);
  std::vector<std::pair<int, int>> seen;
  button.onState = [&](PropertyChangeEventArgs<int> *) { seen.push_back(StateOf(button)); };
  EXPECT_EQ(button.Ask(WM_MOUSELEAVE), unhandled);
  EXPECT_THAT(seen, ElementsAre(State(1, 0), State(0, 0)));
}

TEST_F(ButtonMessages, FocusMessagesSetHasFocus) {
  EXPECT_EQ(button.Ask(WM_SETFOCUS), unhandled);
  EXPECT_EQ(button.HasFocus.Get(), 1);
  EXPECT_EQ(button.Ask(WM_KILLFOCUS), unhandled);
  EXPECT_EQ(button.HasFocus.Get(), 0);
}

TEST_F(ButtonMessages, StateMessagesInvalidateTheWindow) {
  for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_MOUSEMOVE, WM_MOUSELEAVE, WM_SETFOCUS, WM_KILLFOCUS}) {
    button.Ask(message);
    Validate();
    ASSERT_FALSE(IsInvalid());
    EXPECT_EQ(button.Ask(message), unhandled) << message;
    EXPECT_TRUE(IsInvalid()) << message;
  }
}

TEST_F(ButtonMessages, StateMessageWhoseListenerDestroyedTheWindowIsHandledWithOne) {
  button.onState = [&](PropertyChangeEventArgs<int> *) { ::DestroyWindow(button.handle); };
  EXPECT_EQ(button.Ask(WM_LBUTTONDOWN), HandledWith(1));
  for (const UINT message :
       {WM_KEYDOWN, WM_KEYUP, WM_LBUTTONUP, WM_MOUSEMOVE, WM_MOUSELEAVE, WM_SETFOCUS, WM_KILLFOCUS})
    EXPECT_EQ(button.Ask(message), HandledWith(1)) << message;
}

TEST_F(ButtonMessages, RepeatedStateMessagesFireNothing) {
  button.Ask(WM_MOUSEMOVE);
  button.Ask(WM_LBUTTONDOWN);
  const int changes = button.stateChanges;
  EXPECT_EQ(changes, 2);
  button.Ask(WM_MOUSEMOVE);
  button.Ask(WM_LBUTTONDOWN);
  EXPECT_EQ(button.stateChanges, changes);
}

TEST_F(ButtonMessages, MoveTakesItsCoordinatesAsUnsigned) {
  WatchedButton detached(std::make_shared<RecordingPainter>());
  EXPECT_EQ(detached.Ask(WM_MOVE, 0, MAKELPARAM(7, 9)), unhandled);
  EXPECT_THAT(BoundsOf(detached), ElementsAre(7, 9, 0, 0));
  EXPECT_EQ(detached.Ask(WM_MOVE, 0, MAKELPARAM(-5, -6)), unhandled);
  EXPECT_THAT(BoundsOf(detached), ElementsAre(65531, 65530, 0, 0));
}

TEST_F(ButtonMessages, SizeTakesItsMeasuresAsUnsigned) {
  WatchedButton detached(std::make_shared<RecordingPainter>());
  EXPECT_EQ(detached.Ask(WM_SIZE, 0, MAKELPARAM(7, 40000)), unhandled);
  EXPECT_THAT(BoundsOf(detached), ElementsAre(0, 0, 7, 40000));
}

TEST_F(ButtonMessages, CreateAttachesThePainterAndIsHandled) {
  EXPECT_EQ(button.Ask(WM_CREATE), HandledWith(0));
  EXPECT_EQ(painter->attaches, 2);
}

TEST_F(ButtonMessages, DestroyIsHandledWithOne) {
  EXPECT_EQ(button.Ask(WM_DESTROY), HandledWith(1));
  EXPECT_EQ(button.destructions, 1);
}

TEST_F(ButtonMessages, CommandOfItsOwnFiresClick) {
  EXPECT_EQ(button.Ask(WM_COMMAND, MAKEWPARAM(12, BN_CLICKED), reinterpret_cast<LPARAM>(button.handle)),
            HandledWith(0));
  EXPECT_THAT(button.senders, ElementsAre(&button));
}

TEST_F(ButtonMessages, CommandOfAnotherWindowIsSwallowed) {
  EXPECT_EQ(button.Ask(WM_COMMAND, MAKEWPARAM(0, BN_CLICKED), reinterpret_cast<LPARAM>(root.handle)), HandledWith(0));
  EXPECT_EQ(button.Ask(WM_COMMAND, MAKEWPARAM(0, BN_CLICKED), 0), HandledWith(0));
  EXPECT_EQ(button.Ask(WM_COMMAND, MAKEWPARAM(0, BN_SETFOCUS), reinterpret_cast<LPARAM>(button.handle)),
            HandledWith(0));
  EXPECT_THAT(button.senders, IsEmpty());
}

TEST_F(ButtonMessages, OtherMessagesAndOtherMapsStayUnhandled) {
  EXPECT_EQ(button.Ask(WM_SETTEXT), unhandled);
  LRESULT result = WatchedButton::unset;
  EXPECT_FALSE(button.ProcessWindowMessage(button.handle, WM_DESTROY, 0, 0, result, 1));
  EXPECT_EQ(result, WatchedButton::unset);
}

// The tool tip.

namespace {

struct Tool {
  TOOLINFOW info{};
  wchar_t text[80] = {};
};

/// The one tool of the one tool tip window.
Tool ReadTool(HWND toolTip) {
  Tool tool;
  tool.info.cbSize = sizeof(tool.info);
  tool.info.lpszText = tool.text;
  ::SendMessageW(toolTip, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&tool.info));
  return tool;
}

std::vector<std::wstring> windowEvents;

/// Notes the making and destroying of tool tip windows.
LRESULT CALLBACK NoteToolTips(int code, WPARAM window, LPARAM create) {
  wchar_t name[64] = {};
  ::GetClassNameW(reinterpret_cast<HWND>(window), name, 64);
  if (code == HCBT_CREATEWND && std::wstring(name) == TOOLTIPS_CLASSW)
    windowEvents.emplace_back(L"made");
  if (code == HCBT_DESTROYWND && std::wstring(name) == TOOLTIPS_CLASSW)
    windowEvents.emplace_back(L"destroyed");
  return ::CallNextHookEx(nullptr, code, window, create);
}

} // namespace

TEST_F(ButtonToolTip, IsAPopupOfTheRootWithTheNameAsItsText) {
  button.Name.Set(L"Open the calculator");
  const auto toolTips = desk::ToolTips();
  ASSERT_EQ(toolTips.size(), 1U);
  const DWORD style = static_cast<DWORD>(::GetWindowLongW(toolTips[0], GWL_STYLE));
  EXPECT_EQ(style & 0x8000FFFF, 0x80000003);
  EXPECT_EQ(::GetWindowLongW(toolTips[0], GWL_EXSTYLE) & 40, 40);
  EXPECT_EQ(::GetWindow(toolTips[0], GW_OWNER), root.handle);
  const Tool tool = ReadTool(toolTips[0]);
  EXPECT_EQ(tool.info.uFlags, 275U);
  EXPECT_EQ(tool.info.hwnd, root.handle);
  EXPECT_EQ(tool.info.uId, reinterpret_cast<UINT_PTR>(button.handle));
  EXPECT_EQ(tool.info.hinst, ::GetModuleHandleW(nullptr));
  EXPECT_STREQ(tool.text, L"Open the calculator");
  EXPECT_THAT((std::vector<long>{tool.info.rect.left, tool.info.rect.top, tool.info.rect.right, tool.info.rect.bottom}),
              ElementsAre(20, 10, 100, 50));
}

TEST_F(ButtonToolTip, IsBuiltWhenTheButtonIsAttached) { EXPECT_EQ(desk::ToolTips().size(), 1U); }

TEST_F(ButtonToolTip, NewNameDestroysTheOldWindowBeforeItMakesANewOne) {
  button.Name.Set(L"first");
  const HWND first = desk::ToolTips().at(0);
  windowEvents.clear();
  const HHOOK hook = ::SetWindowsHookExW(WH_CBT, NoteToolTips, nullptr, ::GetCurrentThreadId());
  button.Name.Set(L"second");
  ::UnhookWindowsHookEx(hook);
  EXPECT_THAT(windowEvents, ElementsAre(L"destroyed", L"made"));
  EXPECT_FALSE(::IsWindow(first));
  ASSERT_EQ(desk::ToolTips().size(), 1U);
  EXPECT_STREQ(ReadTool(desk::ToolTips()[0]).text, L"second");
}

TEST_F(ButtonToolTip, ShowsWhenTheCursorRests) {
  button.Name.Set(L"resting");
  desk::MoveCursor(desk::MiddleOf(button.handle));
  EXPECT_TRUE(desk::PumpUntil([&] { return ::IsWindowVisible(desk::ToolTips().at(0)) != FALSE; }));
}

TEST(Button, TakesItsToolTipAlongWhenItGoes) {
  {
    Button button(std::make_shared<RecordingPainter>());
    button.Name.Set(L"never attached");
    EXPECT_EQ(desk::ToolTips().size(), 1U);
  }
  EXPECT_THAT(desk::ToolTips(), IsEmpty());
}

} // namespace lumenor
