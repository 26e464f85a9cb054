#include "toolkit/StackPanel.h"

#include <vector>

#include <gtest/gtest.h>

#include "toolkit/TestElements.h"

namespace lumenor {

namespace {

using tests::Box;
using tests::BoxOf;
using tests::Leaf;

/// A stack panel that counts its layouts.
class Stack : public StackPanel {
public:
  void Layout() override {
    ++layouts;
    StackPanel::Layout();
  }
  int layouts = 0;
};

class StackPanelTest : public ::testing::Test {
protected:
  StackPanelTest() {
    panel.Width.Set(200);
    panel.Height.Set(100);
  }
  void AddThree() {
    a.Margin.Set({1, 2, 3, 4});
    b.VerticalAlignment.Set(VerticalAlignment::Top);
    b.HorizontalAlignment.Set(HorizontalAlignment::Right);
    c.Margin.Set({10, 0, 0, 5});
    c.VerticalAlignment.Set(VerticalAlignment::Center);
    c.HorizontalAlignment.Set(HorizontalAlignment::Center);
    for (Leaf *leaf : {&a, &b, &c})
      panel.AddChild(leaf);
    panel.layouts = 0;
  }
  std::vector<Box> Boxes() const { return {BoxOf(a), BoxOf(b), BoxOf(c)}; }

  Leaf a{30, 40}, b{50, 60}, c{70, 80};
  Stack panel;
};

TEST_F(StackPanelTest, SetsItsChildrenSideBySide) {
  AddThree();
  EXPECT_EQ(Boxes(), (std::vector<Box>{{1, 3, 30, 93}, {33, 0, 50, 60}, {93, 7, 70, 80}}));
  EXPECT_EQ(panel.DesiredWidth.Get(), 163);
  EXPECT_EQ(panel.DesiredHeight.Get(), 0) << "not written";
}

TEST_F(StackPanelTest, SetsItsChildrenOneBelowTheOther) {
  panel.Orientation.Set(Orientation::Vertical);
  AddThree();
  EXPECT_EQ(Boxes(), (std::vector<Box>{{1, 3, 197, 40}, {150, 47, 50, 60}, {60, 107, 70, 80}}));
  EXPECT_EQ(panel.DesiredHeight.Get(), 192);
  EXPECT_EQ(panel.DesiredWidth.Get(), 0) << "not written";
}

TEST_F(StackPanelTest, ChangeOfOrientationLaysOut) {
  AddThree();
  panel.Orientation.Set(Orientation::Vertical);
  EXPECT_EQ(panel.layouts, 1);
  EXPECT_EQ(BoxOf(b), (Box{150, 47, 50, 60}));
  EXPECT_EQ(panel.DesiredWidth.Get(), 163) << "what the former direction published stays";
}

TEST_F(StackPanelTest, WithoutChildrenAsksForNothing) {
  panel.DesiredWidth.Set(7);
  panel.Layout();
  EXPECT_EQ(panel.DesiredWidth.Get(), 0);
  panel.DesiredHeight.Set(7);
  panel.Orientation.Set(Orientation::Vertical);
  EXPECT_EQ(panel.DesiredHeight.Get(), 0);
}

TEST_F(StackPanelTest, OnlyCollapsedChildrenAskForNothing) {
  AddThree();
  for (Leaf *leaf : {&a, &b, &c})
    leaf->Visibility.Set(Visibility::Collapsed);
  EXPECT_EQ(panel.DesiredWidth.Get(), 0);
  panel.Orientation.Set(Orientation::Vertical);
  EXPECT_EQ(panel.DesiredHeight.Get(), 0);
}

TEST_F(StackPanelTest, HiddenChildKeepsItsSlot) {
  AddThree();
  a.Visibility.Set(Visibility::Hidden);
  EXPECT_EQ(Boxes(), (std::vector<Box>{{1, 3, 30, 93}, {33, 0, 50, 60}, {93, 7, 70, 80}}));
  EXPECT_EQ(panel.DesiredWidth.Get(), 163);
}

TEST_F(StackPanelTest, CollapsedChildTakesNoSpaceAndKeepsItsRectangle) {
  AddThree();
  a.Visibility.Set(Visibility::Collapsed);
  EXPECT_EQ(Boxes(), (std::vector<Box>{{1, 3, 30, 93}, {0, 0, 50, 60}, {60, 7, 70, 80}}));
  EXPECT_EQ(panel.DesiredWidth.Get(), 130);
}

TEST_F(StackPanelTest, ChildrenMayOverflow) {
  panel.Width.Set(20);
  AddThree();
  EXPECT_EQ(Boxes(), (std::vector<Box>{{1, 3, 30, 93}, {33, 0, 50, 60}, {93, 7, 70, 80}}));
}

TEST_F(StackPanelTest, ChangeOfAWishLaysOutOnceAndReachesTheGrandparent) {
  Stack outer;
  outer.Height.Set(100);
  outer.AddChild(&panel);
  AddThree();
  outer.layouts = 0;
  b.DesiredWidth.Set(60);
  EXPECT_EQ(panel.layouts, 2) << "once for the wish, once for the width that the grandparent gave";
  EXPECT_EQ(outer.layouts, 1);
  EXPECT_EQ(panel.Width.Get(), 173);
  EXPECT_EQ(BoxOf(c), (Box{103, 7, 70, 80}));
  panel.layouts = 0;
  b.DesiredWidth.Set(60);
  EXPECT_EQ(panel.layouts, 0);
}

TEST_F(StackPanelTest, ChangeOfAWishLaysOutOnceAChange) {
  AddThree();
  b.DesiredWidth.Set(60);
  EXPECT_EQ(panel.layouts, 1);
  b.DesiredWidth.Set(70);
  EXPECT_EQ(panel.layouts, 2);
}

TEST_F(StackPanelTest, UnchangedTreeDoesntCascade) {
  AddThree();
  tests::GeometryLog first(a), second(panel);
  panel.Layout();
  EXPECT_EQ(first.changes.size() + second.changes.size(), 0U);
}

TEST_F(StackPanelTest, GroupOfChangesPlacesNothingUntilItsEnd) {
  panel.BeginUpdate();
  AddThree();
  panel.Orientation.Set(Orientation::Vertical);
  EXPECT_EQ(Boxes(), (std::vector<Box>{{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}}));
  EXPECT_EQ(panel.DesiredHeight.Get(), 0);
  tests::GeometryLog log(a);
  panel.EndUpdate();
  EXPECT_EQ(Boxes(), (std::vector<Box>{{1, 3, 197, 40}, {150, 47, 50, 60}, {60, 107, 70, 80}}));
  EXPECT_EQ(log.changes, (std::vector<std::string>{"Top 0 -> 3", "Height 0 -> 40", "Left 0 -> 1", "Width 0 -> 197"}));
}

} // namespace

} // namespace lumenor
