#include "toolkit/drawing/BackgroundHighlightButtonPainter.h"

#include <gtest/gtest.h>

#include "drawing/ButtonStage.h"
#include "drawing/PaintSurface.h"
#include "drawing/Pictures.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"

namespace lumenor {
namespace {

using namespace tests;

constexpr Color highlightColor{1.0F, 0.0F, 0.0F, 1.0F};
constexpr std::uint32_t highlightPixel = 0xFFFF0000;
constexpr std::uint32_t imagePixel = 0xFF008000;
constexpr D2D1_RECT_F buttonRect{10, 20, 110, 50};
const RECT buttonBounds{5, 5, 105, 35};

/// A picture of 10 by 10 at (4, 6), the label from 30 on.
ButtonLayout RowLayout() {
  ButtonLayout layout;
  layout.fontSize = 12;
  layout.imageLeft = 4;
  layout.imageRight = 86;
  layout.imageTop = 6;
  layout.imageBottom = 14;
  layout.textLeft = 30;
  return layout;
}

class BackgroundHighlightButtonPainterTest : public ::testing::Test {
protected:
  std::wstring MakePicture(const Picture &picture) const {
    std::wstring path = folders.Root() + L"\\picture.png";
    WritePicture(path, picture);
    return path;
  }

  void Put(const std::wstring &text, const std::wstring &imagePath, const ButtonLayout &layout = RowLayout()) {
    painter =
        std::make_shared<BackgroundHighlightButtonPainter>(surface.Target(), text, imagePath, layout, highlightColor);
    button = std::make_unique<Button>(painter);
    stage = std::make_unique<ButtonStage>(*button, buttonBounds);
  }

  Picture Paint(int isPressed, int isMouseOver, const D2D1_RECT_F &rect = buttonRect) {
    button->IsPressed.Set(isPressed);
    button->IsMouseOver.Set(isMouseOver);
    return surface.Draw([&] { painter->Paint(surface.Target(), &rect); });
  }

