#include "dock/flyouts/FlyoutWindow.h"

#include <gmock/gmock.h>

#include "dock/flyouts/DockButton.h"
#include "dock/Rectangles.h"
#include "dock/TestBar.h"
#include "drawing/Pictures.h"
#include "support/Recorder.h"

namespace lumenor {

namespace {

constexpr RECT givenBounds = {300, 400, 540, 999};

const ElementList threeElements = {MakeElement(L"Mail"), MakeElement(L"News"), MakeElement(L"Weather")};

class Flyout : public ::testing::Test {
protected:
  /// Counts what `flyout` tells of its showing and hiding.
  void ListenTo(FlyoutWindow &flyout) { flyout.Visible.AddListener(&listener); }

  void OnVisible(PropertyChangeEventArgs<lumenor::Visibility> *args) { heard.push_back(args->newValue); }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  std::vector<lumenor::Visibility> heard;
  TypedEventListener<Flyout, PropertyChangeEventArgs<lumenor::Visibility>> listener{this, &Flyout::OnVisible};
};

TEST_F(Flyout, StartsHiddenWithoutAWindow) {
  const TestFlyout flyout(givenBounds, L"Title", threeElements);
  EXPECT_EQ(lumenor::Visibility::Hidden, flyout.Visibility.Get());
  EXPECT_EQ(nullptr, flyout.handle);
  EXPECT_EQ(103, flyout.dialogId);
}

TEST_F(Flyout, TakesItsPlaceFromTheBounds) {
  const TestFlyout flyout(givenBounds, L"Title", {});
  EXPECT_EQ(300, flyout.Left.Get());
  EXPECT_EQ(400, flyout.Top.Get());
  EXPECT_EQ(240, flyout.Width.Get());
  EXPECT_EQ(599, flyout.Height.Get());
}

TEST_F(Flyout, ShowsTheTitleInItsHeader) {
  const TestFlyout flyout(givenBounds, L"Title", {});
  const TextElement &header = flyout.Header();
  EXPECT_EQ(L"Title", header.Text.Get());
  EXPECT_EQ((Margin{6, 6, 0, 0}), header.Margin.Get());
  EXPECT_EQ(12.0F, header.FontSize.Get());
  EXPECT_EQ(DWRITE_FONT_WEIGHT_MEDIUM, header.FontWeight.Get());
  EXPECT_EQ((Color{1, 1, 1, 1}), header.Color.Get());
  EXPECT_EQ(DWRITE_TEXT_ALIGNMENT_LEADING, header.TextAlignment.Get());
  EXPECT_EQ(40, header.DesiredHeight.Get());
}

TEST_F(Flyout, HasNoFrameAndLiesOnTopOfAll) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  ASSERT_NE(nullptr, flyout.Create(nullptr));
  EXPECT_EQ(0, ::GetWindowLongW(flyout.handle, GWL_STYLE) & (WS_CAPTION | WS_THICKFRAME));
  EXPECT_EQ(WS_EX_LAYERED | WS_EX_TOPMOST,
            ::GetWindowLongW(flyout.handle, GWL_EXSTYLE) & (WS_EX_LAYERED | WS_EX_TOPMOST));
  EXPECT_FALSE(::IsWindowVisible(flyout.handle));
}

/// A flyout whose frame comes back, but for the bit that a flyout keeps, before it takes it away itself.
class FramedFlyout : public TestFlyout {
public:
  using TestFlyout::TestFlyout;

