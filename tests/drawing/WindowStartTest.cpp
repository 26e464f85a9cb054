// What a window does before its first picture, and what it leaves until after it.

#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/ButtonOnScreen.h"
#include "drawing/TestWindow.h"
#include "support/Desk.h"
#include "system/EventLog.h"
#include "toolkit/StackPanel.h"
#include "toolkit/WindowedElement.h"

namespace lumenor {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WindowStart : public ::testing::Test {
protected:
  WindowStart() { OpenDockEventLog(); }

  /// Postpones a step that notes its name and whether a picture was on the screen by then.
  void Postpone(const std::string &name) {
    window.canvas.RunOnceShown(
        [this, name] { steps.push_back(name + (LayerSpy::Calls().empty() ? " before" : " after")); });
  }

  const LayerSpy layers;
  std::vector<std::string> steps;
  TestWindow window;
};

/// A button that notes each move of its window.
class MovedButton : public Button {
public:
  MovedButton() : Button(std::make_shared<RecordingPainter>()) {}

  BOOL ProcessWindowMessage(HWND target, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId) override {
    if (message == WM_WINDOWPOSCHANGING)
      ++moves;
    return Button::ProcessWindowMessage(target, message, wParam, lParam, result, mapId);
  }

  int moves = 0;
};

std::vector<HWND> WindowsFromTheTop(HWND parent) {
  std::vector<HWND> windows;
  for (HWND child = ::GetTopWindow(parent); child != nullptr; child = ::GetWindow(child, GW_HWNDNEXT))
    windows.push_back(child);
  return windows;
}

} // namespace

TEST_F(WindowStart, WhatElementsPostponeRunsInOrderAfterTheFirstPicture) {
  window.onInitialize = [&] {
    Postpone("first");
    Postpone("second");
  };
  EXPECT_NE(window.Create(nullptr), nullptr);
  EXPECT_THAT(steps, ElementsAre("first after", "second after"));
}

TEST_F(WindowStart, NothingIsPostponedOnceTheWindowStands) {
  window.Create(nullptr);
  Postpone("later");
  EXPECT_THAT(steps, ElementsAre("later after"));
}

TEST_F(WindowStart, NothingIsPostponedByAWindowThatComesUpHidden) {
  window.Visibility.Set(Visibility::Hidden);
  bool ranAtOnce = false;
  window.onInitialize = [&] {
    Postpone("first");
    ranAtOnce = !steps.empty();
  };
  window.Create(nullptr);
  EXPECT_TRUE(ranAtOnce);
  EXPECT_THAT(steps, ElementsAre("first before"));
}

TEST_F(WindowStart, NothingIsPostponedWithoutARoot) {
  Canvas loose;
  bool ran = false;
  loose.RunOnceShown([&] { ran = true; });
  EXPECT_TRUE(ran);
}

TEST_F(WindowStart, FailureOfWhatIsPostponedIsOneOfTheInitialisation) {
  const desk::EventLogSpy log;
  window.onInitialize = [&] {
    window.canvas.RunOnceShown([] { throw std::runtime_error("postponed"); });
    Postpone("never");
  };
  EXPECT_EQ(window.Create(nullptr), nullptr);
  EXPECT_EQ(window.handle, nullptr);
  EXPECT_THAT(steps, IsEmpty());
  EXPECT_THAT(desk::EventLogSpy::Reports(), ElementsAre(L"caught an unhandled exception in OnInitDialog"));
}

TEST_F(WindowStart, FailedInitialisationDropsWhatIsPostponed) {
  const desk::EventLogSpy log;
  window.onInitialize = [&] {
    Postpone("never");
    throw std::runtime_error("composition");
  };
  EXPECT_EQ(window.Create(nullptr), nullptr);
  EXPECT_THAT(steps, IsEmpty());
  EXPECT_EQ(desk::EventLogSpy::Reports().size(), 1U);
}

TEST_F(WindowStart, HiddenWindowThatIsMadeAfterThePictureLeavesTheFocusToTheWindow) {
  TestWindow hidden;
  hidden.Visibility.Set(Visibility::Hidden);
  Button button(std::make_shared<RecordingPainter>());
  hidden.onInitialize = [&] { hidden.canvas.AddChild(&button); };
  window.onInitialize = [&] {
    window.canvas.RunOnceShown([&] {
      hidden.Create(window.handle);
      ::SetFocus(button.handle);
    });
  };
  window.Create(nullptr);
  EXPECT_EQ(::GetActiveWindow(), window.handle);
  EXPECT_TRUE(::GetFocus() == window.handle || ::IsChild(window.handle, ::GetFocus()));
}

