#include "dock/flyouts/DockButton.h"

#include <gtest/gtest.h>

#include "content/Documents.h"
#include "dock/dragdrop/DragState.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "dock/Rectangles.h"
#include "dock/TestBar.h"
#include "toolkit/drawing/IButtonPainter.h"

namespace lumenor {

namespace {

/// Draws nothing and counts how often it was attached.
class PlainPainter : public IButtonPainter {
public:
  void Paint(RenderTargetPtr, const D2D1_RECT_F *) override {}
  void Attach(Button *newButton) override {
    IButtonPainter::Attach(newButton);
    ++attaches;
  }

  int attaches = 0;
};

class DockButtonTest : public ::testing::Test {
protected:
  DockButtonTest() { draggedButton = nullptr; }
  ~DockButtonTest() override { draggedButton = nullptr; }

  /// A button of the bar, 77 by 77 at (30, 0).
  std::shared_ptr<DockButton> MakeButton(const Element &element) {
    auto button = std::make_shared<DockButton>(painter, element, &visibilityListener);
    const RECT bounds = {30, 0, 107, 77};
    button->SetBounds(&bounds);
    bar.canvas.AddChild(button.get());
    button->DragBegin.AddListener(&dragListener);
    return button;
  }

  /// A button whose flyout lists `rows`.
  std::shared_ptr<DockButton> MakeFlyoutButton(const ElementList &rows) {
    SaveDocument(rows, L"Lumenor.Test.Folder");
    return MakeButton(MakeElement(L"Folder", L"xml", L"Lumenor.Test.Folder"));
  }

  LRESULT MoveMouse(const DockButton &button, int x, int y) {
    return ::SendMessageW(button.handle, WM_MOUSEMOVE, 0, MAKELPARAM(x, y));
  }