  void InitializeComponent() override {
    const LONG style = ::GetWindowLongW(handle, GWL_STYLE);
    ::SetWindowLongW(handle, GWL_STYLE, style | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | DS_ABSALIGN);
    TestFlyout::InitializeComponent();
  }
};

TEST_F(Flyout, KeepsNothingOfAFrame) {
  FramedFlyout flyout(givenBounds, L"Title", threeElements);
  ASSERT_NE(nullptr, flyout.Create(nullptr));
  EXPECT_EQ(DS_ABSALIGN, ::GetWindowLongW(flyout.handle, GWL_STYLE) & 0xCC0001);
}

TEST_F(Flyout, MakesNoRowsWithoutElements) {
  TestFlyout flyout(givenBounds, L"Title", {});
  ASSERT_NE(nullptr, flyout.Create(nullptr));
  EXPECT_EQ(0, flyout.creations);
  EXPECT_TRUE(flyout.GetItems().empty());
}

TEST_F(Flyout, IsAsHighAsItsHeaderWithoutElements) {
  TestFlyout flyout(givenBounds, L"Title", {});
  flyout.Create(nullptr);
  flyout.SetBounds({10, 20, 250, 999});
  EXPECT_EQ(Rect(10, 20, 250, 60), flyout.Bounds());
  EXPECT_EQ(Rect(10, 20, 250, 60), ScreenRect(flyout.handle));
}

TEST_F(Flyout, MakesItsRowsOnceWithItsWindow) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  ASSERT_NE(nullptr, flyout.Create(nullptr));
  EXPECT_EQ(1, flyout.creations);
  EXPECT_EQ(3u, flyout.GetItems().size());
}

TEST_F(Flyout, IsAsHighAsItsHeaderAndItsRows) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  EXPECT_EQ(Rect(300, 400, 540, 560), flyout.Bounds());
  EXPECT_EQ(Rect(300, 400, 540, 560), ScreenRect(flyout.handle));
  EXPECT_EQ(240, flyout.Width.Get());
  EXPECT_EQ(160, flyout.Height.Get());
  EXPECT_EQ(240, flyout.DesiredWidth.Get());
  EXPECT_EQ(160, flyout.DesiredHeight.Get());
}

TEST_F(Flyout, IsAsHighAsItsRowsWhenTheHeaderHasNoHeight) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.SetHeaderHeight(0);
  flyout.Create(nullptr);
  EXPECT_EQ(Rect(300, 400, 540, 520), ScreenRect(flyout.handle));
}

TEST_F(Flyout, SetsItsRowsUnderTheHeader) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  ASSERT_EQ(3u, flyout.GetItems().size());
  EXPECT_EQ(Rect(300, 440, 540, 480), ScreenRect(flyout.GetItems()[0]->GetHandle()));
  EXPECT_EQ(Rect(300, 480, 540, 520), ScreenRect(flyout.GetItems()[1]->GetHandle()));
  EXPECT_EQ(Rect(300, 520, 540, 560), ScreenRect(flyout.GetItems()[2]->GetHandle()));
}

TEST_F(Flyout, NumbersItsRowsFrom3000) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  ASSERT_EQ(3u, flyout.GetItems().size());
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(3000 + i, ::GetDlgCtrlID(flyout.GetItems()[static_cast<std::size_t>(i)]->GetHandle()));
}

TEST_F(Flyout, GivesEachRowItsElementAndToolTip) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  ASSERT_EQ(3u, flyout.GetItems().size());
  EXPECT_EQ(threeElements[1], flyout.GetItems()[1]->GetElement());
  EXPECT_EQ(L"Tip of News", flyout.GetItems()[1]->Name.Get());
}

TEST_F(Flyout, ReplacesItsRowsWhenTheyAreMadeAnew) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  const HWND formerRow = flyout.GetItems()[0]->GetHandle();
  flyout.SetElements({MakeElement(L"Only")});
  flyout.CreateItems();
  EXPECT_FALSE(::IsWindow(formerRow));
  ASSERT_EQ(1u, flyout.GetItems().size());
  EXPECT_EQ(Rect(300, 440, 540, 480), ScreenRect(flyout.GetItems()[0]->GetHandle()));
  EXPECT_EQ(Rect(300, 400, 540, 480), ScreenRect(flyout.handle));
}

TEST_F(Flyout, MovesToNewBounds) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  flyout.SetBounds({20, 30, 280, 999});
  EXPECT_EQ(Rect(20, 30, 280, 190), ScreenRect(flyout.handle));
  EXPECT_EQ(20, flyout.Left.Get());
  EXPECT_EQ(30, flyout.Top.Get());
  EXPECT_EQ(260, flyout.Width.Get());
  EXPECT_EQ(160, flyout.Height.Get());
}

