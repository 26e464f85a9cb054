#include "toolkit/UIElement.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/OperationSpy.h"
#include "support/RenderSurface.h"
#include "toolkit/ColorRectangle.h"
#include "toolkit/TestElements.h"

namespace lumenor {

namespace {

using tests::Box;
using tests::BoxOf;
using tests::Leaf;
using tests::TopLevel;
using Calls = std::vector<std::string>;

TEST(UIElement, StartsWithItsDefaults) {
  const Leaf leaf;
  EXPECT_EQ(BoxOf(leaf), (Box{0, 0, 0, 0}));
  EXPECT_EQ(leaf.DesiredWidth.Get(), 0);
  EXPECT_EQ(leaf.DesiredHeight.Get(), 0);
  EXPECT_EQ(leaf.MinWidth.Get(), 0);
  EXPECT_EQ(leaf.MinHeight.Get(), 0);
  EXPECT_EQ(leaf.MaxWidth.Get(), 0x7FFFFFFF);
  EXPECT_EQ(leaf.MaxHeight.Get(), 0x7FFFFFFF);
  EXPECT_EQ(leaf.HorizontalAlignment.Get(), HorizontalAlignment::Stretch);
  EXPECT_EQ(leaf.VerticalAlignment.Get(), VerticalAlignment::Stretch);
  EXPECT_EQ(leaf.Visibility.Get(), Visibility::Visible);
  EXPECT_EQ(leaf.Margin.Get(), Margin());
  EXPECT_EQ(leaf.Opacity.Get(), 255);
  EXPECT_EQ(leaf.Name.Get(), L"");
  EXPECT_EQ(leaf.parent, nullptr);
}

TEST(UIElement, IsDirtyFromTheStartAndForEver) {
  Leaf leaf;
  EXPECT_TRUE(leaf.UIElement::IsDirty());
  leaf.Invalidate();
  EXPECT_TRUE(leaf.UIElement::IsDirty());
}

TEST(UIElement, InvalidateWithoutParentSetsTheFlagAndEnds) {
  Leaf leaf;
  leaf.dirty = false;
  leaf.UIElement::Invalidate();
  EXPECT_TRUE(leaf.dirty);
}

TEST(UIElement, InvalidateClimbsToTheRoot) {
  Leaf root, middle, leaf;
  middle.parent = &root;
  leaf.parent = &middle;
  root.dirty = middle.dirty = false;
  leaf.Invalidate();
  EXPECT_EQ(root.calls, Calls{"Invalidate"});
  EXPECT_TRUE(root.dirty && middle.dirty && leaf.dirty);
}

TEST(UIElement, SetBoundsSetsTheFourOneAfterTheOther) {
  Leaf leaf;
  tests::GeometryLog log(leaf);
  const RECT rectangle{5, 6, 25, 36};
  leaf.SetBounds(&rectangle);
  EXPECT_EQ(log.changes, (Calls{"Left 0 -> 5", "Top 0 -> 6", "Width 0 -> 20", "Height 0 -> 30"}));
  leaf.SetBounds(&rectangle);
  EXPECT_EQ(log.changes.size(), 4U) << "each by the plain rule";
}

class WidthReader {
public:
  explicit WidthReader(UIElement &element) : element(element), listener(MakeListener(this, &WidthReader::OnLeft)) {
    element.Left.changed.AddListener(listener.get());
  }
  void OnLeft(PropertyChangeEventArgs<long> *) { width = element.Width.Get(); }
  long width = -1;

private:
  UIElement &element;
  std::shared_ptr<TypedEventListener<WidthReader, PropertyChangeEventArgs<long>>> listener;
};

TEST(UIElement, ListenerOnLeftSeesTheOldWidthDuringSetBounds) {
  Leaf leaf;
  leaf.Width.Set(3);
  const WidthReader reader(leaf);
  const RECT rectangle{5, 6, 25, 36};
  leaf.SetBounds(&rectangle);
  EXPECT_EQ(reader.width, 3);
}

TEST(UIElement, GroupOfChangesUpdatesOnceAtTheEnd) {
  Leaf leaf;
  leaf.BeginUpdate();
  leaf.BeginUpdate();
  leaf.EndUpdate();
  EXPECT_EQ(leaf.calls, Calls{});
  leaf.EndUpdate();
  EXPECT_EQ(leaf.calls, Calls{"Update"});
}

TEST(UIElement, EndUpdateWithoutABeginningStillUpdates) {
  Leaf leaf;
  leaf.EndUpdate();
  EXPECT_EQ(leaf.calls, Calls{"Update"});
  leaf.BeginUpdate();
  leaf.EndUpdate();
  EXPECT_EQ(leaf.calls, (Calls{"Update", "Update"})) << "the depth stayed at 0";
}

TEST(UIElement, RootOfATopLevelElementIsItself) {
  TopLevel top;
  EXPECT_EQ(top.GetRootElement(), &top);
  EXPECT_EQ(top.GetRootHandle(), top.GetHandle());
}

TEST(UIElement, RootWithoutWindowAndParentIsNull) {
  Leaf leaf;
  EXPECT_EQ(leaf.GetHandle(), nullptr);
  EXPECT_EQ(leaf.GetRootElement(), nullptr);
  EXPECT_EQ(leaf.GetRootHandle(), nullptr);
}

TEST(UIElement, RootIsTheParentsParentAndNoFurther) {
  TopLevel top;
  Leaf child, grandchild, deeper;
  child.parent = &top;
  grandchild.parent = &child;
  deeper.parent = &grandchild;
  EXPECT_EQ(grandchild.GetRootElement(), &top);
  EXPECT_EQ(grandchild.GetRootHandle(), top.GetHandle());
  EXPECT_EQ(child.GetRootElement(), nullptr);
  EXPECT_EQ(deeper.GetRootElement(), &child);
  EXPECT_EQ(deeper.GetRootHandle(), nullptr);
}

class PaintChild : public ::testing::Test {
protected:
  std::vector<std::uint32_t> Paint(UIElement *child) {
    return surface.Draw([&] { painter.PaintChild(surface.Target(), child, &parentRect); });
  }

