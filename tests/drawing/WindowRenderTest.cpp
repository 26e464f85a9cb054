// The repaint of the root window, from an invalidation to the pixels on the screen.

#include "toolkit/drawing/Window.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/WindowOnScreen.h"
#include "support/DisplayMode.h"
#include "support/HandleCounts.h"
#include "support/ImportSlot.h"
#include "support/OperationSpy.h"
#include "toolkit/ColorRectangle.h"
#include "toolkit/drawing/Button.h"

// The slots through which a repaint takes, shows and gives back.
extern "C" {
extern decltype(&::EndPaint) __imp_EndPaint;
extern decltype(&::DeleteDC) __imp_DeleteDC;
extern decltype(&::DeleteObject) __imp_DeleteObject;
}

namespace lumenor {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using WindowRender = WindowOnScreen;

} // namespace

TEST_F(WindowRender, ShowsTheTreeOnTheScreenWithItsAlpha) {
  const desk::Backdrop blue({100, 120, 400, 300}, RGB(0, 0, 200));
  Open();
  const RECT left{0, 0, 40, 80}, right{160, 0, 200, 80};
  ColorRectangle red(left, window.Target(), Color{1, 0, 0, 1});
  ColorRectangle half(right, window.Target(), Color{1, 1, 1, 0.5F});
  red.SetBounds(&left);
  half.SetBounds(&right);
  window.canvas.AddChild(&red);
  window.canvas.AddChild(&half);
  window.Invalidate();
  EXPECT_TRUE(desk::PumpUntil([] { return desk::PixelAt({121, 141}) == 0xFF0000; }));
  EXPECT_EQ(desk::PixelAt({159, 219}), 0xFF0000U);
  EXPECT_EQ(desk::PixelAt({160, 180}), 0x0000C8U); // transparent
  EXPECT_EQ(desk::PixelAt({119, 180}), 0x0000C8U); // outside
  const std::uint32_t mixed = desk::PixelAt({300, 180});
  EXPECT_NEAR(mixed >> 16, 128, 2);
  EXPECT_NEAR(mixed & 0xFF, 228, 2);
}

TEST_F(WindowRender, OpacityFadesTheWholeWindowAtOnce) {
  const desk::Backdrop blue({100, 120, 400, 300}, RGB(0, 0, 200));
  Open();
  const RECT all{0, 0, 200, 80};
  ColorRectangle red(all, window.Target(), Color{1, 0, 0, 1});
  red.SetBounds(&all);
  window.canvas.AddChild(&red);
  window.paints = 0;
  window.Opacity.Set(51);
  EXPECT_EQ(window.paints, 1);
  const auto faded = [] {
    const std::uint32_t pixel = desk::PixelAt({200, 180});
    return (pixel >> 16) >= 50 && (pixel >> 16) <= 52 && (pixel & 0xFF) >= 158 && (pixel & 0xFF) <= 162;
  };
  EXPECT_TRUE(desk::PumpUntil(faded)) << std::hex << desk::PixelAt({200, 180});
}

TEST_F(WindowRender, HandsTheWholeWindowOverInOneCall) {
  Open();
  const LayerSpy layers;
  window.Opacity.Set(190);
  ASSERT_EQ(layers.Calls().size(), 1U);
  const LayerSpy::Call &call = layers.Calls()[0];
  EXPECT_THAT(
      (std::vector<long>{call.position.x, call.position.y, call.size.cx, call.size.cy, call.origin.x, call.origin.y}),
      ElementsAre(120, 140, 200, 80, 0, 0));
  EXPECT_EQ(call.key, 0U);
  EXPECT_EQ(call.blend.BlendOp, AC_SRC_OVER);
  EXPECT_EQ(call.blend.BlendFlags, 0);
  EXPECT_EQ(call.blend.SourceConstantAlpha, 190);
  EXPECT_EQ(call.blend.AlphaFormat, AC_SRC_ALPHA);
  EXPECT_EQ(call.flags, static_cast<DWORD>(ULW_ALPHA));
}

