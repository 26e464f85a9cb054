#include "toolkit/Container.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/RenderSurface.h"
#include "toolkit/TestElements.h"

namespace lumenor {

namespace {

using tests::Leaf;
using Calls = std::vector<std::string>;
using Children = std::vector<UIElement *>;

/// A container that counts its layouts.
class Counting : public Container {
public:
  void Layout() override {
    ++layouts;
    countAtLayout = GetChildren().size();
  }
  int layouts = 0;
  std::size_t countAtLayout = 0;
  using UIElement::dirty;
};

class ContainerTest : public ::testing::Test {
protected:
  void AddThree() {
    for (Leaf *leaf : {&a, &b, &c})
      container.AddChild(leaf);
    container.layouts = 0;
    for (Leaf *leaf : {&a, &b, &c})
      leaf->calls.clear();
  }

  Leaf a, b, c, stranger;
  Counting container;
};

TEST_F(ContainerTest, AddChildAppendsAttachesAndLaysOut) {
  container.AddChild(&a);
  container.AddChild(&b);
  EXPECT_EQ(container.GetChildren(), (Children{&a, &b}));
  EXPECT_EQ(a.parent, &container);
  EXPECT_EQ(a.calls, Calls{"OnAttached"});
  EXPECT_EQ(container.layouts, 2);
  EXPECT_EQ(container.countAtLayout, 2U);
}

TEST_F(ContainerTest, AddingNullDoesNothing) {
  container.AddChild(nullptr);
  container.InsertChild(nullptr, 0);
  EXPECT_EQ(container.GetChildren(), Children{});
  EXPECT_EQ(container.layouts, 0);
}

TEST_F(ContainerTest, AddChildDetachesFromTheFormerParent) {
  Counting former;
  former.AddChild(&a);
  a.calls.clear();
  container.AddChild(&a);
  EXPECT_EQ(a.calls, (Calls{"OnDetached", "OnAttached"}));
  EXPECT_EQ(a.parent, &container);
}

TEST_F(ContainerTest, RemoveChildDetachesAndLaysOutOnce) {
  AddThree();
  container.RemoveChild(&b);
  EXPECT_EQ(container.GetChildren(), (Children{&a, &c}));
  EXPECT_EQ(b.calls, Calls{"OnDetached"});
  EXPECT_EQ(b.parent, nullptr);
  EXPECT_EQ(container.layouts, 1);
  EXPECT_EQ(container.countAtLayout, 2U);
}

TEST_F(ContainerTest, RemovedChildIsntListenedToAnyMore) {
  AddThree();
  container.RemoveChild(&b);
  container.layouts = 0;
  b.DesiredWidth.Set(1);
  b.DesiredHeight.Set(1);
  b.Visibility.Set(Visibility::Collapsed);
  EXPECT_EQ(container.layouts, 0);
  EXPECT_EQ(b.DesiredWidth.changed.Count() + b.DesiredHeight.changed.Count() + b.Visibility.changed.Count(), 0U);
}

TEST_F(ContainerTest, RemovingAStrangerOnlyLaysOut) {
  AddThree();
  container.RemoveChild(&stranger);
  EXPECT_EQ(container.GetChildren(), (Children{&a, &b, &c}));
  EXPECT_EQ(stranger.calls, Calls{});
  EXPECT_EQ(container.layouts, 1);
}

TEST_F(ContainerTest, InsertChildGoesBeforeTheIndex) {
  AddThree();
  Leaf first, middle;
  container.InsertChild(&first, 0);
  container.InsertChild(&middle, 2);
  EXPECT_EQ(container.GetChildren(), (Children{&first, &a, &middle, &b, &c}));
  EXPECT_EQ(middle.parent, &container);
  EXPECT_EQ(middle.calls, Calls{"OnAttached"});
  EXPECT_EQ(container.layouts, 2);
  middle.DesiredWidth.Set(4);
  EXPECT_EQ(container.layouts, 3) << "an inserted child is listened to";
}

TEST_F(ContainerTest, InsertChildPastTheEndAppends) {
  AddThree();
  Leaf last;
  container.InsertChild(&last, 3);
  EXPECT_EQ(container.GetChildren(), (Children{&a, &b, &c, &last}));
  EXPECT_EQ(container.layouts, 1);
}

TEST_F(ContainerTest, MoveChildToTheFrontLaysOutOnce) {
  AddThree();
  EXPECT_EQ(container.MoveChild(2, 0), 0U);
  EXPECT_EQ(container.GetChildren(), (Children{&c, &a, &b}));
  EXPECT_EQ(container.layouts, 1);
  EXPECT_EQ(c.calls, Calls{}) << "its window isn't touched";
}

TEST_F(ContainerTest, MoveChildCountsTheTargetWithoutTheChild) {
  AddThree();
  EXPECT_EQ(container.MoveChild(0, 1), 1U);
  EXPECT_EQ(container.GetChildren(), (Children{&b, &a, &c}));
  EXPECT_EQ(container.MoveChild(0, 2), 2U);
  EXPECT_EQ(container.GetChildren(), (Children{&a, &c, &b}));
  EXPECT_EQ(container.MoveChild(0, 9), 2U);
  EXPECT_EQ(container.GetChildren(), (Children{&c, &b, &a}));
}

TEST_F(ContainerTest, MoveChildFromPastTheEndReturnsTheCount) {
  AddThree();
  EXPECT_EQ(container.MoveChild(3, 0), 3U);
  EXPECT_EQ(container.GetChildren(), (Children{&a, &b, &c}));
  EXPECT_EQ(container.layouts, 0);
}

TEST_F(ContainerTest, IndexOfChildIsTheFirstOrMinusOne) {
  AddThree();
  container.AddChild(&b);
  EXPECT_EQ(container.IndexOfChild(&a), 0);
  EXPECT_EQ(container.IndexOfChild(&b), 1);
  EXPECT_EQ(container.IndexOfChild(&stranger), -1);
}

TEST_F(ContainerTest, GetChildrenIsACopy) {
  AddThree();
  container.GetChildren().clear();
  EXPECT_EQ(container.GetChildren().size(), 3U);
}

TEST_F(ContainerTest, WishesOfEveryChildLayOutOnceEach) {
  AddThree();
  a.DesiredWidth.Set(1);
  EXPECT_EQ(container.layouts, 1);
  b.DesiredHeight.Set(1);
  EXPECT_EQ(container.layouts, 2);
  c.Visibility.Set(Visibility::Hidden);
  EXPECT_EQ(container.layouts, 3);
  c.Width.Set(1);
  c.Margin.Set({1, 1, 1, 1});
  EXPECT_EQ(container.layouts, 3);
}

TEST_F(ContainerTest, ItsOwnRectangleLaysOut) {
  container.Left.Set(1);
  container.Top.Set(1);
  container.Width.Set(1);
  container.Height.Set(1);
  EXPECT_EQ(container.layouts, 4);
  container.DesiredWidth.Set(1);
  EXPECT_EQ(container.layouts, 4);
}

class Overriding : public Container {
public:
  void OnLeftChanged() override { calls.push_back("left"); }
  void OnTopChanged() override { calls.push_back("top"); }
  void OnWidthChanged() override { calls.push_back("width"); }
  void OnHeightChanged() override { calls.push_back("height"); }
  void OnChildDesiredWidthChanged() override { calls.push_back("child width"); }
  void OnChildDesiredHeightChanged() override { calls.push_back("child height"); }
  void OnChildVisibilityChanged() override { calls.push_back("child visibility"); }
  Calls calls;
};

TEST_F(ContainerTest, OverridesHearOfEveryChangeThoughTheBaseListens) {
  Overriding overriding;
  overriding.AddChild(&a);
  overriding.Left.Set(1);
  overriding.Top.Set(1);
  overriding.Width.Set(1);
  overriding.Height.Set(1);
  a.DesiredWidth.Set(1);
  a.DesiredHeight.Set(1);
  a.Visibility.Set(Visibility::Hidden);
  EXPECT_EQ(overriding.calls,
            (Calls{"left", "top", "width", "height", "child width", "child height", "child visibility"}));
}

TEST_F(ContainerTest, ContainerItselfLeavesItsChildrenWhereTheyAre) {
  class Bare : public Container {
  } bare;
  const RECT bounds{3, 4, 13, 24};
  a.SetBounds(&bounds);
  bare.AddChild(&a);
  bare.Width.Set(100);
  EXPECT_EQ(tests::BoxOf(a), (tests::Box{3, 4, 10, 20}));
}

/// Writes its name when it is painted.
class Named : public Leaf {
public:
  Named(Calls &log, std::string name) : log(log), name(std::move(name)) {}
  void Paint(RenderTargetPtr, const D2D1_RECT_F *) override { log.push_back(name); }

private:
  Calls &log;
  std::string name;
};

TEST_F(ContainerTest, PaintsTheVisibleChildrenInListOrder) {
  Calls log;
  Named first(log, "first"), hidden(log, "hidden"), collapsed(log, "collapsed"), last(log, "last");
  for (Named *child : {&last, &hidden, &collapsed, &first})
    container.InsertChild(child, 0);
  hidden.Visibility.Set(Visibility::Hidden);
  collapsed.Visibility.Set(Visibility::Collapsed);
  tests::RenderSurface surface(2, 2);
  const D2D1_RECT_F rect{0, 0, 2, 2};
  surface.Draw([&] { container.Paint(surface.Target(), &rect); });
  EXPECT_EQ(log, (Calls{"first", "last"}));
}

/// Counts how often it is asked whether it is dirty.
class Asked : public Leaf {
public:
  bool IsDirty() override {
    ++questions;
    return dirty;
  }
  int questions = 0;
};

TEST_F(ContainerTest, FirstDirtyChildEndsTheSearch) {
  Asked clean, firstDirty, secondDirty;
  for (Asked *child : {&clean, &firstDirty, &secondDirty})
    container.AddChild(child);
  clean.dirty = false;
  EXPECT_TRUE(container.IsDirty());
  EXPECT_EQ(clean.questions, 0) << "the container itself is dirty";
  container.dirty = false;
  EXPECT_TRUE(container.IsDirty());
  EXPECT_EQ(clean.questions + firstDirty.questions, 2);
  EXPECT_EQ(secondDirty.questions, 0);
  firstDirty.dirty = secondDirty.dirty = false;
  EXPECT_FALSE(container.IsDirty());
}

TEST_F(ContainerTest, EndOfAGroupOfChangesLaysOutOnce) {
  container.BeginUpdate();
  container.EndUpdate();
  EXPECT_EQ(container.layouts, 1);
}

} // namespace

} // namespace lumenor
