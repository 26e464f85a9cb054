#include "toolkit/SingleChildContainer.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/RenderSurface.h"
#include "toolkit/TestElements.h"

namespace lumenor {

namespace {

using tests::Box;
using tests::BoxOf;
using tests::Leaf;
using Calls = std::vector<std::string>;

class Holder : public SingleChildContainer {
public:
  using UIElement::dirty;
};

TEST(SingleChildContainer, GivesTheChildItsOwnSizeAndNothingElse) {
  Holder holder;
  holder.Width.Set(50);
  holder.Height.Set(40);
  Leaf child(7, 8);
  child.Left.Set(3);
  child.Top.Set(4);
  child.Margin.Set({1, 1, 1, 1});
  child.HorizontalAlignment.Set(HorizontalAlignment::Right);
  holder.SetChild(&child);
  EXPECT_EQ(holder.GetChild(), &child);
  EXPECT_EQ(BoxOf(child), (Box{3, 4, 50, 40}));
  holder.Width.Set(60);
  EXPECT_EQ(BoxOf(child), (Box{3, 4, 60, 40}));
  holder.Height.Set(70);
  EXPECT_EQ(BoxOf(child), (Box{3, 4, 60, 70}));
}

TEST(SingleChildContainer, AttachesAChildAfterSettingItsParent) {
  Holder holder;
  Leaf child;
  holder.SetChild(&child);
  EXPECT_EQ(child.parent, &holder);
  EXPECT_EQ(child.calls, Calls{"OnAttached"});
}

TEST(SingleChildContainer, DetachesTheFormerChildBeforeItsParentIsCleared) {
  Holder holder;
  Leaf first, second;
  holder.SetChild(&first);
  first.calls.clear();
  holder.SetChild(&second);
  EXPECT_EQ(first.calls, Calls{"OnDetached"});
  EXPECT_EQ(first.parent, nullptr);
  EXPECT_EQ(holder.GetChild(), &second);
}

TEST(SingleChildContainer, DetachesANewChildFromItsFormerParent) {
  Holder former, holder;
  Leaf child;
  former.SetChild(&child);
  child.calls.clear();
  holder.SetChild(&child);
  EXPECT_EQ(child.calls, (Calls{"OnDetached", "OnAttached"}));
  EXPECT_EQ(child.parent, &holder);
}

TEST(SingleChildContainer, FormerChildWithoutParentIsntDetachedAgain) {
  Holder holder;
  Leaf first, second;
  holder.SetChild(&first);
  first.parent = nullptr;
  first.calls.clear();
  holder.SetChild(&second);
  EXPECT_EQ(first.calls, Calls{});
}

TEST(SingleChildContainer, WithoutChildLaysOutAndPaintsNothing) {
  Holder holder;
  tests::RenderSurface surface(2, 2);
  const D2D1_RECT_F rect{0, 0, 2, 2};
  holder.Width.Set(5);
  EXPECT_EQ(surface.Draw([&] { holder.Paint(surface.Target(), &rect); }), std::vector<std::uint32_t>(4, 0));
  EXPECT_EQ(holder.GetChild(), nullptr);
}

TEST(SingleChildContainer, PaintsItsChild) {
  Holder holder;
  Leaf child;
  holder.SetChild(&child);
  tests::RenderSurface surface(2, 2);
  const D2D1_RECT_F rect{0, 0, 2, 2};
  surface.Draw([&] { holder.Paint(surface.Target(), &rect); });
  EXPECT_EQ(child.paints.size(), 1U);
}

TEST(SingleChildContainer, IsDirtyWhenItOrItsChildIs) {
  Holder holder;
  Leaf child;
  holder.SetChild(&child);
  EXPECT_TRUE(holder.IsDirty());
  holder.dirty = false;
  EXPECT_TRUE(holder.IsDirty());
  child.dirty = false;
  EXPECT_FALSE(holder.IsDirty());
}

class Sized : public SingleChildContainer {
public:
  void OnWidthChanged() override { calls.push_back("width"); }
  void OnHeightChanged() override { calls.push_back("height"); }
  Calls calls;
};

TEST(SingleChildContainer, OverridesHearOfSizeChangesThoughTheBaseListens) {
  Sized sized;
  sized.Width.Set(1);
  sized.Height.Set(1);
  EXPECT_EQ(sized.calls, (Calls{"width", "height"}));
}

} // namespace

} // namespace lumenor