TEST_F(WindowRender, OnALowColorDisplayTheWindowIsOpaque) {
  Open();
  const tests::LowColorDisplay lowColor;
  const LayerSpy layers;
  window.Render();
  ASSERT_EQ(layers.Calls().size(), 1U);
  EXPECT_EQ(layers.Calls()[0].flags, static_cast<DWORD>(ULW_OPAQUE));
}

TEST_F(WindowRender, WorksFromInsideTheInitialisation) {
  int paintsInside = 0;
  window.onInitialize = [&] {
    window.Render();
    paintsInside = window.paints;
  };
  Open();
  EXPECT_EQ(paintsInside, 1);
  EXPECT_TRUE(::IsWindow(window.handle));
}

TEST_F(WindowRender, PaintsTheTreeInTheClientRectangleUnderTheIdentity) {
  Open();
  D2D1_MATRIX_3X2_F transform{};
  window.onPaint = [&](ID2D1RenderTarget *target) {
    target->GetTransform(&transform);
    const D2D1_MATRIX_3X2_F shifted{{{1, 0, 0, 1, 50, 50}}};
    target->SetTransform(&shifted);
  };
  window.Render();
  window.Render(); // what the pass before left behind is gone
  EXPECT_EQ(transform._11, 1.0F);
  EXPECT_EQ(transform._22, 1.0F);
  EXPECT_EQ(transform._31, 0.0F);
  EXPECT_EQ(transform._32, 0.0F);
}

TEST_F(WindowRender, InvalidationOfADescendantRepaintsAtOnce) {
  Button button(std::make_shared<RecordingPainter>());
  window.onInitialize = [&] { window.canvas.AddChild(&button); };
  Open();
  window.paints = 0;
  static_cast<UIElement &>(button).Invalidate();
  EXPECT_EQ(window.paints, 1);
  window.canvas.RemoveChild(&button);
}

TEST_F(WindowRender, OneInvalidationCostsOneRepaint) {
  Button button(std::make_shared<RecordingPainter>());
  const RECT bounds{10, 10, 50, 40};
  button.SetBounds(&bounds);
  window.onInitialize = [&] { window.canvas.AddChild(&button); };
  Open();
  window.paints = 0;
  const LayerSpy layers;
  ::InvalidateRect(button.handle, nullptr, TRUE);
  desk::PumpAll();
  EXPECT_EQ(window.paints, 1);
  EXPECT_EQ(layers.Calls().size(), 1U);
  window.canvas.RemoveChild(&button);
}

TEST_F(WindowRender, PaintsNothingWhileItIsHeld) {
  Open();
  window.paints = 0;
  {
    const Window::RepaintHold hold(window);
    {
      const Window::RepaintHold inner(window);
      window.Render();
    }
    window.Render();
    EXPECT_EQ(window.paints, 0);
  }
  window.Render();
  EXPECT_EQ(window.paints, 1);
}

TEST_F(WindowRender, WithoutAWindowShowsNothingAndDoesNotFail) {
  const LayerSpy layers;
  EXPECT_NO_THROW(window.Render());
  EXPECT_NO_THROW(window.Invalidate());
  EXPECT_NO_THROW(window.Opacity.Set(200));
  EXPECT_EQ(window.paints, 0);
  EXPECT_THAT(layers.Calls(), IsEmpty());
}

TEST_F(WindowRender, AfterItsWindowWentShowsNothingAndDoesNotFail) {
  Open();
  ::DestroyWindow(window.handle);
  window.paints = 0;
  const LayerSpy layers;
  EXPECT_NO_THROW(window.Render());
  EXPECT_NO_THROW(window.Invalidate());
  EXPECT_NO_THROW(window.Opacity.Set(200));
  EXPECT_EQ(window.paints, 0);
  EXPECT_THAT(layers.Calls(), IsEmpty());
}

