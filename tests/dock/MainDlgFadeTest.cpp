// The bar dims when the cursor stays away and comes back with it. The steps of the fade are sent by hand, so that each
// test says how long the cursor was away.

#include <gtest/gtest.h>

#include "content/Documents.h"
#include "dock/BarFixture.h"
#include "dock/DragState.h"
#include "dock/FlyoutWindow.h"
#include "support/Desk.h"

namespace lumenor {

namespace {

constexpr POINT away{600, 700};
constexpr POINT overTheBar{900, 20};

class Fade : public BarFixture {
protected:
  void StartWithoutTimer() {
    desk::MoveCursor(away);
    Start();
    ::KillTimer(dock->handle, FadeTimer);
    desk::PumpAll();
  }

  void Step(int count = 1) const {
    for (int i = 0; i < count; ++i)
      ::SendMessageW(dock->handle, WM_TIMER, FadeTimer, 0);
  }

  bool Reaches(int opacity) const {
    return desk::PumpUntil([&] { return dock->Opacity.Get() == opacity; });
  }

  /// Dims the bar of a cursor that has just left.
  void Dim() const {
    Step(22);
    ASSERT_TRUE(Reaches(190));
  }

  std::vector<lumenor::Visibility> SystemButtons() const {
    const BarTree tree(*dock);
    return {tree.resetButton.Visibility.Get(), tree.dockPositionButton.Visibility.Get(),
            tree.closeButton.Visibility.Get()};
  }

  ~Fade() override { dragOutside = false; }
};

constexpr lumenor::Visibility shown = lumenor::Visibility::Visible;
constexpr lumenor::Visibility hidden = lumenor::Visibility::Hidden;
using Visibilities = std::vector<lumenor::Visibility>;

/// True when nothing moves the opacity for long enough that a fade would have.
bool StaysAt(const CMainDlg &dock, int opacity) {
  const ULONGLONG end = ::GetTickCount64() + 400;
  desk::PumpUntil([&] { return dock.Opacity.Get() != opacity || ::GetTickCount64() > end; });
  return dock.Opacity.Get() == opacity;
}

TEST_F(Fade, BeginsWithTheTickAfterTwentyOneWithoutTheCursor) {
  StartWithoutTimer();
  Step(21);
  EXPECT_TRUE(StaysAt(*dock, 255));
  EXPECT_EQ((Visibilities{shown, shown, shown}), SystemButtons());
  Step();
  EXPECT_TRUE(Reaches(190));
  EXPECT_EQ((Visibilities{hidden, hidden, shown}), SystemButtons());
}

TEST_F(Fade, EndsExactlyAtItsTarget) {
  StartWithoutTimer();
  Dim();
  EXPECT_TRUE(StaysAt(*dock, 190));
}

TEST_F(Fade, IsUndoneByTheFirstTickWithTheCursor) {
  StartWithoutTimer();
  Dim();
  desk::MoveCursor(overTheBar);
  Step();
  EXPECT_TRUE(Reaches(255));
  EXPECT_TRUE(StaysAt(*dock, 255));
  EXPECT_EQ((Visibilities{shown, shown, shown}), SystemButtons());
}

TEST_F(Fade, ShowsOnTheScreen) {
  const desk::Backdrop behind({180, 0, 1100, 100}, RGB(255, 255, 255));
  StartWithoutTimer();
  constexpr POINT plate{690, 70};
  const std::uint32_t before = desk::PixelAt(plate);
  Dim();
  EXPECT_TRUE(desk::PumpUntil([&] { return desk::PixelAt(plate) != before; }));
}

TEST_F(Fade, TakesTwentyOneTicksAnewOnceTheBarCameBack) {
  StartWithoutTimer();
  Dim();
  desk::MoveCursor(overTheBar);
  Step();
  ASSERT_TRUE(Reaches(255));
  desk::MoveCursor(away);
  Step(21);
  EXPECT_TRUE(StaysAt(*dock, 255));
  Step();
  EXPECT_TRUE(Reaches(190));
}

TEST_F(Fade, AddsUpShortAbsences) {
  StartWithoutTimer();
  Step(21);
  desk::MoveCursor(overTheBar);
  Step(50);
  EXPECT_TRUE(StaysAt(*dock, 255));
  desk::MoveCursor(away);
  Step();
  EXPECT_TRUE(Reaches(190));
}

TEST_F(Fade, DoesNotTurnBackHalfWay) {
  StartWithoutTimer();
  Step(5);
  dock->Opacity.Set(220);
  desk::MoveCursor(overTheBar);
  Step();
  EXPECT_TRUE(StaysAt(*dock, 220));
  dock->Opacity.Set(190);
  Step();
  EXPECT_TRUE(Reaches(255));
}

TEST_F(Fade, TakesTheEdgesOfTheBarAsTheRectangleHasThem) {
  StartWithoutTimer();
  Dim();
  desk::MoveCursor({190 + 900, 20});
  Step();
  EXPECT_TRUE(StaysAt(*dock, 190)) << "the right end is outside";
  desk::MoveCursor({190, 1});
  Step();
  EXPECT_TRUE(Reaches(255)) << "the corner is inside";
}

TEST_F(Fade, WaitsWhileAFlyoutIsOpen) {
  Element element = PictureElement(L"Folder");
  element.ActionType = L"xml";
  element.ActionParams = L"Flyout.One";
  SaveDocument(PictureElements(2), L"Flyout.One");
  SaveDocument({element}, userDocument);
  StartWithoutTimer();
  FlyoutWindow &flyout = *dock->GetUserButtons().at(0)->GetFlyout();
  flyout.ToggleVisibility();
  Step(100);
  EXPECT_TRUE(StaysAt(*dock, 255));
  flyout.ToggleVisibility();
  Step(21);
  EXPECT_TRUE(StaysAt(*dock, 255)) << "the ticks of the open flyout don't count";
  Step();
  EXPECT_TRUE(Reaches(190));
}

TEST_F(Fade, WaitsWhileADragIsOutsideTheButtons) {
  StartWithoutTimer();
  dragOutside = true;
  Step(100);
  EXPECT_TRUE(StaysAt(*dock, 255));
}

TEST_F(Fade, RunsByItsTimer) {
  desk::MoveCursor(away);
  Start();
  const ULONGLONG start = ::GetTickCount64();
  ASSERT_TRUE(desk::PumpUntil([&] { return dock->Opacity.Get() == 190; }, std::chrono::seconds(20)));
  EXPECT_GE(::GetTickCount64() - start, 4200U);
}

} // namespace

} // namespace lumenor
