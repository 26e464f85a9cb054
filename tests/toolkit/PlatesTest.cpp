// The two elements that are drawn with gradients.

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/DisplayMode.h"
#include "support/OperationSpy.h"
#include "support/RenderSurface.h"
#include "toolkit/BackPlate.h"
#include "toolkit/SearchBox.h"

namespace lumenor {

namespace {

using tests::RenderSurface;

/// The places of operations in ID2D1RenderTarget.
enum : std::size_t {
  createSolidColorBrushSlot = 8,
  createStopsSlot = 9,
  createLinearBrushSlot = 10,
  fillRectangleSlot = 17,
  drawRoundedRectangleSlot = 18,
  fillRoundedRectangleSlot = 19,
};

using CreateStops = HRESULT(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, const D2D1_GRADIENT_STOP *, UINT, D2D1_GAMMA,
                                                 D2D1_EXTEND_MODE, ID2D1GradientStopCollection **);
using CreateLinearBrush = HRESULT(STDMETHODCALLTYPE *)(ID2D1RenderTarget *,
                                                       const D2D1_LINEAR_GRADIENT_BRUSH_PROPERTIES *,
                                                       const D2D1_BRUSH_PROPERTIES *, ID2D1GradientStopCollection *,
                                                       ID2D1LinearGradientBrush **);
using CreateSolidBrush = HRESULT(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, const D2D1_COLOR_F *,
                                                      const D2D1_BRUSH_PROPERTIES *, ID2D1SolidColorBrush **);
using DrawRounded = void(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, const D2D1_ROUNDED_RECT *, ID2D1Brush *, FLOAT,
                                              ID2D1StrokeStyle *);
using FillRounded = void(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, const D2D1_ROUNDED_RECT *, ID2D1Brush *);
using FillPlain = void(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, const D2D1_RECT_F *, ID2D1Brush *);

CreateStops formerCreateStops;
CreateLinearBrush formerCreateLinearBrush;
CreateSolidBrush formerCreateSolidBrush;
DrawRounded formerDrawRounded;
FillRounded formerFillRounded;
FillPlain formerFillPlain;
std::vector<std::string> calls;

/// A number with three decimals, without trailing zeros.
std::string Text(float number) {
  std::string text = std::to_string(std::lround(number * 1000) / 1000.0);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.')
    text.pop_back();
  return text;
}

std::string Text(const D2D1_RECT_F &rect) {
  return Text(rect.left) + "," + Text(rect.top) + "," + Text(rect.right) + "," + Text(rect.bottom);
}

std::string Transform(ID2D1Brush *brush) {
  D2D1_MATRIX_3X2_F m{};
  brush->GetTransform(&m);
  return "[" + Text(m._11) + " " + Text(m._12) + " " + Text(m._21) + " " + Text(m._22) + " " + Text(m._31) + " " +
         Text(m._32) + "]";
}

HRESULT STDMETHODCALLTYPE RecordStops(ID2D1RenderTarget *target, const D2D1_GRADIENT_STOP *stops, UINT count,
                                      D2D1_GAMMA gamma, D2D1_EXTEND_MODE mode, ID2D1GradientStopCollection **result) {
  std::string text = "stops";
  for (UINT i = 0; i < count; ++i)
    text += " " + Text(stops[i].position) + ":" + Text(stops[i].color.r) + "," + Text(stops[i].color.g) + "," +
            Text(stops[i].color.b) + "," + Text(stops[i].color.a);
  calls.push_back(text + (gamma == D2D1_GAMMA_2_2 ? " 2.2" : " 1.0") +
                  (mode == D2D1_EXTEND_MODE_CLAMP ? " clamp" : " other"));
  return formerCreateStops(target, stops, count, gamma, mode, result);
}

HRESULT STDMETHODCALLTYPE RecordLinearBrush(ID2D1RenderTarget *target,
                                            const D2D1_LINEAR_GRADIENT_BRUSH_PROPERTIES *line,
                                            const D2D1_BRUSH_PROPERTIES *properties, ID2D1GradientStopCollection *stops,
                                            ID2D1LinearGradientBrush **brush) {
  const HRESULT result = formerCreateLinearBrush(target, line, properties, stops, brush);
  calls.push_back("linear " + Text(line->startPoint.x) + "," + Text(line->startPoint.y) + " to " +
                  Text(line->endPoint.x) + "," + Text(line->endPoint.y) + " opacity " + Text(properties->opacity) +
                  " " + Transform(*brush));
  return result;
}

HRESULT STDMETHODCALLTYPE RecordSolidBrush(ID2D1RenderTarget *target, const D2D1_COLOR_F *color,
                                           const D2D1_BRUSH_PROPERTIES *properties, ID2D1SolidColorBrush **brush) {
  calls.push_back("solid " + Text(color->r) + "," + Text(color->g) + "," + Text(color->b) + "," + Text(color->a));
  return formerCreateSolidBrush(target, color, properties, brush);
}

void STDMETHODCALLTYPE RecordDrawRounded(ID2D1RenderTarget *target, const D2D1_ROUNDED_RECT *rect, ID2D1Brush *brush,
                                         FLOAT width, ID2D1StrokeStyle *style) {
  calls.push_back("draw " + Text(rect->rect) + " radii " + Text(rect->radiusX) + "," + Text(rect->radiusY) +
                  " stroke " + Text(width) + (style == nullptr ? " " : " styled ") + Transform(brush));
  formerDrawRounded(target, rect, brush, width, style);
}

void STDMETHODCALLTYPE RecordFillRounded(ID2D1RenderTarget *target, const D2D1_ROUNDED_RECT *rect, ID2D1Brush *brush) {
  calls.push_back("fill " + Text(rect->rect) + " radii " + Text(rect->radiusX) + "," + Text(rect->radiusY) + " " +
                  Transform(brush));
  formerFillRounded(target, rect, brush);
}

void STDMETHODCALLTYPE RecordFillPlain(ID2D1RenderTarget *target, const D2D1_RECT_F *rect, ID2D1Brush *brush) {
  calls.push_back("fill " + Text(*rect) + " " + Transform(brush));
  formerFillPlain(target, rect, brush);
}

using Calls = std::vector<std::string>;

class Plates : public ::testing::Test {
protected:
  Plates() : spy(surface.Target().Get()) {
    formerCreateStops = spy.Exchange<CreateStops>(createStopsSlot, RecordStops);
    formerCreateLinearBrush = spy.Exchange<CreateLinearBrush>(createLinearBrushSlot, RecordLinearBrush);
    formerCreateSolidBrush = spy.Exchange<CreateSolidBrush>(createSolidColorBrushSlot, RecordSolidBrush);
    formerDrawRounded = spy.Exchange<DrawRounded>(drawRoundedRectangleSlot, RecordDrawRounded);
    formerFillRounded = spy.Exchange<FillRounded>(fillRoundedRectangleSlot, RecordFillRounded);
    formerFillPlain = spy.Exchange<FillPlain>(fillRectangleSlot, RecordFillPlain);
    calls.clear();
  }