TEST_F(WindowRender, WithoutAWindowInvalidatesNobodyElse) {
  const desk::Backdrop other({700, 500, 760, 560}, RGB(10, 20, 30));
  desk::PumpAll();
  ::ValidateRect(other.Get(), nullptr);
  EXPECT_NO_THROW(window.Invalidate());
  EXPECT_FALSE(::GetUpdateRect(other.Get(), nullptr, FALSE));
}

TEST_F(WindowRender, OfAnEmptyWindowShowsNothingAndDoesNotFail) {
  Open();
  window.Height.Set(0);
  window.Show();
  const LayerSpy layers;
  EXPECT_NO_THROW(window.Render());
  EXPECT_THAT(layers.Calls(), IsEmpty());
}

TEST_F(WindowRender, ChangeWhilePaintingCostsOneMorePassAndNoRecursion) {
  Open();
  int depth = 0, deepest = 0;
  window.onPaint = [&](ID2D1RenderTarget *) {
    deepest = std::max(deepest, ++depth);
    if (window.paints == 1)
      window.Opacity.Set(77);
    --depth;
  };
  window.paints = 0;
  const LayerSpy layers;
  window.Render();
  EXPECT_EQ(deepest, 1);
  EXPECT_EQ(window.paints, 2);
  ASSERT_EQ(layers.Calls().size(), 2U);
  EXPECT_EQ(layers.Calls()[1].blend.SourceConstantAlpha, 77);
  window.Render(); // and not a pass too many afterwards
  EXPECT_EQ(window.paints, 3);
}

TEST_F(WindowRender, ChangeAtEveryPaintEnds) {
  Open();
  window.onPaint = [&](ID2D1RenderTarget *) { window.Invalidate(); };
  window.paints = 0;
  window.Render();
  EXPECT_EQ(window.paints, 2);
}

TEST_F(WindowRender, FailureInsideAPaintLeavesTheNextOneWhole) {
  Open();
  window.onPaint = [](ID2D1RenderTarget *) { throw std::runtime_error("paint"); };
  EXPECT_THROW(window.Render(), std::runtime_error);
  window.onPaint = nullptr;
  window.paints = 0;
  const LayerSpy layers;
  window.Render();
  EXPECT_EQ(window.paints, 1);
  EXPECT_EQ(layers.Calls().size(), 1U);
  MSG message{};
  EXPECT_FALSE(::PeekMessageW(&message, window.handle, 1034, 1034, PM_REMOVE));
}

namespace {

/// Notes the order in which a repaint gives back what it took.
class GivingBack {
public:
  GivingBack() { calls.clear(); }

  static std::vector<std::string> calls;

private:
  static BOOL WINAPI HearEndPaint(HWND window, const PAINTSTRUCT *paint) {
    paintContext = paint->hdc;
    calls.emplace_back("end paint");
    return formerEndPaint(window, paint);
  }
  static BOOL WINAPI HearDeleteContext(HDC context) {
    calls.emplace_back(context == std::exchange(paintContext, nullptr) ? "delete paint context" : "delete context");
    return formerDeleteContext(context);
  }
  static BOOL WINAPI HearDeleteObject(HGDIOBJ object) {
    calls.emplace_back("delete bitmap");
    return formerDeleteObject(object);
  }

  static inline HDC paintContext = nullptr;
  static inline decltype(&::EndPaint) formerEndPaint = nullptr;
  static inline decltype(&::DeleteDC) formerDeleteContext = nullptr;
  static inline decltype(&::DeleteObject) formerDeleteObject = nullptr;
  tests::ImportSlot<decltype(&::EndPaint)> endPaint{&__imp_EndPaint,
                                                    Keep(formerEndPaint, __imp_EndPaint, HearEndPaint)};
  tests::ImportSlot<decltype(&::DeleteDC)> deleteContext{&__imp_DeleteDC,
                                                         Keep(formerDeleteContext, __imp_DeleteDC, HearDeleteContext)};
  tests::ImportSlot<decltype(&::DeleteObject)> deleteObject{
      &__imp_DeleteObject, Keep(formerDeleteObject, __imp_DeleteObject, HearDeleteObject)};