TEST_F(Flyout, TakesNewBoundsWithoutAWindow) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.SetBounds({20, 30, 260, 999});
  EXPECT_EQ(Rect(20, 30, 260, 70), flyout.Bounds());
  EXPECT_EQ(40, flyout.Height.Get());
}

TEST_F(Flyout, SpreadsItsPlateOverItself) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  auto *const root = dynamic_cast<DockPanel *>(flyout.GetChild());
  ASSERT_NE(nullptr, root);
  const UIElement *const plate = root->GetChildren().at(0);
  flyout.SetBounds({20, 30, 280, 999});
  EXPECT_EQ(0, plate->Left.Get());
  EXPECT_EQ(0, plate->Top.Get());
  EXPECT_EQ(260, plate->Width.Get());
  EXPECT_EQ(160, plate->Height.Get());
}

TEST_F(Flyout, TogglesBetweenVisibleAndHidden) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  flyout.ToggleVisibility();
  EXPECT_EQ(lumenor::Visibility::Visible, flyout.Visibility.Get());
  EXPECT_TRUE(::IsWindowVisible(flyout.handle));
  flyout.ToggleVisibility();
  EXPECT_EQ(lumenor::Visibility::Hidden, flyout.Visibility.Get());
  EXPECT_FALSE(::IsWindowVisible(flyout.handle));
}

TEST_F(Flyout, TogglesFromCollapsedToVisible) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Visibility.Set(lumenor::Visibility::Collapsed);
  flyout.ToggleVisibility();
  EXPECT_EQ(lumenor::Visibility::Visible, flyout.Visibility.Get());
}

TEST_F(Flyout, TellsOfItsShowingAndHiding) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  ListenTo(flyout);
  flyout.ToggleVisibility();
  flyout.ToggleVisibility();
  EXPECT_EQ(std::vector<lumenor::Visibility>({lumenor::Visibility::Visible, lumenor::Visibility::Hidden}), heard);
  EXPECT_STREQ(L"Visible", flyout.Visible.Name());
}

TEST_F(Flyout, AppearsAtItsBounds) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  ::SetWindowPos(flyout.handle, nullptr, 5, 6, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  flyout.ToggleVisibility();
  EXPECT_EQ(Rect(300, 400, 540, 560), ScreenRect(flyout.handle));
}

TEST_F(Flyout, HidesWhenTheUserClicksElsewhere) {
  const desk::Backdrop elsewhere({700, 100, 800, 200}, RGB(0, 128, 0));
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  ListenTo(flyout);
  flyout.ToggleVisibility();
  desk::PumpAll();
  ClickAt({750, 150});
  EXPECT_TRUE(desk::PumpUntil([&] { return !::IsWindowVisible(flyout.handle); }));
  EXPECT_EQ(lumenor::Visibility::Hidden, flyout.Visibility.Get());
  EXPECT_EQ(std::vector<lumenor::Visibility>({lumenor::Visibility::Visible, lumenor::Visibility::Hidden}), heard);
}

TEST_F(Flyout, KeepsItsBoundsWhenItLosesTheActivation) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  flyout.SetBounds({20, 30, 260, 999});
  flyout.ToggleVisibility();
  ::SendMessageW(flyout.handle, WM_ACTIVATE, WA_INACTIVE, 0);
  EXPECT_FALSE(::IsWindowVisible(flyout.handle));
  EXPECT_EQ(Rect(20, 30, 260, 190), flyout.Bounds());
  flyout.ToggleVisibility();
  EXPECT_TRUE(::IsWindowVisible(flyout.handle));
  EXPECT_EQ(Rect(20, 30, 260, 190), ScreenRect(flyout.handle));
}

TEST_F(Flyout, StaysWhenItIsActivated) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  flyout.ToggleVisibility();
  EXPECT_EQ(0, ::SendMessageW(flyout.handle, WM_ACTIVATE, WA_CLICKACTIVE, 0));
  EXPECT_TRUE(::IsWindowVisible(flyout.handle));
}

TEST_F(Flyout, DestroysTheWindowsOfItsRowsFirst) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  const HWND row = flyout.GetItems()[2]->GetHandle();
  EXPECT_EQ(0, ::SendMessageW(flyout.handle, WM_DESTROY, 0, 0));
  EXPECT_FALSE(::IsWindow(row));
}

