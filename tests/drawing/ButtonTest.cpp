#include "toolkit/drawing/Button.h"

#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/ButtonOnScreen.h"
#include "system/EventLog.h"

namespace lumenor {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

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

TEST_F(ButtonOnScreen, OutlivesTheFiringOfTheClickThatLetsItGo) {
  auto dropped = std::make_shared<WatchedButton>(std::make_shared<RecordingPainter>());
  const std::weak_ptr<WatchedButton> watch = dropped;
  root.canvas.AddChild(dropped.get());
  bool survived = false;
  dropped->onClick = [&] {
    root.canvas.RemoveChild(dropped.get());
    dropped.reset();
    survived = !watch.expired();
  };
  const HWND window = dropped->handle;
  ::SendMessageW(window, WM_COMMAND, 0, reinterpret_cast<LPARAM>(window));
  EXPECT_TRUE(survived);
  EXPECT_TRUE(watch.expired());
  EXPECT_FALSE(::IsWindow(window));
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

} // namespace lumenor
