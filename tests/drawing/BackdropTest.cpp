#include "support/Desk.h"

#include <gtest/gtest.h>

namespace lumenor {

TEST(Backdrop, IsOnTheScreenOnceMade) {
  const desk::Backdrop blue({100, 120, 400, 300}, RGB(0, 0, 200));
  EXPECT_EQ(0x0000C8U, desk::PixelAt({100, 120}));
  EXPECT_EQ(0x0000C8U, desk::PixelAt({399, 299}));
}

} // namespace lumenor
