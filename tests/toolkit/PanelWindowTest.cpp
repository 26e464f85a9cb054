// What all panels have in common: their window.

#include "toolkit/PanelWindow.h"

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "support/MessagePump.h"
#include "toolkit/Canvas.h"
#include "toolkit/DockPanel.h"
#include "toolkit/MessageRecorder.h"
#include "toolkit/StackPanel.h"
#include "toolkit/TestElements.h"

namespace lumenor {

namespace {

using tests::Box;
using tests::BoxOf;
using tests::TopLevel;

template <typename Panel> class Exposed : public Panel {
public:
  void OnDetached() override {
    Panel::OnDetached();
    ++detachments;
  }
  int detachments = 0;
  using UIElement::dirty;
};

template <typename Panel> class PanelWindowTest : public ::testing::Test {
protected:
  /// As a parent's child operation does.
  void Attach(UIElement &element, UIElement &parent) {
    element.parent = &parent;
    element.OnAttached();
  }
  HWND AttachPanel() {
    Attach(panel, top);
    top.calls.clear();
    return panel.GetHandle();
  }

  TopLevel top;
  Exposed<Panel> panel;
};

using Panels = ::testing::Types<StackPanel, DockPanel, Canvas>;
TYPED_TEST_SUITE(PanelWindowTest, Panels);

TYPED_TEST(PanelWindowTest, AttachedPanelGetsAnEmptyChildWindow) {
  EXPECT_EQ(this->panel.GetHandle(), nullptr);
  const HWND window = this->AttachPanel();
  ASSERT_TRUE(::IsWindow(window));
  EXPECT_EQ(::GetParent(window), this->top.GetHandle());
  EXPECT_EQ(BoxOf(window), (Box{0, 0, 0, 0}));
  EXPECT_EQ(::GetWindowLongW(window, GWL_STYLE), 0x52000000);
  EXPECT_EQ(::GetWindowLongW(window, GWL_EXSTYLE), 0);
  EXPECT_EQ(::GetWindowTextLengthW(window), 0);
}

TYPED_TEST(PanelWindowTest, WithoutParentWindowThereIsNone) {
  this->panel.OnAttached();
  EXPECT_EQ(this->panel.GetHandle(), nullptr);
  tests::Leaf windowless;
  this->Attach(this->panel, windowless);
  EXPECT_EQ(this->panel.GetHandle(), nullptr);
}

TYPED_TEST(PanelWindowTest, WindowsAreMadeTopDown) {
  StackPanel early, late;
  Exposed<TypeParam> child, lateChild;
  this->Attach(child, early);
  this->Attach(early, this->top);
  EXPECT_EQ(child.GetHandle(), nullptr) << "its parent had no window yet";
  this->Attach(late, this->top);
  this->Attach(lateChild, late);
  EXPECT_EQ(::GetParent(lateChild.GetHandle()), late.GetHandle());
}

TYPED_TEST(PanelWindowTest, DetachedPanelLosesItsWindow) {
  const HWND window = this->AttachPanel();
  this->panel.OnDetached();
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_EQ(this->panel.GetHandle(), nullptr);
  this->panel.OnDetached();
  EXPECT_EQ(this->panel.GetHandle(), nullptr) << "a second time there is nothing to destroy";
}

TYPED_TEST(PanelWindowTest, DestroyedPanelLeavesNoWindow) {
  auto doomed = std::make_unique<TypeParam>();
  this->Attach(*doomed, this->top);
  const HWND window = doomed->GetHandle();
  doomed.reset();
  EXPECT_FALSE(::IsWindow(window));
}

TYPED_TEST(PanelWindowTest, WindowFollowsTheSize) {
  const HWND window = this->AttachPanel();
  const RECT bounds{5, 6, 25, 36};
  this->panel.SetBounds(&bounds);
  EXPECT_EQ(BoxOf(window), (Box{5, 6, 20, 30}));
}

TYPED_TEST(PanelWindowTest, EachMoveRaisesTheWindowAboveItsSiblings) {
  const HWND window = this->AttachPanel();
  StackPanel sibling;
  this->Attach(sibling, this->top);
  sibling.Width.Set(10);
  ASSERT_EQ(tests::ChildWindows(this->top.GetHandle()), (std::vector<HWND>{sibling.GetHandle(), window}));
  this->panel.Width.Set(10);
  EXPECT_EQ(tests::ChildWindows(this->top.GetHandle()), (std::vector<HWND>{window, sibling.GetHandle()}));
  sibling.Height.Set(10);
  this->panel.Height.Set(10);
  EXPECT_EQ(tests::ChildWindows(this->top.GetHandle()), (std::vector<HWND>{window, sibling.GetHandle()}));
}

TYPED_TEST(PanelWindowTest, PaintBecomesAnInvalidationOfTheParent) {
  const HWND window = this->AttachPanel();
  const RECT bounds{5, 6, 25, 36};
  this->panel.SetBounds(&bounds);
  tests::PumpMessages();
  this->top.calls.clear();
  ::InvalidateRect(window, nullptr, FALSE);
  ::UpdateWindow(window);
  EXPECT_EQ(this->top.calls, std::vector<std::string>{"Invalidate"});
  EXPECT_FALSE(::GetUpdateRect(window, nullptr, FALSE)) << "the default procedure has validated it";
}

TYPED_TEST(PanelWindowTest, PaintOfACleanPanelInvalidatesNothing) {
  const HWND window = this->AttachPanel();
  const RECT bounds{5, 6, 25, 36};
  this->panel.SetBounds(&bounds);
  tests::PumpMessages();
  this->top.calls.clear();
  this->panel.dirty = false;
  ::InvalidateRect(window, nullptr, FALSE);
  ::UpdateWindow(window);
  EXPECT_EQ(this->top.calls, std::vector<std::string>{});
  EXPECT_FALSE(::GetUpdateRect(window, nullptr, FALSE));
}

TYPED_TEST(PanelWindowTest, PaintWithoutWindowIsHandledWithOne) {
  LRESULT result = 0;
  this->panel.parent = &this->top;
  EXPECT_EQ(this->panel.ProcessWindowMessage(nullptr, WM_PAINT, 0, 0, result), TRUE);
  EXPECT_EQ(result, 1);
  EXPECT_EQ(this->top.calls, std::vector<std::string>{});
}

TYPED_TEST(PanelWindowTest, CommandGoesBackToItsControlATurnLater) {
  const HWND window = this->AttachPanel();
  tests::PlainRecorder control;
  control.Create(window);
  const auto sender = reinterpret_cast<LPARAM>(control.handle);
  EXPECT_EQ(::SendMessageW(window, WM_COMMAND, MAKEWPARAM(7, BN_CLICKED), sender), 0);
  EXPECT_EQ(control.AllOf(WM_COMMAND).size(), 0U);
  tests::PumpMessages();
  EXPECT_EQ(control.AllOf(WM_COMMAND), (std::vector<tests::ReceivedMessage>{{WM_COMMAND, 7, sender}}));
}

TYPED_TEST(PanelWindowTest, CommandOfItselfOrOfNobodyIsSwallowed) {
  const HWND window = this->AttachPanel();
  tests::PumpMessages();
  for (const LPARAM sender : {reinterpret_cast<LPARAM>(window), LPARAM{0}, LPARAM{0x7FFFFF0}}) {
    LRESULT result = 5;
    EXPECT_EQ(this->panel.ProcessWindowMessage(window, WM_COMMAND, 7, sender, result), TRUE);
    EXPECT_EQ(result, 0);
  }
  MSG message;
  EXPECT_FALSE(::PeekMessageW(&message, nullptr, WM_COMMAND, WM_COMMAND, PM_NOREMOVE));
}

TYPED_TEST(PanelWindowTest, NothingElseIsHandled) {
  const HWND window = this->AttachPanel();
  LRESULT result = 5;
  for (const UINT message : {WM_NOTIFY, WM_LBUTTONDOWN, WM_ERASEBKGND, WM_SIZE, WM_USER})
    EXPECT_EQ(this->panel.ProcessWindowMessage(window, message, 0, 0, result), FALSE);
}

template <typename Panel> using MovingPanelTest = PanelWindowTest<Panel>;
using MovingPanels = ::testing::Types<StackPanel, DockPanel, Canvas>;
TYPED_TEST_SUITE(MovingPanelTest, MovingPanels);

template <typename Panel> class CountingPanel : public Panel {
public:
  void Layout() override {
    ++layouts;
    Panel::Layout();
  }
  int layouts = 0;
};

TYPED_TEST(MovingPanelTest, WindowFollowsThePlaceAndEachMoveLaysOut) {
  CountingPanel<TypeParam> counting;
  this->Attach(counting, this->top);
  counting.Left.Set(5);
  EXPECT_EQ(BoxOf(counting.GetHandle()), (Box{5, 0, 0, 0}));
  counting.Top.Set(6);
  EXPECT_EQ(BoxOf(counting.GetHandle()), (Box{5, 6, 0, 0}));
  counting.Width.Set(7);
  counting.Height.Set(8);
  EXPECT_EQ(counting.layouts, 4);
}

TYPED_TEST(MovingPanelTest, WithoutWindowItStillLaysOut) {
  CountingPanel<TypeParam> counting;
  counting.Left.Set(5);
  counting.Top.Set(6);
  counting.Width.Set(7);
  counting.Height.Set(8);
  EXPECT_EQ(counting.layouts, 4);
}

TEST(Canvas, LeavesItsChildrenWhereTheirOwnerPutThem) {
  Canvas canvas;
  tests::Leaf child(50, 60);
  const RECT bounds{3, 4, 13, 24};
  child.SetBounds(&bounds);
  canvas.AddChild(&child);
  canvas.Width.Set(100);
  canvas.Height.Set(100);
  child.DesiredWidth.Set(70);
  child.Margin.Set({1, 2, 3, 4});
  child.Visibility.Set(Visibility::Hidden);
  EXPECT_EQ(BoxOf(child), (Box{3, 4, 10, 20}));
  EXPECT_EQ(canvas.DesiredWidth.Get(), 0);
}

TEST(Container, DestroyedPanelLeavesItsChildrenAlone) {
  tests::Leaf child;
  {
    StackPanel panel;
    panel.AddChild(&child);
  }
  EXPECT_EQ(child.calls, std::vector<std::string>{"OnAttached"});
  child.DesiredWidth.Set(3);
  EXPECT_EQ(child.DesiredWidth.changed.Count(), 0U) << "the listener went with the panel";
}

} // namespace

} // namespace lumenor