  template <typename Function> static Function Keep(Function &former, Function slot, Function replacement) {
    former = slot;
    return replacement;
  }
};

std::vector<std::string> GivingBack::calls;

} // namespace

TEST_F(WindowRender, GivesBackInOrderAndDeletesThePaintContextAfterItsEnd) {
  Open();
  const GivingBack givingBack;
  window.Render();
  EXPECT_THAT(GivingBack::calls, ElementsAre("delete bitmap", "delete context", "end paint", "delete paint context"));
}

TEST_F(WindowRender, FailedRepaintGivesBackInTheSameOrder) {
  Open();
  window.onPaint = [](ID2D1RenderTarget *) { throw std::runtime_error("paint"); };
  const GivingBack givingBack;
  EXPECT_THROW(window.Render(), std::runtime_error);
  EXPECT_THAT(GivingBack::calls, ElementsAre("delete bitmap", "delete context", "end paint", "delete paint context"));
}

namespace {

std::vector<std::string> drawCalls;
void(STDMETHODCALLTYPE *formerBeginDraw)(ID2D1RenderTarget *);
HRESULT(STDMETHODCALLTYPE *formerEndDraw)(ID2D1RenderTarget *, D2D1_TAG *, D2D1_TAG *);

void STDMETHODCALLTYPE HearBeginDraw(ID2D1RenderTarget *target) {
  drawCalls.emplace_back("begin");
  formerBeginDraw(target);
}

HRESULT STDMETHODCALLTYPE HearEndDraw(ID2D1RenderTarget *target, D2D1_TAG *first, D2D1_TAG *second) {
  drawCalls.emplace_back("end");
  return formerEndDraw(target, first, second);
}

} // namespace

TEST_F(WindowRender, EveryBegunDrawingIsEnded) {
  constexpr std::size_t beginDraw = 48, endDraw = 49; // of ID2D1RenderTarget
  Open();
  drawCalls.clear();
  tests::OperationSpy spy(window.Target());
  formerBeginDraw = spy.Exchange(beginDraw, HearBeginDraw);
  formerEndDraw = spy.Exchange(endDraw, HearEndDraw);
  window.Render();
  window.onPaint = [](ID2D1RenderTarget *) { throw std::runtime_error("paint"); };
  EXPECT_THROW(window.Render(), std::runtime_error);
  EXPECT_THAT(drawCalls, ElementsAre("begin", "end", "begin", "end"));
}

TEST_F(WindowRender, KeepsNoHandleBetweenRepaints) {
  Open();
  const RECT all{0, 0, 200, 80};
  ColorRectangle red(all, window.Target(), Color{1, 0, 0, 1});
  red.SetBounds(&all);
  window.canvas.AddChild(&red);
  for (int i = 0; i < 20; ++i)
    window.Invalidate();
  const int gdiObjects = tests::CountGdiObjects();
  for (int i = 0; i < 200; ++i)
    window.Invalidate();
  EXPECT_EQ(tests::CountGdiObjects(), gdiObjects);
}

TEST_F(WindowRender, FailedRepaintsKeepNoHandleEither) {
  Open();
  window.onPaint = [](ID2D1RenderTarget *) { throw std::runtime_error("paint"); };
  for (int i = 0; i < 5; ++i)
    EXPECT_THROW(window.Render(), std::runtime_error);
  const int gdiObjects = tests::CountGdiObjects();
  for (int i = 0; i < 50; ++i)
    EXPECT_THROW(window.Render(), std::runtime_error);
  EXPECT_EQ(tests::CountGdiObjects(), gdiObjects);
}

TEST_F(WindowRender, TargetTakesPremultipliedPixels) {
  const D2D1_PIXEL_FORMAT format = window.Target()->GetPixelFormat();
  EXPECT_EQ(format.format, DXGI_FORMAT_B8G8R8A8_UNORM);
  EXPECT_EQ(format.alphaMode, D2D1_ALPHA_MODE_PREMULTIPLIED);
}

} // namespace lumenor
