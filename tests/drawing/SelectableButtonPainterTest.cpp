#include "toolkit/drawing/SelectableButtonPainter.h"

#include <gtest/gtest.h>

#include "drawing/ButtonStage.h"
#include "drawing/PaintSurface.h"
#include "drawing/Pictures.h"
#include "support/DisplayMode.h"
#include "toolkit/drawing/CheckedButton.h"

namespace lumenor {
namespace {

using namespace tests;

constexpr D2D1_RECT_F buttonRect{10, 20, 110, 40};
const RECT buttonBounds{0, 0, 100, 20};

// With a font of 12 in a button 20 high.
constexpr int boxLeft = 12, boxTop = 24, boxRight = 24, boxBottom = 36;

constexpr std::uint32_t tickPixel = 0xFFFFFFFF;

class SelectableButtonPainterTest : public ::testing::Test {
protected:
  SelectableButtonPainterTest() { Put(L""); }

  void Put(const std::wstring &text, float fontSize = 12) {
    stage.reset();
    ButtonLayout layout;
    layout.fontSize = fontSize;
    painter = std::make_shared<SelectableButtonPainter>(surface.Target(), text, layout, L"");
    button = std::make_unique<CheckedButton>(painter);
    stage = std::make_unique<ButtonStage>(*button, buttonBounds);
  }

  Picture Paint(int isPressed, int isMouseOver, int isChecked, const D2D1_RECT_F &rect = buttonRect) {
    button->IsPressed.Set(isPressed);
    button->IsMouseOver.Set(isMouseOver);
    button->Checked.Set(isChecked);
    return surface.Draw([&] { painter->Paint(surface.Target(), &rect); });
  }