  tests::RenderSurface surface{6, 5};
  Leaf painter;
  D2D1_RECT_F parentRect{1, 2, 6, 5};
};

TEST_F(PaintChild, GivesTheAbsoluteRectangle) {
  Leaf child;
  const RECT bounds{3, 4, 13, 24};
  child.SetBounds(&bounds);
  Paint(&child);
  ASSERT_EQ(child.paints.size(), 1U);
  EXPECT_EQ(child.paints[0].left, 4.0F);
  EXPECT_EQ(child.paints[0].top, 6.0F);
  EXPECT_EQ(child.paints[0].right, 14.0F);
  EXPECT_EQ(child.paints[0].bottom, 26.0F);
}

/// Fills everything, whatever its rectangle.
class Flood : public Leaf {
public:
  void Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) override {
    Leaf::Paint(renderTarget, rect);
    const D2D1_COLOR_F red{1, 0, 0, 1};
    renderTarget->Clear(&red);
  }
};

TEST_F(PaintChild, ClipsToTheChildsRectangleAndUnclipsAfterwards) {
  Flood child;
  const RECT bounds{1, 1, 4, 2};
  child.SetBounds(&bounds);
  constexpr std::uint32_t o = 0, X = 0xFFFF0000;
  EXPECT_EQ(Paint(&child), (std::vector<std::uint32_t>{o, o, o, o, o, o, //
                                                       o, o, o, o, o, o, //
                                                       o, o, o, o, o, o, //
                                                       o, o, X, X, X, o, //
                                                       o, o, o, o, o, o}));
  const auto everything = surface.Draw([&] {
    painter.PaintChild(surface.Target(), &child, &parentRect);
    child.Paint(surface.Target(), &parentRect);
  });
  EXPECT_EQ(everything, std::vector<std::uint32_t>(30, X));
}

TEST_F(PaintChild, LeavesOutNullHiddenAndCollapsed) {
  Flood child;
  const RECT bounds{0, 0, 3, 3};
  child.SetBounds(&bounds);
  const std::vector<std::uint32_t> nothing(30, 0);
  EXPECT_EQ(Paint(nullptr), nothing);
  child.Visibility.Set(Visibility::Hidden);
  EXPECT_EQ(Paint(&child), nothing);
  child.Visibility.Set(Visibility::Collapsed);
  EXPECT_EQ(Paint(&child), nothing);
  EXPECT_EQ(child.paints.size(), 0U);
}

TEST_F(PaintChild, PaintsAnElementOfZeroWidthIntoAnEmptyClip) {
  Flood child;
  const RECT bounds{1, 1, 1, 3};
  child.SetBounds(&bounds);
  EXPECT_EQ(Paint(&child), std::vector<std::uint32_t>(30, 0));
  EXPECT_EQ(child.paints.size(), 1U);
}

using PushClip = void(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, const D2D1_RECT_F *, D2D1_ANTIALIAS_MODE);
PushClip formerPushClip;
std::vector<D2D1_ANTIALIAS_MODE> clipModes;

void STDMETHODCALLTYPE RecordPushClip(ID2D1RenderTarget *target, const D2D1_RECT_F *rect, D2D1_ANTIALIAS_MODE mode) {
  clipModes.push_back(mode);
  formerPushClip(target, rect, mode);
}

TEST_F(PaintChild, ClipsWithSmoothEdges) {
  Leaf child;
  clipModes.clear();
  tests::OperationSpy spy(surface.Target().Get());
  formerPushClip = spy.Exchange<PushClip>(45, RecordPushClip);
  Paint(&child);
  EXPECT_EQ(clipModes, std::vector<D2D1_ANTIALIAS_MODE>{D2D1_ANTIALIAS_MODE_PER_PRIMITIVE});
}

TEST(ColorRectangle, FillsTheGivenRectangleWithItsColor) {
  tests::RenderSurface surface(4, 3);
  const RECT bounds{7, 8, 9, 10};
  ColorRectangle element(bounds, surface.Target(), Color{0, 0, 1, 0.5F});
  const D2D1_RECT_F rect{1, 1, 3, 3};
  constexpr std::uint32_t o = 0, X = 0x80000080;
  EXPECT_EQ(surface.Draw([&] { element.Paint(surface.Target(), &rect); }), (std::vector<std::uint32_t>{o, o, o, o, //
                                                                                                       o, X, X, o, //
                                                                                                       o, X, X, o}));
  EXPECT_EQ(element.GetCreationBounds().left, 7);
  EXPECT_EQ(element.GetCreationBounds().bottom, 10);
}

TEST(Control, NamesItsEventsAndStartsWithoutFocus) {
  class Plain : public Control {
    void Paint(RenderTargetPtr, const D2D1_RECT_F *) override {}
  } control;
  EXPECT_EQ(control.HasFocus.Get(), 0);
  std::vector<std::wstring> names;
  for (const Event<ControlEventArgs> *event :
       {&control.MouseDown, &control.MouseUp, &control.MouseMove, &control.MouseLeave, &control.MouseHover,
        &control.MouseWheelTurned, &control.KeyDown, &control.KeyUp})
    names.emplace_back(event->Name());
  EXPECT_EQ(names, (std::vector<std::wstring>{L"MouseDown", L"MouseUp", L"MouseMove", L"MouseLeave", L"MouseHover",
                                              L"MouseWheelTurned", L"KeyDown", L"KeyUp"}));
}

} // namespace

} // namespace lumenor
