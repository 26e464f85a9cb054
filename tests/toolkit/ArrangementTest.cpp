#include "toolkit/Arrangement.h"

#include <gtest/gtest.h>

#include "toolkit/TestElements.h"

namespace lumenor {

namespace {

using tests::Box;
using tests::BoxOf;
using tests::Leaf;
using H = HorizontalAlignment;
using V = VerticalAlignment;

/// Where a child of 30 by 40 with the margins 3, 5, 7, 11 comes to stand; what isn't arranged stays -1.
class Arrange : public ::testing::Test {
protected:
  Arrange() {
    child.Margin.Set({3, 5, 7, 11});
    for (Property<long> *property : {&child.Left, &child.Top, &child.Width, &child.Height})
      property->Set(-1);
  }
  Box Across(H alignment, long offset, long available) {
    child.HorizontalAlignment.Set(alignment);
    ArrangeHorizontally(child, offset, available);
    return BoxOf(child);
  }
  Box Down(V alignment, long offset, long available) {
    child.VerticalAlignment.Set(alignment);
    ArrangeVertically(child, offset, available);
    return BoxOf(child);
  }

  Leaf child{30, 40};
};

TEST_F(Arrange, StretchTakesTheRoomBetweenTheMargins) {
  EXPECT_EQ(Across(H::Stretch, 10, 100), (Box{13, -1, 82, -1}));
  EXPECT_EQ(Down(V::Stretch, 10, 100), (Box{13, 17, 82, 72}));
}

TEST_F(Arrange, StartStandsBehindTheMargin) {
  EXPECT_EQ(Across(H::Left, 10, 100), (Box{13, -1, 30, -1}));
  EXPECT_EQ(Down(V::Top, 10, 100), (Box{13, 17, 30, 40}));
}

TEST_F(Arrange, StartIsNoLongerThanTheRoom) {
  EXPECT_EQ(Across(H::Left, 10, 40), (Box{13, -1, 22, -1}));
  EXPECT_EQ(Down(V::Top, 10, 50), (Box{13, 17, 22, 22}));
}

TEST_F(Arrange, CenterHalvesTheRestWithoutTheLeadingMargin) {
  EXPECT_EQ(Across(H::Center, 10, 101), (Box{36, -1, 30, -1})) << "room 83, rest 53, half 26 and not 26.5, no margin";
  EXPECT_EQ(Down(V::Center, 10, 101), (Box{36, 26, 30, 40})) << "room 73, rest 33, half 16";
}

TEST_F(Arrange, CenterAboveTheRoomGetsTheRoomAtTheOffset) {
  EXPECT_EQ(Across(H::Center, 10, 40), (Box{10, -1, 22, -1}));
  EXPECT_EQ(Down(V::Center, 10, 50), (Box{10, 10, 22, 22}));
}

TEST_F(Arrange, EndStandsBeforeTheTrailingMargin) {
  EXPECT_EQ(Across(H::Right, 10, 100), (Box{65, -1, 30, -1}));
  EXPECT_EQ(Down(V::Bottom, 10, 100), (Box{65, 49, 30, 40}));
}

TEST_F(Arrange, EndWithOffsetZeroEndsAtAvailableLessTheMargin) {
  const Box box = Across(H::Right, 0, 100);
  EXPECT_EQ(box.left + box.width, 95);
  const Box down = Down(V::Bottom, 0, 100);
  EXPECT_EQ(down.top + down.height, 89);
}

TEST_F(Arrange, RoomBelowZeroGivesANegativeSize) {
  EXPECT_EQ(Across(H::Stretch, 10, 12), (Box{13, -1, -6, -1}));
  EXPECT_EQ(Across(H::Left, 10, 12), (Box{13, -1, -6, -1}));
  EXPECT_EQ(Across(H::Right, 10, 12), (Box{13, -1, -6, -1}));
  EXPECT_EQ(Down(V::Stretch, 10, 12), (Box{13, 17, -6, -16}));
}

TEST_F(Arrange, OtherAlignmentsLeaveTheChildAlone) {
  EXPECT_EQ(Across(static_cast<H>(4), 10, 100), (Box{-1, -1, -1, -1}));
  EXPECT_EQ(Down(static_cast<V>(-1), 10, 100), (Box{-1, -1, -1, -1}));
}

TEST_F(Arrange, PlaceIsWrittenBeforeTheSize) {
  tests::GeometryLog log(child);
  for (const H alignment : {H::Stretch, H::Left, H::Center, H::Right}) {
    child.Left.Set(-1);
    child.Width.Set(-1);
    log.changes.clear();
    Across(alignment, 0, 100);
    ASSERT_EQ(log.changes.size(), 2U);
    EXPECT_EQ(log.changes[0].substr(0, 7), "Left -1");
    EXPECT_EQ(log.changes[1].substr(0, 8), "Width -1");
  }
  for (const V alignment : {V::Stretch, V::Top, V::Center, V::Bottom}) {
    child.Top.Set(-1);
    child.Height.Set(-1);
    log.changes.clear();
    Down(alignment, 0, 100);
    ASSERT_EQ(log.changes.size(), 2U);
    EXPECT_EQ(log.changes[0].substr(0, 6), "Top -1");
    EXPECT_EQ(log.changes[1].substr(0, 9), "Height -1");
  }
}

} // namespace

} // namespace lumenor