  TestFolders folders;
  PaintSurface surface{130, 70};
  std::shared_ptr<BackgroundHighlightButtonPainter> painter;
  std::unique_ptr<Button> button;
  std::unique_ptr<ButtonStage> stage;
};

TEST_F(BackgroundHighlightButtonPainterTest, TheHighlightFillsTheButtonOnHoverAndOnPress) {
  Put(L"", L"");
  ExpectRect({}, InkOf(Paint(0, 0)));
  for (const auto &[isPressed, isMouseOver] : {std::pair{0, 1}, {1, 0}, {1, 1}}) {
    const Picture painted = Paint(isPressed, isMouseOver);
    for (int y = 0; y < painted.height; ++y)
      for (int x = 0; x < painted.width; ++x)
        ASSERT_EQ(x >= 10 && x < 110 && y >= 20 && y < 50 ? highlightPixel : 0u, painted.At(x, y)) << x << ", " << y;
  }
}

TEST_F(BackgroundHighlightButtonPainterTest, ThePictureStandsAtItsMarginsOverTheHighlight) {
  Put(L"", MakePicture(SolidPicture(10, 10, imagePixel)));
  const RECT picture{14, 26, 24, 36};
  ExpectRect(picture, InkOf(Paint(0, 0)));
  const Picture hovered = Paint(0, 1);
  ExpectRect(picture, BoundsOf(hovered, imagePixel));
  ExpectRect({10, 20, 110, 50}, BoundsOf(hovered, highlightPixel));
}

TEST_F(BackgroundHighlightButtonPainterTest, ThePictureIsNotLimitedTo48Pixels) {
  Picture stripes = SolidPicture(96, 2, 0xFF000000);
  for (std::size_t x = 0; x < stripes.pixels.size(); x += 2)
    stripes.pixels[x] = 0xFFFFFFFF;
  ButtonLayout layout;
  layout.fontSize = 12;
  Put(L"", MakePicture(stripes), layout);
  const Picture painted = Paint(0, 0, {10, 20, 106, 22});
  for (int x = 0; x < 96; ++x)
    EXPECT_EQ(stripes.At(x, 0), painted.At(10 + x, 20)) << x;
}

TEST_F(BackgroundHighlightButtonPainterTest, TheColoursOfAStretchedPictureRunIntoEachOther) {
  Put(L"", MakePicture({2, 1, {0xFF000000, 0xFFFFFFFF}}));
  const Picture painted = Paint(0, 0);
  EXPECT_NEAR(0x80, painted.At(18, 30) & 0xFF, 0x40);
  EXPECT_NEAR(0x80, painted.At(19, 30) & 0xFF, 0x40);
}

TEST_F(BackgroundHighlightButtonPainterTest, OpacityPlaysNoPart) {
  Put(L"", MakePicture(SolidPicture(10, 10, imagePixel)));
  button->Opacity.Set(10);
  const Picture painted = Paint(0, 1);
  EXPECT_EQ(imagePixel, painted.At(15, 30));
  EXPECT_EQ(highlightPixel, painted.At(100, 30));
}

TEST_F(BackgroundHighlightButtonPainterTest, AMissingPictureShowsTheBuiltInOne) {
  Put(L"", folders.Root() + L"\\nowhere.png");
  EXPECT_NE(0, InkOf(Paint(0, 0)).right);
}

TEST_F(BackgroundHighlightButtonPainterTest, AFileThatIsNoPictureRaises) {
  WriteBytes(folders.Root() + L"\\bad.png", "garbage");
  EXPECT_THROW(Put(L"", folders.Root() + L"\\bad.png"), HResultError);
}

TEST_F(BackgroundHighlightButtonPainterTest, TheLabelStartsAtItsMarginInEveryState) {
  Put(L"MMM", L"");
  for (const auto &[isPressed, isMouseOver] : {std::pair{0, 0}, {0, 1}, {1, 0}, {1, 1}}) {
    const RECT white = BoundsOf(Paint(isPressed, isMouseOver), 0xFFFFFFFF);
    EXPECT_NEAR(41, white.left, 2) << "10 + 30 and the letter's own distance";
    EXPECT_NEAR(35, (white.top + white.bottom) / 2, 2) << "the middle of the button";
  }
}

TEST_F(BackgroundHighlightButtonPainterTest, WithoutALabelNoTextIsDrawn) {
  Put(L"", L"");
  ExpectRect({}, InkOf(Paint(0, 0)));
}

TEST_F(BackgroundHighlightButtonPainterTest, TheLabelIsNotClipped) {
  Put(L"MMM", L"");
  const RECT whole = InkOf(Paint(0, 0));
  const RECT flat = InkOf(Paint(0, 0, {10, 34, 110, 36}));
  EXPECT_EQ(whole.bottom - whole.top, flat.bottom - flat.top);
}

TEST_F(BackgroundHighlightButtonPainterTest, TheLabelIsPaintedWhereTheButtonIsPaintedNotWhereItWasAttached) {
  Put(L"M", L"");
  const RECT before = InkOf(Paint(0, 0));
  button->Width.Set(50);
  button->Left.Set(20);
  const RECT after = InkOf(Paint(0, 0, {15, 20, 115, 50}));
  EXPECT_EQ(before.left + 5, after.left);
  EXPECT_EQ(before.top, after.top);
}

TEST_F(BackgroundHighlightButtonPainterTest, AnInvisibleButtonIsNotDrawn) {
  Put(L"MMM", MakePicture(SolidPicture(10, 10, imagePixel)));
  button->Visibility.Set(Visibility::Collapsed);
  ExpectRect({}, InkOf(Paint(0, 1)));
  button->Visibility.Set(Visibility::Visible);
  stage->Hide();
  ExpectRect({}, InkOf(Paint(0, 1)));
}

} // namespace
} // namespace lumenor
