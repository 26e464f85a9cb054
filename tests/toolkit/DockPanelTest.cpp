#include "toolkit/DockPanel.h"

#include <vector>

#include <gtest/gtest.h>

#include "toolkit/TestElements.h"

namespace lumenor {

namespace {

using tests::Box;
using tests::BoxOf;
using tests::Leaf;
using Children = std::vector<UIElement *>;
using Docks = std::vector<Dock>;

/// A dock panel that counts the layouts that aren't held back.
class Docked : public DockPanel {
public:
  void Layout() override {
    layouts += !IsLayoutSuspended();
    DockPanel::Layout();
  }
  Docks AllDocks() {
    Docks docks;
    for (UIElement *child : GetChildren())
      docks.push_back(GetDock(child));
    return docks;
  }
  int layouts = 0;
};

class DockPanelTest : public ::testing::Test {
protected:
  DockPanelTest() {
    panel.Width.Set(200);
    panel.Height.Set(150);
    panel.layouts = 0;
  }
  void Add(Leaf &child, Dock dock) {
    panel.AddChild(&child);
    panel.SetDock(&child, dock);
    panel.Layout();
  }

  Leaf top{10, 20}, bottom{30, 12}, left{25, 8}, right{15, 9}, fill{1, 2};
  Docked panel;
};

TEST_F(DockPanelTest, PlacesEveryDock) {
  top.Margin.Set({1, 2, 3, 4});
  bottom.Margin.Set({5, 6, 7, 8});
  left.Margin.Set({1, 3, 5, 7});
  right.Margin.Set({2, 4, 6, 8});
  fill.Margin.Set({1, 2, 3, 4});
  Add(top, Dock::Top);
  Add(bottom, Dock::Bottom);
  Add(left, Dock::Left);
  Add(right, Dock::Right);
  Add(fill, Dock::Fill);
  EXPECT_EQ(BoxOf(top), (Box{1, 3, 197, 20}));
  EXPECT_EQ(BoxOf(bottom), (Box{5, 130, 189, 12}));
  EXPECT_EQ(BoxOf(left), (Box{1, 32, 25, 84}));
  EXPECT_EQ(BoxOf(right), (Box{181, 33, 15, 82}));
  EXPECT_EQ(BoxOf(fill), (Box{30, 30, 147, 89}));
  EXPECT_EQ(panel.DesiredWidth.Get(), 41 - 179 + 29 + 200) << "largest width, plus what left and right take";
  EXPECT_EQ(panel.DesiredHeight.Get(), 23 - 123 + 27 + 150) << "largest height, plus what top and bottom take";
}

TEST_F(DockPanelTest, StacksSeveralOfADockInListOrder) {
  Leaf top2{5, 6}, bottom2{5, 7}, left2{8, 5}, right2{9, 5};
  for (auto [child, dock] : {std::pair{&top, Dock::Top},
                             {&top2, Dock::Top},
                             {&bottom, Dock::Bottom},
                             {&bottom2, Dock::Bottom},
                             {&left, Dock::Left},
                             {&left2, Dock::Left},
                             {&right, Dock::Right},
                             {&right2, Dock::Right}})
    Add(*child, dock);
  EXPECT_EQ((std::vector<Box>{BoxOf(top), BoxOf(top2), BoxOf(bottom), BoxOf(bottom2)}),
            (std::vector<Box>{{0, 0, 200, 20}, {0, 20, 200, 6}, {0, 138, 200, 12}, {0, 131, 200, 7}}));
  EXPECT_EQ((std::vector<Box>{BoxOf(left), BoxOf(left2), BoxOf(right), BoxOf(right2)}),
            (std::vector<Box>{{0, 26, 25, 105}, {25, 26, 8, 105}, {185, 26, 15, 105}, {176, 26, 9, 105}}));
}

TEST_F(DockPanelTest, TopListedAfterLeftStillTakesTheWholeWidth) {
  Add(left, Dock::Left);
  Add(top, Dock::Top);
  EXPECT_EQ(BoxOf(top), (Box{0, 0, 200, 20}));
  EXPECT_EQ(BoxOf(left), (Box{0, 20, 25, 130}));
}

TEST_F(DockPanelTest, AlignmentCountsAcrossTheDockOnly) {
  top.HorizontalAlignment.Set(HorizontalAlignment::Center);
  bottom.HorizontalAlignment.Set(HorizontalAlignment::Right);
  left.VerticalAlignment.Set(VerticalAlignment::Center);
  right.VerticalAlignment.Set(VerticalAlignment::Bottom);
  Add(top, Dock::Top);
  Add(bottom, Dock::Bottom);
  Add(left, Dock::Left);
  Add(right, Dock::Right);
  EXPECT_EQ(BoxOf(top), (Box{95, 0, 10, 20}));
  EXPECT_EQ(BoxOf(bottom), (Box{170, 138, 30, 12}));
  EXPECT_EQ(BoxOf(left), (Box{0, 75, 25, 8})) << "the band is 20 to 138";
  EXPECT_EQ(BoxOf(right), (Box{185, 129, 15, 9}));
}

TEST_F(DockPanelTest, ChildWithoutDockFillsAndTwoOfThemOverlap) {
  Leaf second{3, 4};
  Add(left, Dock::Left);
  panel.AddChild(&fill);
  panel.AddChild(&second);
  EXPECT_EQ(panel.GetDock(&fill), Dock::Fill);
  EXPECT_EQ(BoxOf(fill), (Box{25, 0, 175, 150}));
  EXPECT_EQ(BoxOf(second), (Box{25, 0, 175, 150}));
}

TEST_F(DockPanelTest, CollapsedChildrenTakeNoSpaceInAnyPass) {
  Add(top, Dock::Top);
  Add(bottom, Dock::Bottom);
  Add(left, Dock::Left);
  Add(right, Dock::Right);
  Add(fill, Dock::Fill);
  Leaf second{3, 4};
  panel.AddChild(&second);
  const std::vector<Leaf *> collapsed{&top, &bottom, &left, &right, &fill};
  std::vector<Box> former;
  for (Leaf *child : collapsed)
    former.push_back(BoxOf(*child));
  for (std::size_t i = 0; i < collapsed.size(); ++i) {
    collapsed[i]->Visibility.Set(Visibility::Collapsed);
    former[i] = BoxOf(*collapsed[i]);
  }
  panel.Width.Set(300);
  panel.Height.Set(250);
  for (std::size_t i = 0; i < collapsed.size(); ++i)
    EXPECT_EQ(BoxOf(*collapsed[i]), former[i]) << "a collapsed child's rectangle stays";
  EXPECT_EQ(BoxOf(second), (Box{0, 0, 300, 250}));
  EXPECT_EQ(panel.DesiredWidth.Get(), 3);
  EXPECT_EQ(panel.DesiredHeight.Get(), 4);
}

TEST_F(DockPanelTest, HiddenChildKeepsItsSpace) {
  Add(left, Dock::Left);
  Add(fill, Dock::Fill);
  left.Visibility.Set(Visibility::Hidden);
  EXPECT_EQ(BoxOf(fill), (Box{25, 0, 175, 150}));
}

TEST_F(DockPanelTest, EmptyPanelAsksForNothing) {
  panel.DesiredWidth.Set(3);
  panel.DesiredHeight.Set(3);
  panel.Layout();
  EXPECT_EQ(panel.DesiredWidth.Get(), 0);
  EXPECT_EQ(panel.DesiredHeight.Get(), 0);
}

TEST_F(DockPanelTest, ChildOperationsLayOutOnceEach) {
  panel.AddChild(&left);
  EXPECT_EQ(panel.layouts, 1);
  panel.InsertChild(&top, 0);
  EXPECT_EQ(panel.layouts, 2);
  panel.InsertChild(&bottom, 9);
  EXPECT_EQ(panel.layouts, 3);
  panel.RemoveChild(&left);
  EXPECT_EQ(panel.layouts, 4);
}

TEST_F(DockPanelTest, RemovingAStrangerChangesNothingAndRunsNoLayout) {
  Add(left, Dock::Left);
  panel.layouts = 0;
  panel.RemoveChild(&right);
  EXPECT_EQ(panel.layouts, 0);
  EXPECT_EQ(panel.GetChildren(), Children{&left});
  EXPECT_EQ(panel.AllDocks(), Docks{Dock::Left});
}

TEST_F(DockPanelTest, RemoveChildTakesItsDockAlong) {
  Add(left, Dock::Left);
  Add(top, Dock::Top);
  Add(right, Dock::Right);
  panel.RemoveChild(&top);
  EXPECT_EQ(panel.GetChildren(), (Children{&left, &right}));
  EXPECT_EQ(panel.AllDocks(), (Docks{Dock::Left, Dock::Right}));
  EXPECT_EQ(BoxOf(right), (Box{185, 0, 15, 150}));
}

TEST_F(DockPanelTest, RemoveChildTakesTheDockOfTheFirstAlong) {
  Add(left, Dock::Left);
  Add(top, Dock::Top);
  panel.RemoveChild(&left);
  EXPECT_EQ(panel.GetChildren(), Children{&top});
  EXPECT_EQ(panel.AllDocks(), Docks{Dock::Top});
}

TEST_F(DockPanelTest, InsertedChildTakesTheDockThatStoodAtItsPlace) {
  Add(left, Dock::Left);
  Add(top, Dock::Top);
  panel.InsertChild(&fill, 0);
  EXPECT_EQ(panel.GetChildren(), (Children{&fill, &left, &top}));
  EXPECT_EQ(panel.AllDocks(), (Docks{Dock::Left, Dock::Top, Dock::Fill})) << "the new entry went to the end";
}

TEST_F(DockPanelTest, ChildInsertedPastTheEndFillsAndSoDoTheNext) {
  Add(left, Dock::Left);
  panel.InsertChild(&top, 5);
  panel.SetDock(&top, Dock::Top);
  panel.AddChild(&fill);
  EXPECT_EQ(panel.AllDocks(), (Docks{Dock::Left, Dock::Top, Dock::Fill}));
}

TEST_F(DockPanelTest, MovedChildLeavesItsDockBehind) {
  Add(left, Dock::Left);
  Add(top, Dock::Top);
  panel.MoveChild(1, 0);
  EXPECT_EQ(panel.GetChildren(), (Children{&top, &left}));
  EXPECT_EQ(panel.AllDocks(), (Docks{Dock::Left, Dock::Top}));
}

TEST_F(DockPanelTest, SetDockWaitsForALayoutAndIgnoresAStranger) {
  panel.AddChild(&left);
  panel.layouts = 0;
  panel.SetDock(&left, Dock::Left);
  panel.SetDock(&right, Dock::Right);
  EXPECT_EQ(panel.layouts, 0);
  EXPECT_EQ(BoxOf(left), (Box{0, 0, 200, 150}));
  EXPECT_EQ(panel.AllDocks(), Docks{Dock::Left});
  EXPECT_EQ(panel.GetDock(&right), Dock::Fill);
  panel.Layout();
  EXPECT_EQ(BoxOf(left), (Box{0, 0, 25, 150}));
}

TEST_F(DockPanelTest, AddingNullChangesNothing) {
  Add(left, Dock::Left);
  panel.AddChild(nullptr);
  panel.InsertChild(nullptr, 0);
  panel.AddChild(&right);
  EXPECT_EQ(panel.GetChildren(), (Children{&left, &right}));
  EXPECT_EQ(panel.AllDocks(), (Docks{Dock::Left, Dock::Fill}));
}

/// Asks for a size while it is being attached.
class Eager : public Leaf {
public:
  void OnAttached() override { DesiredWidth.Set(40); }
};

TEST_F(DockPanelTest, GroupOfChangesLaysOutOnceAtItsEnd) {
  panel.BeginUpdate();
  Add(top, Dock::Top);
  Eager eager;
  Add(eager, Dock::Left);
  panel.Width.Set(210);
  EXPECT_EQ(panel.layouts, 0);
  EXPECT_EQ(BoxOf(top), (Box{0, 0, 0, 0}));
  panel.EndUpdate();
  EXPECT_EQ(panel.layouts, 1);
  EXPECT_EQ(BoxOf(top), (Box{0, 0, 210, 20}));
  EXPECT_EQ(BoxOf(eager), (Box{0, 20, 40, 130}));
}

TEST_F(DockPanelTest, FailedAttachmentDoesntSuspendTheLayoutForEver) {
  class Failing : public Leaf {
    void OnAttached() override { throw 1; }
  } failing;
  EXPECT_THROW(panel.AddChild(&failing), int);
  panel.Layout();
  EXPECT_EQ(panel.layouts, 1);
}

} // namespace

} // namespace lumenor
