#include "dock/flyouts/DockGlowButtonPainter.h"

#include <gtest/gtest.h>

#include "content/Documents.h"
#include "dock/flyouts/DockButton.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "dock/TestBar.h"
#include "drawing/Pictures.h"
#include "toolkit/drawing/CommandNotFoundException.h"

namespace lumenor {

namespace {

constexpr std::uint32_t red = 0xFF0000, green = 0x00FF00, blue = 0x0000FF;

/// The bar's usual layout, with its picture out of the way of the arrow.
ButtonLayout BarLayout() {
  ButtonLayout layout;
  layout.fontSize = 10.0F;
  layout.imageLeft = 22;
  layout.imageRight = 23;
  layout.imageTop = 16;
  layout.imageBottom = 29;
  layout.textTop = 64;
  layout.textBottom = 29;
  return layout;
}

class DockGlowPainter : public ::testing::Test {
protected:
  DockGlowPainter() {
    tests::MakeFolders(folders.CommonFolder());
    tests::MakeFolders(folders.Root() + L"\\Dock");
    tests::MakeFolders(folders.Root() + L"\\resources");
    tests::WritePicture(folders.Root() + L"\\resources\\arrow-down.png", tests::SolidPicture(10, 10, 0xFF000000 | red));
    tests::WritePicture(folders.Root() + L"\\resources\\arrow-up.png", tests::SolidPicture(10, 10, 0xFF000000 | blue));
    tests::WritePicture(picture, tests::SolidPicture(32, 32, 0xFF000000 | green));
    SaveDocument({MakeElement(L"One")}, L"Lumenor.Test.Folder");
  }

  std::shared_ptr<DockGlowButtonPainter> MakePainter(const Element &element) {
    return std::make_shared<DockGlowButtonPainter>(bar.Target(), 0, element, BarLayout());
  }

  /// A button of the bar's size for `element` in the bar's upper left corner.
  std::shared_ptr<DockButton> MakeButton(const Element &element) {
    const auto button = std::make_shared<DockButton>(MakePainter(element), element, nullptr);
    const RECT bounds = {0, 0, 77, 77};
    button->SetBounds(&bounds);
    bar.canvas.AddChild(button.get());
    bar.Render();
    return button;
  }

  /// Whether the bar comes to show `color` at this point of its own.
  static bool Shows(int x, int y, std::uint32_t color) {
    return desk::PumpUntil([&] { return desk::PixelAt({100 + x, 200 + y}) == color; });
  }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const std::wstring picture = folders.Root() + L"\\green.png";
  const tests::CurrentFolder current{folders.Root() + L"\\Dock"};
  const desk::Backdrop behind{{90, 190, 510, 287}, RGB(255, 255, 255)};
  TestBar bar;
};

TEST_F(DockGlowPainter, DrawsThePictureOfItsElement) {
  const auto button = MakeButton(MakeElement(L"", L"exe", L"", picture));
  EXPECT_TRUE(Shows(38, 32, green));
}

TEST_F(DockGlowPainter, PointsDownWhileTheFlyoutIsClosed) {
  const auto button = MakeButton(MakeElement(L"", L"xml", L"Lumenor.Test.Folder", picture));
  EXPECT_TRUE(Shows(38, 69, red));
}

TEST_F(DockGlowPainter, PointsUpWhileTheFlyoutIsOpen) {
  const auto button = MakeButton(MakeElement(L"", L"xml", L"Lumenor.Test.Folder", picture));
  ASSERT_TRUE(Shows(38, 69, red));
  button->GetFlyout()->SetBounds(button->GetFlyoutRect());
  button->GetFlyout()->ToggleVisibility();
  bar.Render();
  EXPECT_TRUE(Shows(38, 69, blue));
}

TEST_F(DockGlowPainter, TurnsTheArrowWheneverTheFlyoutComesOrGoes) {
  const auto button = MakeButton(MakeElement(L"", L"xml", L"Lumenor.Test.Folder", picture));
  ASSERT_TRUE(Shows(38, 69, red));
  button->GetFlyout()->SetBounds(button->GetFlyoutRect());
  button->GetFlyout()->Visibility.Set(Visibility::Visible);
  EXPECT_TRUE(Shows(38, 69, blue));
  button->GetFlyout()->Visibility.Set(Visibility::Hidden);
  EXPECT_TRUE(Shows(38, 69, red));
}

TEST_F(DockGlowPainter, SetsTheArrowInItsPlace) {
  const auto button = MakeButton(MakeElement(L"", L"xml", L"Lumenor.Test.Folder", picture));
  ASSERT_TRUE(Shows(38, 69, red));
  EXPECT_TRUE(Shows(33, 64, red));
  EXPECT_TRUE(Shows(42, 73, red));
  EXPECT_FALSE(desk::PixelAt({132, 264}) == red || desk::PixelAt({133, 263}) == red);
  EXPECT_FALSE(desk::PixelAt({143, 273}) == red || desk::PixelAt({142, 274}) == red);
}

TEST_F(DockGlowPainter, DrawsNoArrowForOtherElements) {
  const auto button = MakeButton(MakeElement(L"", L"exe", L"", picture));
  ASSERT_TRUE(Shows(38, 32, green));
  EXPECT_TRUE(Shows(38, 69, 0xFFFFFF));
}

TEST_F(DockGlowPainter, DrawsNothingForAButtonThatIsNotVisible) {
  const auto button = MakeButton(MakeElement(L"", L"xml", L"Lumenor.Test.Folder", picture));
  ASSERT_TRUE(Shows(38, 69, red));
  ::ShowWindow(button->handle, SW_HIDE);
  bar.Render();
  EXPECT_TRUE(Shows(38, 69, 0xFFFFFF));
  EXPECT_TRUE(Shows(38, 32, 0xFFFFFF));
}

TEST_F(DockGlowPainter, NeedsAPictureOrAProgramThatExists) {
  EXPECT_THROW(MakePainter(MakeElement(L"Gone", L"exe", L"C:\\no\\such\\program.exe")), CommandNotFoundException);
}

TEST_F(DockGlowPainter, TakesAProgramThatDoesNotExistWithAPicture) {
  EXPECT_NO_THROW(MakePainter(MakeElement(L"Gone", L"exe", L"C:\\no\\such\\program.exe", picture)));
}

TEST_F(DockGlowPainter, TakesTheProgramWithoutItsArguments) {
  wchar_t system[MAX_PATH] = {};
  ::GetSystemDirectoryW(system, MAX_PATH);
  const std::wstring command = L"\"" + std::wstring(system) + L"\\cmd.exe\" /c exit";
  EXPECT_NO_THROW(MakePainter(MakeElement(L"Run", L"exe", command)));
}

} // namespace

} // namespace lumenor