TEST_F(Flyout, HidesBeforeTheChosenElementRuns) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  flyout.ToggleVisibility();
  desk::PumpAll();
  ClickAt({420, 500});
  EXPECT_TRUE(desk::PumpUntil([&] { return !flyout.chosen.empty(); }));
  EXPECT_EQ(ElementList({threeElements[1]}), flyout.chosen);
  EXPECT_EQ(std::vector<bool>({false}), flyout.shownWhenChosen);
}

TEST_F(Flyout, SurvivesAChoiceThatMakesTheRowsAnew) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  flyout.onChosen = [&] {
    flyout.SetElements({});
    flyout.CreateItems();
  };
  const std::weak_ptr<DockButton> row = flyout.GetItems()[2];
  const HWND rowWindow = row.lock()->GetHandle();
  ::SendMessageW(rowWindow, WM_COMMAND, 0, reinterpret_cast<LPARAM>(rowWindow));
  EXPECT_FALSE(::IsWindow(rowWindow));
  EXPECT_FALSE(row.expired());
  EXPECT_EQ(ElementList({threeElements[2]}), flyout.chosen);
}

TEST_F(Flyout, IgnoresAClickOfNobody) {
  TestFlyout flyout(givenBounds, L"Title", threeElements);
  flyout.Create(nullptr);
  flyout.ToggleVisibility();
  ButtonEventArgs nobody;
  flyout.GetItems()[0]->Click.Fire(&nobody);
  EXPECT_TRUE(flyout.chosen.empty());
  EXPECT_TRUE(::IsWindowVisible(flyout.handle));
}

TEST_F(Flyout, RunsTheActionOfTheChosenElement) {
  const tests::Recorder recorder(folders);
  const std::wstring program = folders.Root() + L"\\program.exe";
  recorder.InstallAs(program);
  const Element runs = MakeElement(L"Run", L"exe", L"\"" + program + L"\"");
  FlyoutWindow flyout(givenBounds, L"Title", {runs});
  flyout.Create(nullptr);
  const HWND row = flyout.GetItems()[0]->GetHandle();
  ::SendMessageW(row, WM_COMMAND, 0, reinterpret_cast<LPARAM>(row));
  EXPECT_THAT(recorder.WaitForCommandLines(1), testing::ElementsAre(testing::HasSubstr(program)));
  ::DestroyWindow(flyout.handle);
}

/// How many of the pixels of a row of the screen are brighter than a plate over black can be.
int BrightPixels(LONG left, LONG right, LONG top, LONG bottom) {
  int bright = 0;
  for (LONG y = top; y < bottom; ++y)
    for (LONG x = left; x < right; ++x)
      bright += (desk::PixelAt({x, y}) & 0xFF) > 0x60;
  return bright;
}

TEST_F(Flyout, DrawsPictureAndLabelOfARowBesideEachOther) {
  const desk::Backdrop behind({290, 390, 550, 490}, RGB(0, 0, 0));
  const std::wstring picture = folders.Root() + L"\\blue.png";
  tests::WritePicture(picture, tests::SolidPicture(24, 24, 0xFF0000FF));
  TestFlyout flyout(givenBounds, L"", {MakeElement(L"HHHHHH", L"", L"", picture)});
  flyout.Create(nullptr);
  flyout.ToggleVisibility();
  ASSERT_TRUE(desk::PumpUntil([] { return desk::PixelAt({320, 460}) == 0x0000FF; }));
  // The picture is 24 by 24 at (8, 8) of the row, the label begins at 42.
  EXPECT_EQ(24 * 24, BrightPixels(300, 342, 440, 480));
  EXPECT_EQ(24, BrightPixels(308, 309, 440, 480));
  EXPECT_EQ(24, BrightPixels(331, 332, 440, 480));
  EXPECT_LT(0, BrightPixels(342, 348, 445, 475));
  EXPECT_EQ(0, BrightPixels(342, 540, 440, 445));
  EXPECT_EQ(0, BrightPixels(342, 540, 475, 480));
}

} // namespace

} // namespace lumenor
