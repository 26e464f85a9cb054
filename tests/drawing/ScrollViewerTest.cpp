#include "toolkit/drawing/ScrollViewer.h"

#include <gtest/gtest.h>

#include "toolkit/Scene.h"

namespace lumenor {

namespace {

using tests::Box;
using tests::BoxOf;
using tests::Leaf;

class ScrollViewerTest : public ::testing::Test {
protected:
  ScrollViewerTest() {
    viewer.Width.Set(100);
    viewer.Height.Set(40);
    strip.Top.Set(3);
    viewer.SetChild(&strip);
  }

  Leaf strip{250, 20};
  ScrollViewer viewer{nullptr};
};

TEST_F(ScrollViewerTest, StripGetsTheWidthItAsksForAndTheRoomsHeight) {
  EXPECT_EQ(BoxOf(strip), (Box{0, 3, 250, 40}));
  EXPECT_EQ(viewer.GetChild(), &strip);
  EXPECT_EQ(strip.calls, std::vector<std::string>{"OnAttached"});
}

TEST_F(ScrollViewerTest, StripNoWiderThanTheRoomSitsAtZero) {
  strip.Left.Set(-20);
  strip.DesiredWidth.Set(100);
  EXPECT_EQ(BoxOf(strip), (Box{0, 3, 100, 40}));
  strip.Left.Set(7);
  viewer.Layout();
  EXPECT_EQ(BoxOf(strip), (Box{0, 3, 100, 40}));
}

TEST_F(ScrollViewerTest, WiderStripStaysWhereItWasScrolledTo) {
  strip.Left.Set(-60);
  viewer.Layout();
  EXPECT_EQ(strip.Left.Get(), -60);
  strip.Left.Set(-150);
  viewer.Layout();
  EXPECT_EQ(strip.Left.Get(), -150) << "its end meets the room's";
}

TEST_F(ScrollViewerTest, EndOfTheStripNeverComesInsideTheRoom) {
  strip.Left.Set(-151);
  viewer.Layout();
  EXPECT_EQ(strip.Left.Get(), -150);
}

TEST_F(ScrollViewerTest, BeginOfTheStripNeverComesInsideTheRoom) {
  strip.Left.Set(1);
  viewer.Layout();
  EXPECT_EQ(strip.Left.Get(), 0);
}

TEST_F(ScrollViewerTest, StripScrolledToItsEndFollowsAGrowingRoom) {
  strip.Left.Set(-150);
  viewer.Width.Set(120);
  EXPECT_EQ(strip.Left.Get(), -130);
  viewer.Width.Set(300);
  EXPECT_EQ(BoxOf(strip), (Box{0, 3, 250, 40}));
}

TEST_F(ScrollViewerTest, FollowsItsOwnHeightAndTheStripsWish) {
  viewer.Height.Set(50);
  EXPECT_EQ(BoxOf(strip), (Box{0, 3, 250, 50}));
  strip.DesiredWidth.Set(300);
  EXPECT_EQ(BoxOf(strip), (Box{0, 3, 300, 50}));
}

TEST_F(ScrollViewerTest, ReplacedStripIsntFollowedAnyMore) {
  Leaf second(10, 10);
  viewer.SetChild(&second);
  EXPECT_EQ(BoxOf(second), (Box{0, 0, 10, 40}));
  EXPECT_EQ(strip.parent, nullptr);
  EXPECT_EQ(strip.DesiredWidth.changed.Count(), 0U);
}

TEST_F(ScrollViewerTest, WithoutStripLaysOutNothing) {
  ScrollViewer empty(nullptr);
  empty.Width.Set(10);
  EXPECT_EQ(empty.GetChild(), nullptr);
}

} // namespace

} // namespace lumenor
