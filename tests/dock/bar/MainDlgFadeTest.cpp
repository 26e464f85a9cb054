// The bar dims when the cursor stays away and comes back with it. The steps of the fade are sent by hand, so that each
// test says how long the cursor was away.

#include <algorithm>
#include <cstdlib>

#include <gtest/gtest.h>

#include "content/Documents.h"
#include "dock/bar/BarFixture.h"
#include "dock/dragdrop/DragState.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "support/Desk.h"
#include "support/ImportSlot.h"
#include "toolkit/Animation.h"

extern "C" decltype(&::GetCursorPos) __imp_GetCursorPos;

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

BOOL WINAPI HaveNoCursor(POINT *) {
  ::SetLastError(ERROR_ACCESS_DENIED);
  return FALSE;
}

// As in a locked session.
TEST_F(Fade, WaitsWhileAnotherDesktopHasTheCursor) {
  StartWithoutTimer();
  {
    const tests::ImportSlot slot(&__imp_GetCursorPos, &HaveNoCursor);
    Step(40);
    EXPECT_TRUE(StaysAt(*dock, 255));
  }
  Dim();
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
  std::uint32_t before = 0;
  ASSERT_TRUE(desk::PumpUntil([&] { return (before = desk::PixelAt(plate)) != 0xFFFFFF; })) << "the bar is there";
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

/// A row that is wider than its room, whose slides take the ticks of a fade and the other way round: the platform's
/// timer has one handler.
class FadeBesideASlide : public Fade {
protected:
  static constexpr long step = 77;

  void StartWithALongRow() {
    SaveDocument(PictureElements(20), userDocument);
    StartWithoutTimer();
  }

  long RowLeft() const { return BarTree(*dock).userButtons.Left.Get(); }

  /// A click on the arrow that shows; with the row at its begin that is the right one.
  void ClickArrow() const {
    HWND arrow = nullptr;
    while ((arrow = ::FindWindowExW(BarTree(*dock).scrollViewer.GetHandle(), arrow, nullptr, L"scroll")) != nullptr)
      if (::IsWindowVisible(arrow))
        break;
    ASSERT_NE(nullptr, arrow);
    ::SendMessageW(arrow, WM_COMMAND, MAKEWPARAM(0, BN_CLICKED), reinterpret_cast<LPARAM>(arrow));
  }

  void RunTimer() const { ::SetTimer(dock->handle, FadeTimer, fadeStepMs, nullptr); }

  /// Leaves a fade to `goal` between its ends: a slide has taken its ticks at `opacity`.
  void InterruptAt(int opacity) {
    ClickArrow();
    dock->Opacity.Set(static_cast<unsigned char>(opacity));
    dock->Opacity.changed.AddListener(&listener);
  }

  void OnOpacity(PropertyChangeEventArgs<unsigned char> *args) { opacities.push_back(args->newValue); }

  std::vector<int> opacities; // from the interruption on
  TypedEventListener<FadeBesideASlide, PropertyChangeEventArgs<unsigned char>> listener{this,
                                                                                        &FadeBesideASlide::OnOpacity};
};

TEST_F(FadeBesideASlide, GoesOnFromWhereItWasInterrupted) {
  StartWithALongRow();
  Step(22);
  InterruptAt(223);
  RunTimer();
  ASSERT_TRUE(Reaches(190)) << static_cast<int>(dock->Opacity.Get());
  EXPECT_TRUE(std::is_sorted(opacities.rbegin(), opacities.rend())) << "no jump back";
  EXPECT_LT(opacities.front(), 223);
  EXPECT_EQ(-step, RowLeft()) << "the slide came to its end first";
  EXPECT_EQ((Visibilities{hidden, hidden, shown}), SystemButtons());
}

TEST_F(FadeBesideASlide, ComesBackUnderTheCursorWhenItWasInterrupted) {
  StartWithALongRow();
  Step(22);
  InterruptAt(223);
  desk::MoveCursor(overTheBar);
  RunTimer();
  ASSERT_TRUE(Reaches(255)) << static_cast<int>(dock->Opacity.Get());
  EXPECT_TRUE(std::is_sorted(opacities.begin(), opacities.end())) << "not by way of being dim";
  EXPECT_TRUE(StaysAt(*dock, 255));
  EXPECT_EQ(-step, RowLeft());
  EXPECT_EQ((Visibilities{shown, shown, shown}), SystemButtons());
}

TEST_F(FadeBesideASlide, GivesTheButtonsBackThoughNoneOfItsTicksCame) {
  StartWithALongRow();
  Step(22);
  ClickArrow();
  desk::MoveCursor(overTheBar);
  RunTimer();
  EXPECT_TRUE(desk::PumpUntil([&] { return SystemButtons() == Visibilities{shown, shown, shown}; }));
  EXPECT_TRUE(StaysAt(*dock, 255));
}

TEST_F(FadeBesideASlide, ComesBackWholeWhenItsReturnWasInterrupted) {
  StartWithALongRow();
  Dim();
  desk::MoveCursor(overTheBar);
  Step();
  InterruptAt(223);
  desk::MoveCursor(away);
  RunTimer();
  EXPECT_TRUE(Reaches(255)) << static_cast<int>(dock->Opacity.Get());
  EXPECT_EQ(-step, RowLeft());
  EXPECT_TRUE(Reaches(190)) << "and dims in its time";
}

TEST_F(FadeBesideASlide, BeginsOnlyWhenTheRowHasStopped) {
  StartWithALongRow();
  Step(21);
  ClickArrow();
  Step(3);
  EXPECT_EQ((Visibilities{shown, shown, shown}), SystemButtons());
  EXPECT_TRUE(desk::PumpUntil([&] { return RowLeft() == -step; })) << RowLeft();
  EXPECT_EQ(255, dock->Opacity.Get());
  Step();
  EXPECT_TRUE(Reaches(190));
}

TEST_F(FadeBesideASlide, ReturnsOnlyWhenTheRowHasStopped) {
  StartWithALongRow();
  Dim();
  desk::MoveCursor(overTheBar);
  ClickArrow();
  Step(3);
  EXPECT_EQ((Visibilities{hidden, hidden, shown}), SystemButtons());
  EXPECT_TRUE(desk::PumpUntil([&] { return RowLeft() == -step; })) << RowLeft();
  EXPECT_EQ(190, dock->Opacity.Get());
  Step();
  EXPECT_TRUE(Reaches(255));
  EXPECT_EQ((Visibilities{shown, shown, shown}), SystemButtons());
}

TEST_F(FadeBesideASlide, ASlideThatGotStuckIsEndedAndHoldsUpNothing) {
  StartWithALongRow();
  Step(21);
  ClickArrow();
  Property<long> other(0);
  LongAnimation thief; // takes the ticks, as nothing on the bar does
  thief.From.Set(0);
  thief.To.Set(10);
  thief.Duration.Set(0.1F);
  thief.Target.Set(&other);
  thief.Start();
  RunTimer();
  EXPECT_TRUE(Reaches(190));
  EXPECT_EQ(-step, RowLeft());
}

TEST_F(FadeBesideASlide, NeitherDisturbsTheOtherWhateverTheMoment) {
  StartWithALongRow();
  RunTimer();
  // Clicks all over the 0.3 s of the fades; each time bar and row come to rest where they belong.
  for (int round = 0; round < 8; ++round) {
    desk::MoveCursor(away);
    Step(22);
    const ULONGLONG click = ::GetTickCount64() + static_cast<ULONGLONG>(round) * 40;
    desk::PumpUntil([&] { return ::GetTickCount64() >= click; });
    const long before = RowLeft();
    ClickArrow();
    desk::MoveCursor(overTheBar);
    const auto isBack = [&] {
      return dock->Opacity.Get() == 255 && SystemButtons() == Visibilities{shown, shown, shown};
    };
    EXPECT_TRUE(desk::PumpUntil(isBack)) << round << ": " << static_cast<int>(dock->Opacity.Get());
    EXPECT_TRUE(desk::PumpUntil([&] { return std::abs(RowLeft() - before) == step; })) << round << ": " << RowLeft();
  }
}

TEST_F(Fade, ComesAgainAfterAFlyoutWasClosedByItsKeys) {
  Element element = PictureElement(L"Folder");
  element.ActionType = L"xml";
  element.ActionParams = L"Flyout.One";
  SaveDocument(PictureElements(2), L"Flyout.One");
  SaveDocument({element}, userDocument);
  StartWithoutTimer();
  FlyoutWindow &flyout = *dock->GetUserButtons().at(0)->GetFlyout();
  flyout.ToggleVisibility();
  ::SendMessageW(flyout.GetHandle(), WM_SYSCOMMAND, SC_CLOSE, 0);
  desk::PumpAll();
  EXPECT_FALSE(dock->IsKeptAwake());
  Step(22);
  EXPECT_TRUE(Reaches(190));
  flyout.ToggleVisibility();
  EXPECT_TRUE(::IsWindowVisible(flyout.GetHandle()));
  EXPECT_TRUE(dock->IsKeptAwake());
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