TEST_F(WindowStart, ToolTipsAreMadeAfterTheFirstPicture) {
  Button button(std::make_shared<RecordingPainter>());
  button.Name.Set(L"tip");
  std::size_t tipsAtThePicture = 99;
  window.onInitialize = [&] { window.canvas.AddChild(&button); };
  window.onPaint = [&](ID2D1RenderTarget *) { tipsAtThePicture = desk::ToolTips().size(); };
  window.Create(nullptr);
  EXPECT_EQ(tipsAtThePicture, 0U);
  EXPECT_EQ(desk::ToolTips().size(), 1U);
}

TEST_F(WindowStart, NameThatChangesMeanwhileMakesOneToolTip) {
  Button button(std::make_shared<RecordingPainter>());
  window.onInitialize = [&] {
    window.canvas.AddChild(&button);
    button.Name.Set(L"first");
    button.Name.Set(L"second");
  };
  window.Create(nullptr);
  EXPECT_EQ(desk::ToolTips().size(), 1U);
}

TEST_F(WindowStart, ButtonThatGoesMeanwhileGetsNoToolTip) {
  window.onInitialize = [&] {
    Button button(std::make_shared<RecordingPainter>());
    window.canvas.AddChild(&button);
    window.canvas.RemoveChild(&button);
  };
  window.Create(nullptr);
  EXPECT_THAT(desk::ToolTips(), IsEmpty());
}

TEST_F(WindowStart, EachWindowIsMovedOnceWhileTheTreeIsComposed) {
  StackPanel panel;
  MovedButton first, second;
  window.onInitialize = [&] {
    window.canvas.AddChild(&panel);
    const RECT place = {10, 5, 110, 45};
    panel.SetBounds(&place);
    for (MovedButton *button : {&first, &second}) {
      button->DesiredWidth.Set(30);
      panel.AddChild(button);
    }
    first.DesiredWidth.Set(50);
  };
  window.Create(nullptr);
  EXPECT_EQ(first.moves, 1);
  EXPECT_EQ(second.moves, 1);
  EXPECT_THAT(WindowBoundsOf(first.handle), ElementsAre(0, 0, 50, 40));
  EXPECT_THAT(WindowBoundsOf(second.handle), ElementsAre(50, 0, 30, 40));
  EXPECT_THAT(WindowBoundsOf(panel.handle), ElementsAre(10, 5, 100, 40));
  panel.RemoveChild(&first);
  panel.RemoveChild(&second);
}

TEST_F(WindowStart, WindowsLieInTheOrderOfTheirLastMoves) {
  MovedButton first, second, third;
  window.onInitialize = [&] {
    for (MovedButton *button : {&first, &second, &third})
      window.canvas.AddChild(button);
    second.Left.Set(7);
    first.Left.Set(9);
    second.Top.Set(3);
  };
  window.Create(nullptr);
  EXPECT_THAT(WindowsFromTheTop(window.canvas.handle), ElementsAre(second.handle, first.handle, third.handle));
}

TEST_F(WindowStart, RectangleIsAppliedInOneMove) {
  MovedButton button;
  window.onInitialize = [&] { window.canvas.AddChild(&button); };
  window.Create(nullptr);
  button.moves = 0;
  const RECT place = {3, 4, 33, 44};
  button.SetBounds(&place);
  EXPECT_EQ(button.moves, 1);
  EXPECT_THAT(WindowBoundsOf(button.handle), ElementsAre(3, 4, 30, 40));
}

TEST_F(WindowStart, ElementThatGoesDuringAHoldIsNotMoved) {
  const WindowMoveHold hold;
  window.Create(nullptr);
  {
    MovedButton button;
    window.canvas.AddChild(&button);
    button.Left.Set(5);
    window.canvas.RemoveChild(&button);
  }
  window.canvas.Left.Set(1);
  EXPECT_TRUE(::IsWindow(window.handle));
}

TEST_F(WindowStart, OneRepaintPaintsWhatAllChildrenWaitFor) {
  Button first(std::make_shared<RecordingPainter>()), second(std::make_shared<RecordingPainter>());
  window.onInitialize = [&] {
    for (Button *button : {&first, &second}) {
      window.canvas.AddChild(button);
      button->Width.Set(20);
      button->Height.Set(20);
    }
  };
  window.Create(nullptr);
  desk::PumpAll();
  window.paints = 0;
  first.IsMouseOver.Set(1);
  second.IsMouseOver.Set(1);
  desk::PumpAll();
  EXPECT_EQ(window.paints, 1);
}

TEST_F(WindowStart, ChangeDuringARepaintIsPaintedByTheNext) {
  Button button(std::make_shared<RecordingPainter>());
  window.onInitialize = [&] {
    window.canvas.AddChild(&button);
    button.Width.Set(20);
    button.Height.Set(20);
  };
  window.Create(nullptr);
  desk::PumpAll();
  window.paints = 0;
  window.onPaint = [&](ID2D1RenderTarget *) { button.IsPressed.Set(1); };
  window.Render();
  EXPECT_EQ(window.paints, 1);
  desk::PumpAll();
  EXPECT_EQ(window.paints, 2);
}

} // namespace lumenor
