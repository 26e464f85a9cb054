#include "toolkit/drawing/CheckedButton.h"

#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/TestWindow.h"
#include "support/Desk.h"

namespace lumenor {

namespace {

using ::testing::ElementsAre;

class CheckedButtonOnScreen : public ::testing::Test {
protected:
  CheckedButtonOnScreen() {
    const RECT bounds{20, 10, 100, 50};
    button.SetBounds(&bounds);
    root.onInitialize = [this] { root.canvas.AddChild(&button); };
    root.Create(nullptr);
    button.Checked.changed.AddListener(checkedListener.get());
    button.Click.AddListener(lateListener.get());
    desk::PumpAll();
  }

  void Click() {
    ::PostMessageW(button.handle, WM_COMMAND, MAKEWPARAM(0, BN_CLICKED), reinterpret_cast<LPARAM>(button.handle));
    desk::PumpAll();
  }

  void OnChecked(PropertyChangeEventArgs<int> *args) { changes.emplace_back(args->oldValue, args->newValue); }
  void OnLateClick(ButtonEventArgs *) { readLate.push_back(button.Checked.Get()); }

  std::shared_ptr<RecordingPainter> painter = std::make_shared<RecordingPainter>();
  CheckedButton button{painter};
  TestWindow root;
  std::vector<std::pair<int, int>> changes;
  std::vector<int> readLate;
  std::shared_ptr<EventListener<PropertyChangeEventArgs<int>>> checkedListener =
      MakeListener(this, &CheckedButtonOnScreen::OnChecked);
  std::shared_ptr<EventListener<ButtonEventArgs>> lateListener =
      MakeListener(this, &CheckedButtonOnScreen::OnLateClick);
};

} // namespace

TEST_F(CheckedButtonOnScreen, TwoClicksReturnToTheStartAndFireEachTime) {
  EXPECT_EQ(button.Checked.Get(), 0);
  Click();
  EXPECT_EQ(button.Checked.Get(), 1);
  Click();
  EXPECT_EQ(button.Checked.Get(), 0);
  EXPECT_THAT(changes, ElementsAre(std::pair(0, 1), std::pair(1, 0)));
}

TEST_F(CheckedButtonOnScreen, ListenerAddedLaterReadsTheNewValue) {
  Click();
  Click();
  EXPECT_THAT(readLate, ElementsAre(1, 0));
}

TEST_F(CheckedButtonOnScreen, KeepsTheOwnerDrawStyleAndAttachesItsPainter) {
  EXPECT_EQ(::GetWindowLongW(button.handle, GWL_STYLE), 0x5000000B);
  EXPECT_EQ(painter->attaches, 1);
  EXPECT_EQ(painter->GetButton(), &button);
}

TEST_F(CheckedButtonOnScreen, CreationAsksForTheCheckBoxBit) {
  ::SetWindowLongW(button.handle, GWL_STYLE, 0x50000000);
  LRESULT result = -77;
  EXPECT_TRUE(button.ProcessWindowMessage(button.handle, WM_CREATE, 0, 0, result));
  EXPECT_EQ(result, 0);
  EXPECT_EQ(::GetWindowLongW(button.handle, GWL_STYLE), 0x50000002);
}

TEST_F(CheckedButtonOnScreen, RealClickFlipsIt) {
  desk::MoveCursor(desk::MiddleOf(button.handle));
  desk::PressLeftButton();
  ASSERT_TRUE(desk::PumpUntil([&] { return button.IsPressed.Get() == 1; }));
  desk::ReleaseLeftButton();
  EXPECT_TRUE(desk::PumpUntil([&] { return button.Checked.Get() == 1; }));
  desk::MoveCursor({5, 5});
}

TEST_F(CheckedButtonOnScreen, PassesOnlyTheMapWithIdZeroOn) {
  LRESULT result = -77;
  EXPECT_FALSE(button.ProcessWindowMessage(button.handle, WM_DESTROY, 0, 0, result, 1));
  EXPECT_EQ(result, -77);
  EXPECT_FALSE(button.ProcessWindowMessage(button.handle, WM_LBUTTONDOWN, 0, 0, result, 2));
  EXPECT_EQ(button.IsPressed.Get(), 0);
  EXPECT_FALSE(button.ProcessWindowMessage(button.handle, WM_LBUTTONDOWN, 0, 0, result, 0));
  EXPECT_EQ(button.IsPressed.Get(), 1);
}

} // namespace lumenor
