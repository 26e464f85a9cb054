#include "toolkit/drawing/SimpleButtonPainter.h"

#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/ButtonStage.h"
#include "drawing/PaintSurface.h"
#include "drawing/Pictures.h"
#include "support/DisplayMode.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"
#include "toolkit/TextElement.h"

namespace lumenor {
namespace {

using namespace tests;
using ::testing::Each;
using ::testing::SizeIs;

constexpr D2D1_RECT_F buttonRect{10, 20, 90, 60};
const RECT buttonBounds{0, 0, 80, 40};
constexpr int left = 10, top = 20, right = 90, bottom = 60;

/// Tells the painter's label and brushes.
class OpenSimpleButtonPainter : public SimpleButtonPainter {
public:
  using SimpleButtonPainter::SimpleButtonPainter;
  std::wstring Label() const { return text; }
  const TextElement &LabelText() const { return *labelText; }
  std::vector<ID2D1LinearGradientBrush *> Brushes() const {
    return {normalBrush.Get(), pressedHighlightBrush.Get(), activeBrush.Get(), hoverHighlightBrush.Get()};
  }
};

ButtonLayout CentredLayout() {
  ButtonLayout layout;
  layout.fontSize = 12;
  layout.textFlag = 1;
  return layout;
}

class SimpleButtonPainterTest : public ::testing::Test {
protected:
  void Put(const std::wstring &text, const RECT &bounds = buttonBounds) {
    painter = std::make_shared<OpenSimpleButtonPainter>(surface.Target(), text, CentredLayout(), L"");
    button = std::make_unique<Button>(painter);
    stage = std::make_unique<ButtonStage>(*button, bounds);
  }

  Picture Paint(int isPressed, int isMouseOver, const D2D1_RECT_F &rect = buttonRect) {
    button->IsPressed.Set(isPressed);
    button->IsMouseOver.Set(isMouseOver);
    return surface.Draw([&] { painter->Paint(surface.Target(), &rect); });
  }

  /// The different pixels of a column inside the button, less a pixel at each end.
  static std::set<std::uint32_t> ColumnOf(const Picture &picture, int x) {
    std::set<std::uint32_t> pixels;
    for (int y = top + 1; y < bottom - 1; ++y)
      pixels.insert(picture.At(x, y));
    return pixels;
  }