  /// What painting into the whole surface calls.
  Calls Paint(Paintable &element) {
    const D2D1_RECT_F rect{0, 0, 20, 16};
    calls.clear();
    surface.Draw([&] { element.Paint(surface.Target(), &rect); });
    return calls;
  }
  /// The surface's rows, '#' where something was drawn.
  Calls Shape() const {
    Calls rows;
    for (int y = 0; y < 16; ++y) {
      std::string row;
      for (int x = 0; x < 20; ++x)
        row += surface.At(x, y) == 0 ? '.' : '#';
      rows.push_back(row);
    }
    return rows;
  }

  RenderSurface surface{20, 16};
  tests::OperationSpy spy;
};

class BackPlateTest : public Plates {};

void Place(UIElement &element, long left, long top, long width, long height) {
  const RECT bounds{left, top, left + width, top + height};
  element.SetBounds(&bounds);
}

TEST_F(BackPlateTest, IsMadeOfAUnitGradientOfBlack) {
  const BackPlate plate(surface.Target(), 0.75F, 0.25F);
  EXPECT_EQ(calls, (Calls{"stops 0:0,0,0,0.75 1:0,0,0,0.25 2.2 clamp", "linear 0,0 to 0,1 opacity 1 [1 0 0 1 0 0]"}));
}

TEST_F(BackPlateTest, HasRoundCornersOfSix) {
  BackPlate plate(surface.Target(), 1, 1);
  Place(plate, 0, 0, 20, 16);
  EXPECT_EQ(Paint(plate), Calls{"fill 0,0,20,16 radii 6,6 [1 0 0 16 0 0]"});
  const Calls shape = Shape();
  EXPECT_EQ(Calls(shape.begin(), shape.begin() + 7), (Calls{"....############....", //
                                                            "..################..", //
                                                            ".##################.", //
                                                            ".##################.", //
                                                            "####################", //
                                                            "####################", //
                                                            "####################"}));
  EXPECT_EQ(shape[15], shape[0]);
}

TEST_F(BackPlateTest, AlphaRunsFromTopToBottom) {
  BackPlate plate(surface.Target(), 1, 0);
  Place(plate, 0, 0, 20, 16);
  Paint(plate);
  for (int y = 0; y < 16; ++y) {
    EXPECT_NEAR(surface.At(10, y) >> 24, 255 * (1 - (y + 0.5) / 16), 2) << "row " << y;
    EXPECT_EQ(surface.At(10, y) & 0xFFFFFF, 0U) << "row " << y;
  }
}

TEST_F(BackPlateTest, GradientStartsAtTheElementsOwnPlace) {
  BackPlate plate(surface.Target(), 1, 0);
  Place(plate, 5, 4, 20, 8);
  EXPECT_EQ(Paint(plate), Calls{"fill 0,0,20,16 radii 6,6 [1 0 0 8 5 4]"});
  EXPECT_EQ(surface.At(10, 2) >> 24, 255U);
  EXPECT_NEAR(surface.At(10, 7) >> 24, 255 * (1 - 3.5 / 8), 2);
  EXPECT_EQ(surface.At(10, 13) >> 24, 0U);
}

TEST_F(BackPlateTest, HasSquareCornersAtSixteenBitsOfColor) {
  BackPlate plate(surface.Target(), 1, 1);
  Place(plate, 0, 0, 20, 16);
  {
    const tests::LowColorDisplay display;
    EXPECT_EQ(Paint(plate), Calls{"fill 0,0,20,16 [1 0 0 16 0 0]"});
    EXPECT_EQ(Shape(), Calls(16, "####################"));
  }
  EXPECT_EQ(Paint(plate), Calls{"fill 0,0,20,16 radii 6,6 [1 0 0 16 0 0]"});
}

class SearchBoxTest : public Plates {};

TEST_F(SearchBoxTest, MakesItsBrushesOnceAndInOrder) {
  SearchBox box(surface.Target());
  const std::string line = "linear 0,0 to 0,1 opacity 1 [1 0 0 1 0 0]";
  EXPECT_EQ(calls, (Calls{"stops 0:0.117,0.117,0.117,1 1:0.361,0.361,0.361,1 2.2 clamp", line,
                          "stops 0.031:0,0,0,1 1:0,0,0,0.149 2.2 clamp", line, "solid 1,1,1,1"}));
}

TEST_F(SearchBoxTest, DrawsTwoFramesAndNothingElse) {
  SearchBox box(surface.Target());
  const D2D1_RECT_F rect{2, 3, 18, 13};
  calls.clear();
  surface.Draw([&] { box.Paint(surface.Target(), &rect); });
  EXPECT_EQ(calls, (Calls{"draw 2,3,18,13 radii 6,6 stroke 0.6 [1 0 0 10 2 3]",
                          "draw 2,3.6,18,13.6 radii 6,6 stroke 2 [1 0 0 10 2 3.6]"}));
}

TEST_F(SearchBoxTest, LeavesItsInsideFree) {
  SearchBox box(surface.Target());
  const D2D1_RECT_F rect{2, 2, 18, 14};
  surface.Draw([&] { box.Paint(surface.Target(), &rect); });
  for (int y = 6; y < 11; ++y)
    for (int x = 6; x < 14; ++x)
      EXPECT_EQ(surface.At(x, y), 0U);
  EXPECT_NE(surface.At(10, 2), 0U);
  EXPECT_NE(surface.At(10, 14), 0U);
  EXPECT_NE(surface.At(2, 8), 0U);
  EXPECT_NE(surface.At(17, 8), 0U);
}

} // namespace

} // namespace lumenor