  void OnDragBegin(ButtonEventArgs *args) { dragged.push_back(args->sender); }
  void OnVisible(PropertyChangeEventArgs<lumenor::Visibility> *args) { heard.push_back(args->newValue); }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  TestBar bar;
  std::shared_ptr<PlainPainter> painter = std::make_shared<PlainPainter>();
  std::vector<Button *> dragged;
  std::vector<lumenor::Visibility> heard;
  TypedEventListener<DockButtonTest, ButtonEventArgs> dragListener{this, &DockButtonTest::OnDragBegin};
  TypedEventListener<DockButtonTest, PropertyChangeEventArgs<lumenor::Visibility>> visibilityListener{
      this, &DockButtonTest::OnVisible};
};

TEST_F(DockButtonTest, CarriesItsElement) {
  const auto button = MakeButton(MakeElement(L"Mail", L"exe", L"mail.exe"));
  EXPECT_EQ(MakeElement(L"Mail", L"exe", L"mail.exe"), button->GetElement());
  EXPECT_EQ(L"Tip of Mail", button->Name.Get());
  EXPECT_EQ(0, button->Draggable.Get());
  EXPECT_EQ(nullptr, button->GetFlyout());
  EXPECT_STREQ(L"DragBegin", button->DragBegin.Name());
}

TEST_F(DockButtonTest, AttachesItsPainterWithItsWindow) {
  const auto button = std::make_shared<DockButton>(painter, MakeElement(L"Mail"), nullptr);
  EXPECT_EQ(0, painter->attaches);
  bar.canvas.AddChild(button.get());
  EXPECT_EQ(1, painter->attaches);
  EXPECT_EQ(button.get(), painter->GetButton());
}

TEST_F(DockButtonTest, ListsItsDocumentInAFlyout) {
  const auto button = MakeFlyoutButton({MakeElement(L"One"), MakeElement(L"Two")});
  ASSERT_NE(nullptr, button->GetFlyout());
  ASSERT_EQ(2u, button->GetFlyout()->GetItems().size());
  EXPECT_EQ(L"One", button->GetFlyout()->GetItems()[0]->GetElement().Head);
  EXPECT_EQ(L"Two", button->GetFlyout()->GetItems()[1]->GetElement().Head);
}

TEST_F(DockButtonTest, HeadsItsFlyoutWithItsLabel) {
  const auto button = MakeFlyoutButton({MakeElement(L"One")});
  auto *const root = dynamic_cast<DockPanel *>(button->GetFlyout()->GetChild());
  auto *const list = dynamic_cast<StackPanel *>(root->GetChildren().at(1));
  const auto *const header = dynamic_cast<TextElement *>(list->GetChildren().at(0));
  ASSERT_NE(nullptr, header);
  EXPECT_EQ(L"Folder", header->Text.Get());
}

TEST_F(DockButtonTest, HasAnEmptyFlyoutForAMissingDocument) {
  const auto button = MakeButton(MakeElement(L"Folder", L"xml", L"Lumenor.Test.Missing"));
  ASSERT_NE(nullptr, button->GetFlyout());
  EXPECT_TRUE(button->GetFlyout()->GetItems().empty());
}

TEST_F(DockButtonTest, TellsAListenerOfItsFlyout) {
  const auto button = MakeFlyoutButton({MakeElement(L"One")});
  heard.clear();
  button->GetFlyout()->ToggleVisibility();
  button->GetFlyout()->ToggleVisibility();
  EXPECT_EQ(std::vector<lumenor::Visibility>({lumenor::Visibility::Visible, lumenor::Visibility::Hidden}), heard);
}

TEST_F(DockButtonTest, OwnsTheFlyoutsWindowByTheBar) {
  const auto button = MakeFlyoutButton({MakeElement(L"One")});
  EXPECT_EQ(bar.handle, ::GetWindow(button->GetFlyout()->handle, GW_OWNER));
  EXPECT_FALSE(::IsWindowVisible(button->GetFlyout()->handle));
}

TEST_F(DockButtonTest, TakesItsOpenFlyoutAlongWhenItGoes) {
  const auto button = MakeFlyoutButton({MakeElement(L"One")});
  const HWND flyout = button->GetFlyout()->handle;
  button->GetFlyout()->ToggleVisibility();
  ASSERT_TRUE(::IsWindowVisible(flyout));
  bar.canvas.RemoveChild(button.get());
  EXPECT_FALSE(::IsWindow(flyout));
}

TEST_F(DockButtonTest, OpensItsFlyoutUnderItself) {
  const auto button = MakeFlyoutButton({MakeElement(L"One"), MakeElement(L"Two")});
  // The bar stands at (100, 200), the flyout is 40 high for its header and for each row.
  EXPECT_EQ(Rect(130, 279, 370, 399), button->GetFlyoutRect());
}

TEST_F(DockButtonTest, OpensItsFlyoutOverItselfAtTheScreensEnd) {
  bar.Top.Set(947);
  const auto button = MakeFlyoutButton({MakeElement(L"One"), MakeElement(L"Two")});
  EXPECT_EQ(Rect(130, 825, 370, 945), button->GetFlyoutRect());
}

TEST_F(DockButtonTest, CountsOnAUsualFlyoutWhenItHasNone) {
  const auto button = MakeButton(MakeElement(L"Mail"));
  EXPECT_EQ(Rect(130, 279, 370, 521), button->GetFlyoutRect());
}

TEST_F(DockButtonTest, TakesItsPlaceForTheScreensWithoutAParent) {
  DockButton button(painter, MakeElement(L"Mail"), nullptr);
  const RECT bounds = {30, 10, 107, 87};
  button.SetBounds(&bounds);
  EXPECT_EQ(Rect(30, 89, 270, 331), button.GetFlyoutRect());
}

TEST_F(DockButtonTest, TakesAMoveThatDoesNotMoveForDone) {
  const auto button = MakeButton(MakeElement(L"Mail"));
  EXPECT_EQ(0, MoveMouse(*button, 5, 6));
  button->IsMouseOver.Set(0);
  EXPECT_EQ(1, MoveMouse(*button, 5, 6));
  EXPECT_EQ(0, button->IsMouseOver.Get());
}

TEST_F(DockButtonTest, PassesRealMovesOn) {
  const auto button = MakeButton(MakeElement(L"Mail"));
  for (const POINT point : {POINT{0, 0}, POINT{1, 0}, POINT{1, 1}}) {
    button->IsMouseOver.Set(0);
    MoveMouse(*button, point.x, point.y);
    EXPECT_EQ(1, button->IsMouseOver.Get());
  }
}

TEST_F(DockButtonTest, ForgetsThePositionWhenTheMouseLeaves) {
  const auto button = MakeButton(MakeElement(L"Mail"));
  MoveMouse(*button, 5, 6);
  ::SendMessageW(button->handle, WM_MOUSELEAVE, 0, 0);
  EXPECT_EQ(0, button->IsMouseOver.Get());
  MoveMouse(*button, 5, 6);
  EXPECT_EQ(1, button->IsMouseOver.Get());
}

TEST_F(DockButtonTest, BeginsADragWhenAPressMoves) {
  const auto button = MakeButton(MakeElement(L"Mail"));
  button->Draggable.Set(1);
  ::SendMessageW(button->handle, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 6));
  MoveMouse(*button, 6, 6);
  EXPECT_EQ(std::vector<Button *>({button.get()}), dragged);
  EXPECT_EQ(button->handle, draggedButton);
  EXPECT_EQ(1, button->IsMouseOver.Get());
}

TEST_F(DockButtonTest, BeginsADragOnlyOnce) {
  const auto button = MakeButton(MakeElement(L"Mail"));
  button->Draggable.Set(1);
  button->IsPressed.Set(1);
  MoveMouse(*button, 6, 6);
  MoveMouse(*button, 7, 6);
  EXPECT_EQ(std::vector<Button *>({button.get()}), dragged);
}

TEST_F(DockButtonTest, BeginsADragAgainAfterAnother) {
  const auto button = MakeButton(MakeElement(L"Mail"));
  button->Draggable.Set(1);
  button->IsPressed.Set(1);
  MoveMouse(*button, 6, 6);
  draggedButton = bar.handle;
  MoveMouse(*button, 7, 6);
  EXPECT_EQ(2u, dragged.size());
}

TEST_F(DockButtonTest, BeginsNoDragWithoutAPress) {
  const auto button = MakeButton(MakeElement(L"Mail"));
  button->Draggable.Set(1);
  MoveMouse(*button, 6, 6);
  EXPECT_TRUE(dragged.empty());
  EXPECT_EQ(nullptr, draggedButton);
}

TEST_F(DockButtonTest, BeginsNoDragUnlessItIsDraggable) {
  const auto button = MakeButton(MakeElement(L"Mail"));
  button->IsPressed.Set(1);
  MoveMouse(*button, 6, 6);
  EXPECT_TRUE(dragged.empty());
  EXPECT_EQ(nullptr, draggedButton);
}

/// Opens and closes the flyout of a clicked button, as the bar does.
struct Opener {
  void OnClick(ButtonEventArgs *args) {
    auto *const button = static_cast<DockButton *>(args->sender);
    button->GetFlyout()->SetBounds(button->GetFlyoutRect());
    button->GetFlyout()->ToggleVisibility();
    ++clicks;
  }

  TypedEventListener<Opener, ButtonEventArgs> listener{this, &Opener::OnClick};
  int clicks = 0;
};

TEST_F(DockButtonTest, OpensItsFlyoutAgainWhenItIsClickedWhileThatIsOpen) {
  const auto button = MakeFlyoutButton({MakeElement(L"One")});
  Opener opener;
  button->Click.AddListener(&opener.listener);
  ClickAt({150, 220});
  ASSERT_TRUE(desk::PumpUntil([&] { return ::IsWindowVisible(button->GetFlyout()->handle); }));
  heard.clear();
  ClickAt({190, 260}); // elsewhere on the button: two clicks on one place are a double click
  EXPECT_TRUE(desk::PumpUntil([&] { return opener.clicks == 2; }));
  EXPECT_TRUE(::IsWindowVisible(button->GetFlyout()->handle));
  EXPECT_EQ(std::vector<lumenor::Visibility>({lumenor::Visibility::Hidden, lumenor::Visibility::Visible}), heard);
}

} // namespace

} // namespace lumenor
