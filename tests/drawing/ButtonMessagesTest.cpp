// What a button answers to each message, row by row.

#include "toolkit/drawing/Button.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/ButtonOnScreen.h"

namespace lumenor {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using ButtonMessages = ButtonOnScreen;

} // namespace

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
  for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_MOUSELEAVE, WM_SETFOCUS, WM_KILLFOCUS}) {
    button.Ask(message);
    Validate();
    ASSERT_FALSE(IsInvalid());
    EXPECT_EQ(button.Ask(message), unhandled) << message;
    EXPECT_TRUE(IsInvalid()) << message;
  }
}

TEST_F(ButtonMessages, OnlyTheFirstMouseMoveInvalidatesTheWindow) {
  button.Ask(WM_MOUSELEAVE);
  Validate();
  button.Ask(WM_MOUSEMOVE);
  EXPECT_TRUE(IsInvalid());
  Validate();
  EXPECT_EQ(button.Ask(WM_MOUSEMOVE), unhandled);
  EXPECT_FALSE(IsInvalid());
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

} // namespace lumenor