  PaintSurface surface{130, 60};
  std::shared_ptr<SelectableButtonPainter> painter;
  std::unique_ptr<CheckedButton> button;
  std::unique_ptr<ButtonStage> stage;
};

TEST_F(SelectableButtonPainterTest, TheBoxOfFont12InAButton20HighGoesFrom4To16) {
  const Picture painted = Paint(0, 1, 0);
  const RECT ink = InkOf(painted);
  // The outline of one pixel lies astride the edge.
  EXPECT_TRUE(ink.left == boxLeft - 1 || ink.left == boxLeft) << ink.left;
  EXPECT_TRUE(ink.top == boxTop - 1 || ink.top == boxTop) << ink.top;
  EXPECT_TRUE(ink.right == boxRight || ink.right == boxRight + 1) << ink.right;
  EXPECT_TRUE(ink.bottom == boxBottom || ink.bottom == boxBottom + 1) << ink.bottom;
  for (int y = boxTop; y < boxBottom; ++y)
    EXPECT_NE(0u, painted.At(18, y)) << y;
  for (int x = boxLeft; x < boxRight; ++x)
    EXPECT_NE(0u, painted.At(x, 30)) << x;
}

TEST_F(SelectableButtonPainterTest, AtRestTheBoxIsEmpty) {
  const Picture painted = Paint(0, 0, 0);
  for (int y = boxTop + 1; y < boxBottom - 1; ++y)
    for (int x = boxLeft + 1; x < boxRight - 1; ++x)
      EXPECT_EQ(0u, painted.At(x, y)) << x << ", " << y;
}

TEST_F(SelectableButtonPainterTest, HoverAndPressFillTheBoxDifferently) {
  const Picture hovered = Paint(0, 1, 0);
  const Picture pressed = Paint(1, 0, 0);
  EXPECT_NE(0u, hovered.At(18, 30));
  EXPECT_NE(0u, pressed.At(18, 30));
  EXPECT_NE(hovered.At(18, 30), pressed.At(18, 30));
  EXPECT_EQ(pressed, Paint(1, 1, 0));
  EXPECT_EQ(hovered.At(18, boxTop), hovered.At(18, boxTop + 1)) << "one outline on both sides of the edge";
}

TEST_F(SelectableButtonPainterTest, TheTickFillsNineTenthsOfTheBoxFromItsCorner) {
  Put(L"", 40);
  const RECT tick = BoundsOf(Paint(0, 0, 1, {10, 10, 110, 50}), tickPixel);
  EXPECT_NEAR(12, tick.left, 1);
  EXPECT_NEAR(10, tick.top, 1);
  EXPECT_NEAR(12 + 36, tick.right, 1);
  EXPECT_NEAR(10 + 36, tick.bottom, 1);
}

TEST_F(SelectableButtonPainterTest, TheTickIsATick) {
  const Picture painted = Paint(0, 0, 1);
  EXPECT_EQ(tickPixel, painted.At(boxLeft + 3, boxTop + 8)) << "the short stroke";
  EXPECT_EQ(tickPixel, painted.At(boxLeft + 8, boxTop + 2)) << "the long stroke";
  EXPECT_EQ(0u, painted.At(boxLeft + 3, boxTop + 2));
  EXPECT_EQ(0u, painted.At(boxLeft + 9, boxTop + 8));
}

TEST_F(SelectableButtonPainterTest, OnlyACheckedButtonHasATick) {
  EXPECT_NE(0, BoundsOf(Paint(0, 0, 1), tickPixel).right);
  EXPECT_EQ(0, BoundsOf(Paint(0, 0, 0), tickPixel).right);
  for (const auto &[isPressed, isMouseOver] : {std::pair{0, 1}, {1, 0}})
    EXPECT_NE(Paint(isPressed, isMouseOver, 0), Paint(isPressed, isMouseOver, 1));
}

TEST_F(SelectableButtonPainterTest, TheTickLeavesTheTransformOfTheTargetAsIdentity) {
  Paint(0, 0, 1);
  D2D1_MATRIX_3X2_F transform{};
  surface.Target()->GetTransform(&transform);
  EXPECT_EQ((std::vector<float>{1, 0, 0, 1, 0, 0}), (std::vector<float>{transform._11, transform._12, transform._21,
                                                                        transform._22, transform._31, transform._32}));
}

TEST_F(SelectableButtonPainterTest, TheBoxMovesAlongWithTheButton) {
  const Picture here = Paint(0, 1, 1);
  const Picture there = Paint(0, 1, 1, {15, 27, 115, 47});
  for (int y = 20; y < 40; ++y)
    for (int x = 10; x < 30; ++x)
      ASSERT_EQ(here.At(x, y), there.At(x + 5, y + 7)) << x << ", " << y;
}

TEST_F(SelectableButtonPainterTest, TheLabelStartsFivePixelsBehindTheBox) {
  const int boxEnd = InkOf(Paint(0, 0, 0)).right;
  Put(L"M");
  const Picture painted = Paint(0, 0, 0);
  int first = boxEnd;
  while (first < painted.width && painted.At(first, 30) == 0)
    ++first;
  EXPECT_NEAR(boxRight + 6, first, 1) << "five and the letter's own distance";
}

TEST_F(SelectableButtonPainterTest, OnALowColorDisplayTheWholeButtonIsFilledAndHasNoTick) {
  const tests::LowColorDisplay lowColor;
  for (const auto &[isPressed, isMouseOver] : {std::pair{0, 0}, {0, 1}, {1, 0}}) {
    const Picture unchecked = Paint(isPressed, isMouseOver, 0);
    ExpectRect({10, 20, 110, 40}, InkOf(unchecked));
    ExpectRect({10, 20, 110, 40}, BoundsOf(unchecked, unchecked.At(60, 30)));
    for (int y = 20; y < 40; ++y)
      for (int x = 10; x < 110; ++x)
        ASSERT_EQ(unchecked.At(60, 30), unchecked.At(x, y)) << x << ", " << y;
    EXPECT_EQ(unchecked, Paint(isPressed, isMouseOver, 1));
  }
  EXPECT_NE(Paint(0, 0, 0), Paint(0, 1, 0));
}

TEST_F(SelectableButtonPainterTest, TheLabelIsDrawnOnALowColorDisplayToo) {
  const tests::LowColorDisplay lowColor;
  const Picture without = Paint(0, 0, 0);
  Put(L"M");
  EXPECT_NE(without, Paint(0, 0, 0));
}

TEST_F(SelectableButtonPainterTest, AnInvisibleButtonIsNotDrawn) {
  Put(L"M");
  stage->Hide();
  ExpectRect({}, InkOf(Paint(0, 1, 1)));
  const tests::LowColorDisplay lowColor;
  ExpectRect({}, InkOf(Paint(0, 1, 1)));
}

} // namespace
} // namespace lumenor
