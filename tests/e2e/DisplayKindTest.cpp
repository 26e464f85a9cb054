// Displays of another kind than the default: CMakeLists.txt runs each suite on a display of its kind.

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

namespace lumenor::e2e {
namespace {

// Run on a display of 16 bits.
TEST(LowColorDisplay, TheBarHasSquareCornersAndIsOpaque) {
  const Installation installation;
  installation.WriteUsualStubs();
  ShownDock dock(installation);
  const RECT bar = dock.BarRect();
  const Picture picture = CaptureSettled(bar);
  SaveShot("low-color");
  // The outermost pixel of a corner belongs to the bar: it has the colour of its neighbour well inside the same row.
  const int right = picture.Width() - 1, bottom = picture.Height() - 1;
  EXPECT_EQ(picture.At(8, 0), picture.At(0, 0));
  EXPECT_EQ(picture.At(right - 8, 0), picture.At(right, 0));
  EXPECT_EQ(picture.At(8, bottom), picture.At(0, bottom));
  EXPECT_EQ(picture.At(right - 8, bottom), picture.At(right, bottom));
}

// Run at 144 dots per inch.
TEST(HighDensityDisplay, EverythingIsHalfAgainAsLarge) {
  const Installation installation;
  installation.WriteUsualStubs();
  ShownDock dock(installation);
  const RECT bar = dock.BarRect();
  EXPECT_EQ(1350, bar.right - bar.left);
  EXPECT_EQ(116, bar.bottom - bar.top); // 115.5, rounded as MulDiv rounds
  const RECT fixedButton = RectOf(dock.Control(1001));
  EXPECT_EQ(bar.left + 116, fixedButton.left);
  EXPECT_EQ(116, fixedButton.right - fixedButton.left);
  const RECT userButton = RectOf(dock.Control(2000));
  EXPECT_EQ(bar.left + 3 * 116 + 2 + 6, userButton.left);
  EXPECT_EQ(bar.top + 6, userButton.top);
  CaptureSettled(bar);
  SaveShot("high-density");

  Click(dock.MainButton(1));
  ASSERT_EQ(1U, installation.WaitForCommandLines(1).size());
  EXPECT_EQ(0U, CloseByButton(dock));
}

} // namespace
} // namespace lumenor::e2e
