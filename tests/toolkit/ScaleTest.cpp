#include "toolkit/Scale.h"

#include <vector>

#include <gtest/gtest.h>

#include "system/Handles.h"

namespace lumenor {

namespace {

int DotsPerInch(int axis) { return ::GetDeviceCaps(WindowDeviceContext(nullptr).Get(), axis); }

TEST(Scale, DesignPixelsAreOfNinetySixDotsPerInch) {
  for (const int pixels : {0, 1, 3, 77, 204, -5}) {
    EXPECT_EQ(ScaleX(pixels), ::MulDiv(pixels, DotsPerInch(LOGPIXELSX), 96));
    EXPECT_EQ(ScaleY(pixels), ::MulDiv(pixels, DotsPerInch(LOGPIXELSY), 96));
  }
}

/// The suite runs on a screen of 96 and on one of 144 dots per inch.
TEST(Scale, RoundsToTheNearestPixel) {
  const std::vector<int> expected =
      DotsPerInch(LOGPIXELSX) == 144 ? std::vector<int>{0, 2, 5, 116, 306, -8} : std::vector<int>{0, 1, 3, 77, 204, -5};
  EXPECT_EQ((std::vector<int>{ScaleX(0), ScaleX(1), ScaleX(3), ScaleX(77), ScaleX(204), ScaleX(-5)}), expected);
  EXPECT_EQ((std::vector<int>{ScaleY(0), ScaleY(1), ScaleY(3), ScaleY(77), ScaleY(204), ScaleY(-5)}), expected);
}

} // namespace

} // namespace lumenor
