// The bar dims when the cursor has been away for a while, and brightens when it comes back.

#include <cmath>

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/OtherWindow.h"
#include "e2e/ResetDialog.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

namespace lumenor::e2e {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr POINT farAway = {640, 600};
constexpr RECT behindTheBar = {150, 0, 1130, 150};
constexpr RECT elsewhere = {300, 700, 900, 950};
constexpr double dimmed = 190.0 / 255;
constexpr double white = 255;

/// True when every channel of `now` is what `full` becomes at 190 of 255 in front of white, give or take roundings.
bool IsDimmed(std::uint32_t now, std::uint32_t full) {
  for (const unsigned shift : {0U, 8U, 16U}) {
    const double expected = ((full >> shift) & 0xFF) * dimmed + white * (1 - dimmed);
    if (std::abs(((now >> shift) & 0xFF) - expected) > 3)
      return false;
  }
  return true;
}

class Fade : public ::testing::Test {
protected:
  Fade() { installation.WriteUsualStubs(); }

  /// The reset and the position button; the ids count on from the two user buttons.
  bool SmallButtonsAreVisible(const DockProcess &dock) const {
    return ::IsWindowVisible(dock.Control(1006)) && ::IsWindowVisible(dock.Control(1007));
  }
  bool SmallButtonsAreHidden(const DockProcess &dock) const {
    return !::IsWindowVisible(dock.Control(1006)) && !::IsWindowVisible(dock.Control(1007));
  }

  /// The bar without the small buttons at its top right, which come and go.
  RECT Plate(const DockProcess &dock) const {
    const RECT bar = dock.BarRect();
    return {bar.left, bar.top, bar.right - 80, bar.bottom};
  }

  const Installation installation;
  const OtherWindow background{behindTheBar};
};

TEST_F(Fade, TheBarDimsTo190Of255AfterTheCursorLeftAndBrightensWhenItReturns) {
  ShownDock dock(installation);
  const RECT plate = Plate(dock);
  const Picture full = CaptureSettled(plate);
  ASSERT_TRUE(SmallButtonsAreVisible(dock));

  const auto left = steady_clock::now();
  MoveCursor(farAway);
  ASSERT_TRUE(WaitFor([&] { return Capture(plate) != full; }));
  const auto waited = steady_clock::now() - left;
  EXPECT_GT(waited, milliseconds(4000)) << "after 22 ticks of 200 ms, the first of which may come at once";

  EXPECT_TRUE(WaitFor([&] { return SmallButtonsAreHidden(dock); }));
  const Picture dim = CaptureSettled(plate);
  SaveShot("dimmed");
  int wrong = 0;
  for (int y = 0; y < dim.Height(); ++y)
    for (int x = 0; x < dim.Width(); ++x)
      wrong += !IsDimmed(dim.At(x, y), full.At(x, y));
  EXPECT_EQ(0, wrong) << "of " << dim.Width() * dim.Height() << " pixels";

  MoveCursor(dock.Rest());
  EXPECT_TRUE(WaitFor([&] { return Capture(plate) == full; }));
  EXPECT_TRUE(WaitFor([&] { return SmallButtonsAreVisible(dock); }));
}

TEST_F(Fade, AnOpenFlyoutKeepsTheBarAwakeAndItDimsOnceTheFlyoutIsGone) {
  const OtherWindow other(elsewhere);
  ShownDock dock(installation);
  OpenForYou(dock);
  MoveCursor(farAway);
  const Picture full = CaptureSettled(Plate(dock));

  EXPECT_TRUE(HoldsFor([&] { return Capture(Plate(dock)) == full && SmallButtonsAreVisible(dock); }, seconds(6)));

  Click(Center(elsewhere));
  ASSERT_TRUE(dock.WaitForNoPopup());
  EXPECT_TRUE(WaitFor([&] { return SmallButtonsAreHidden(dock); }));
}

TEST_F(Fade, TheResetDialogKeepsTheBarAwake) {
  ShownDock dock(installation);
  OpenResetDialog(dock);
  MoveCursor(farAway);
  const Picture full = CaptureSettled(Plate(dock));
  EXPECT_TRUE(HoldsFor([&] { return Capture(Plate(dock)) == full && SmallButtonsAreVisible(dock); }, seconds(6)));
}

} // namespace
} // namespace lumenor::e2e
