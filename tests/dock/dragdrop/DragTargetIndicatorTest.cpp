// The pixels of the marker.

#include <gtest/gtest.h>

#include "dock/dragdrop/DragTargetIndicator.h"
#include "support/ComApartment.h"
#include "support/RenderSurface.h"

namespace lumenor {

namespace {

/// One line of text for each row of the picture: '#' white, '.' transparent, '?' anything else.
std::string Draw(const D2D1_RECT_F &rect, int width, int height) {
  const tests::ComApartment com;
  tests::RenderSurface surface(width, height);
  DragTargetIndicator indicator(surface.Target());
  const auto pixels = surface.Draw([&] { indicator.Paint(surface.Target(), &rect); });
  std::string picture;
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    if (i % static_cast<std::size_t>(width) == 0)
      picture += '\n';
    picture += pixels[i] == 0xFFFFFFFF ? '#' : pixels[i] == 0 ? '.' : '?';
  }
  return picture;
}

TEST(DragTargetIndicator, IsACapitalIInWhite) {
  EXPECT_EQ("\n............"
            "\n.########..."
            "\n....##......"
            "\n....##......"
            "\n.########..."
            "\n............",
            Draw({1, 1, 9, 5}, 12, 6));
}

TEST(DragTargetIndicator, HasItsStemInTheMiddleOfAnOddWidth) {
  EXPECT_EQ("\n#########"
            "\n...##...."
            "\n#########",
            Draw({0, 0, 9, 3}, 9, 3));
}

} // namespace

} // namespace lumenor