  PaintSurface surface{110, 80};
  std::shared_ptr<OpenSimpleButtonPainter> painter;
  std::unique_ptr<Button> button;
  std::unique_ptr<ButtonStage> stage;
};

constexpr std::pair<int, int> allStates[] = {{0, 0}, {0, 1}, {1, 0}, {1, 1}};
constexpr std::pair<int, int> filledStates[] = {{0, 1}, {1, 0}, {1, 1}};

TEST_F(SimpleButtonPainterTest, AtRestItIsAnOutlineOnly) {
  Put(L"");
  const Picture painted = Paint(0, 0);
  for (int x = left + 10; x < right - 10; ++x) {
    EXPECT_TRUE(painted.At(x, top) != 0 || painted.At(x, top - 1) != 0) << "astride the edge, " << x;
    EXPECT_TRUE(painted.At(x, bottom) != 0 || painted.At(x, bottom - 1) != 0) << x;
  }
  for (int y = top + 2; y < bottom - 2; ++y)
    EXPECT_EQ(0u, painted.At(50, y)) << y;
}

TEST_F(SimpleButtonPainterTest, HoverAndPressFillIt) {
  Put(L"");
  for (const auto &[isPressed, isMouseOver] : filledStates) {
    const Picture painted = Paint(isPressed, isMouseOver);
    for (int y = top + 2; y < bottom - 2; ++y)
      EXPECT_NE(0u, painted.At(50, y)) << y;
  }
}

TEST_F(SimpleButtonPainterTest, PressGoesBeforeHover) {
  Put(L"");
  const Picture pressed = Paint(1, 0);
  EXPECT_EQ(pressed, Paint(1, 1));
  EXPECT_NE(pressed, Paint(0, 1));
}

TEST_F(SimpleButtonPainterTest, ItsCornersAreRound) {
  Put(L"");
  for (const auto &[isPressed, isMouseOver] : filledStates) {
    const Picture painted = Paint(isPressed, isMouseOver);
    for (const auto &[x, y] : {std::pair{left, top}, {right - 1, top}, {left, bottom - 1}, {right - 1, bottom - 1}})
      EXPECT_EQ(0u, painted.At(x, y)) << x << ", " << y;
    EXPECT_NE(0u, painted.At(left + 3, top + 3));
  }
}

TEST_F(SimpleButtonPainterTest, TheGradientSpansTheButtonFromItsTop) {
  Put(L"");
  const std::set<std::uint32_t> pixels = ColumnOf(Paint(0, 1), 50);
  EXPECT_GT(pixels.size(), 20u) << "0.8 to 0.3 over 40 rows";
  const Picture low = Paint(0, 1, {10, 30, 90, 70});
  EXPECT_EQ(Paint(0, 1).At(50, 40), low.At(50, 50)) << "it moves along with the rectangle";
}

TEST_F(SimpleButtonPainterTest, TheGradientIsStretchedToTheButtonsHeight) {
  Put(L"");
  const std::uint32_t middle = Paint(0, 1).At(50, 40);
  button->Height.Set(20);
  EXPECT_NE(middle, Paint(0, 1).At(50, 40)) << "its end is reached in the middle now";
  EXPECT_EQ(Paint(0, 1).At(50, 45), Paint(0, 1).At(50, 57)) << "and goes on from there";
}

TEST_F(SimpleButtonPainterTest, OnALowColorDisplayEveryStateIsASquareInTheUnscaledOutlineBrush) {
  Put(L"");
  const tests::LowColorDisplay lowColor;
  std::vector<Picture> painted;
  for (const auto &[isPressed, isMouseOver] : allStates) {
    painted.push_back(Paint(isPressed, isMouseOver));
    ExpectRect({left, top, right, bottom}, InkOf(painted.back()));
    for (int y = top; y < bottom; ++y)
      for (int x = left; x < right; ++x)
        ASSERT_NE(0u, painted.back().At(x, y)) << x << ", " << y;
    EXPECT_THAT(ColumnOf(painted.back(), 50), SizeIs(1)) << "the gradient ends a pixel below the top of the surface";
  }
  EXPECT_NE(painted[0], painted[1]);
  EXPECT_EQ(painted[1], painted[2]) << "one outline for hover and press";
  EXPECT_EQ(painted[1], painted[3]);
}

TEST_F(SimpleButtonPainterTest, TheLabelIsCentredInWhite) {
  Put(L"MMM");
  const RECT label = BoundsOf(Paint(0, 0), 0xF2F2F2F2);
  EXPECT_NEAR(50, (label.left + label.right) / 2, 1);
  EXPECT_NEAR(40, (label.top + label.bottom) / 2, 2);
}

TEST_F(SimpleButtonPainterTest, TheLabelTakesTheButtonLessATenthOfEachSide) {
  Put(L"MMM", {5, 3, 94, 42});
  const TextElement &label = painter->LabelText();
  EXPECT_EQ((std::vector<long>{5 + 8, 3 + 3, 89 - 16, 39 - 6}),
            (std::vector<long>{label.Left.Get(), label.Top.Get(), label.Width.Get(), label.Height.Get()}));
}

TEST_F(SimpleButtonPainterTest, TheLabelIsOfTheLayoutsSizeAndMediumWeight) {
  Put(L"MMM");
  const TextElement &label = painter->LabelText();
  EXPECT_EQ(12.0F, label.FontSize.Get());
  EXPECT_EQ(DWRITE_FONT_WEIGHT_MEDIUM, label.FontWeight.Get());
  EXPECT_EQ(DWRITE_TEXT_ALIGNMENT_CENTER, label.TextAlignment.Get());
  EXPECT_EQ(1, label.Trimming.Get());
}

TEST_F(SimpleButtonPainterTest, TheLabelIsDrawnOnALowColorDisplayToo) {
  Put(L"");
  const tests::LowColorDisplay lowColor;
  const Picture without = Paint(1, 0);
  stage.reset();
  Put(L"MMM");
  EXPECT_NE(without, Paint(1, 0));
}

TEST_F(SimpleButtonPainterTest, ALongLabelIsCutInsideTheButton) {
  Put(L"MMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMM");
  const RECT ink = InkOf(Paint(0, 0));
  EXPECT_GE(ink.left, left - 1);
  EXPECT_LE(ink.right, right + 1);
}

TEST_F(SimpleButtonPainterTest, AnInvisibleButtonIsNotDrawn) {
  Put(L"MMM");
  stage->Hide();
  for (const auto &[isPressed, isMouseOver] : allStates)
    ExpectRect({}, InkOf(Paint(isPressed, isMouseOver)));
  const tests::LowColorDisplay lowColor;
  ExpectRect({}, InkOf(Paint(0, 1)));
}

TEST_F(SimpleButtonPainterTest, AMissingLabelBecomesTheProgramsDisplayName) {
  const auto label = [&](const std::wstring &text, const std::wstring &program) {
    return OpenSimpleButtonPainter(surface.Target(), text, CentredLayout(), program).Label();
  };
  EXPECT_EQ(L"regedit.exe", label(L"", L"C:\\windows\\regedit.exe"));
  EXPECT_EQ(L"Given", label(L"Given", L"C:\\windows\\regedit.exe"));
  EXPECT_EQ(L"", label(L"", L""));
  EXPECT_EQ(L"Given", label(L"Given", L"C:\\nowhere.exe"));
  try {
    label(L"", L"C:\\nowhere.exe");
    FAIL() << "nothing was raised";
  } catch (const HResultError &error) {
    EXPECT_EQ(E_FAIL, error.Result());
  }
}

TEST_F(SimpleButtonPainterTest, TheBrushesCanBeLeftToADerivedPainter) {
  EXPECT_THAT(OpenSimpleButtonPainter(surface.Target(), L"", CentredLayout(), L"").Brushes(),
              Each(::testing::Ne(nullptr)));
  EXPECT_THAT(OpenSimpleButtonPainter(surface.Target(), L"", CentredLayout(), L"", true).Brushes(), Each(nullptr));
}

TEST_F(SimpleButtonPainterTest, TheStopsAreThoseOfTheLook) {
  struct Stop {
    float position, red, green, blue, alpha;
  };
  const std::vector<std::vector<Stop>> expected{
      {{0.0F, 1.0F, 1.0F, 1.0F, 0.9F}, {0.8F, 0.9F, 0.9F, 0.9F, 0.8F}, {1.0F, 0.0F, 0.0F, 0.0F, 0.1F}},
      {{0.0F, 1.0F, 1.0F, 1.0F, 0.1F}, {0.2F, 0.5F, 0.5F, 0.5F, 0.8F}, {1.0F, 0.0F, 0.0F, 0.0F, 0.9F}},
      {{0.0F, 0.2F, 0.2F, 0.2F, 0.9F}, {0.8F, 0.4F, 0.4F, 0.4F, 0.85F}, {1.0F, 0.5F, 0.5F, 0.5F, 0.8F}},
      {{0.0F, 0.8F, 0.8F, 0.8F, 0.9F}, {1.0F, 0.3F, 0.3F, 0.3F, 0.8F}}};
  const OpenSimpleButtonPainter open(surface.Target(), L"", CentredLayout(), L"");
  for (std::size_t i = 0; i < expected.size(); ++i) {
    Microsoft::WRL::ComPtr<ID2D1GradientStopCollection> collection;
    open.Brushes()[i]->GetGradientStopCollection(&collection);
    ASSERT_EQ(expected[i].size(), collection->GetGradientStopCount()) << i;
    std::vector<D2D1_GRADIENT_STOP> stops(expected[i].size());
    collection->GetGradientStops(stops.data(), static_cast<UINT32>(stops.size()));
    for (std::size_t s = 0; s < stops.size(); ++s) {
      const Stop &stop = expected[i][s];
      EXPECT_EQ((std::vector<float>{stop.position, stop.red, stop.green, stop.blue, stop.alpha}),
                (std::vector<float>{stops[s].position, stops[s].color.r, stops[s].color.g, stops[s].color.b,
                                    stops[s].color.a}))
          << i << ", " << s;
    }
  }
}

TEST_F(SimpleButtonPainterTest, AUnitGradientRunsFromTopToBottomOfOnePixel) {
  constexpr D2D1_GRADIENT_STOP stops[] = {{0.0F, {1, 0, 0, 1}}, {1.0F, {0, 0, 1, 1}}};
  const auto brush = MakeUnitGradient(surface.Target().Get(), stops, 2);
  const D2D1_POINT_2F start = brush->GetStartPoint();
  const D2D1_POINT_2F end = brush->GetEndPoint();
  EXPECT_EQ((std::vector<float>{1, 0, 1, 1}), (std::vector<float>{start.x, start.y, end.x, end.y}));
  EXPECT_EQ(1.0F, brush->GetOpacity());
  const D2D1_RECT_F all{0, 0, 110, 80};
  const Picture painted = surface.Draw([&] { surface.Target()->FillRectangle(&all, brush.Get()); });
  EXPECT_EQ(0xFF0000FFu, painted.At(50, 1));
  EXPECT_EQ(0xFF0000FFu, painted.At(50, 79));
}

TEST_F(SimpleButtonPainterTest, AGradientWithoutStopsRaises) {
  EXPECT_THROW(MakeUnitGradient(surface.Target().Get(), nullptr, 0), HResultError);
}

} // namespace
} // namespace lumenor
