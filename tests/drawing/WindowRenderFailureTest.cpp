// The repaint of the root window when a step of it fails.

#include <gtest/gtest.h>

#include "drawing/WindowOnScreen.h"
#include "support/ImportSlot.h"
#include "support/OperationSpy.h"
#include "system/HResultError.h"
#include "toolkit/ColorRectangle.h"
#include "toolkit/drawing/Window.h"

// The slots through which a repaint takes and shows.
extern "C" {
extern decltype(&::BeginPaint) __imp_BeginPaint;
extern decltype(&::CreateCompatibleBitmap) __imp_CreateCompatibleBitmap;
extern decltype(&::UpdateLayeredWindow) __imp_UpdateLayeredWindow;
}

namespace lumenor {

namespace {

using WindowRenderFailure = WindowOnScreen;

} // namespace

namespace {

/// An operation that the target refuses: the drawing around it fails at its end.
class RefusedOperation {
public:
  explicit RefusedOperation(ID2D1RenderTarget *target) {
    const D2D1_BITMAP_PROPERTIES properties{{DXGI_FORMAT_B8G8R8A8_UNORM, D2D1_ALPHA_MODE_PREMULTIPLIED}, 0, 0};
    const D2D1_COLOR_F white{1, 1, 1, 1};
    ThrowIfFailed(target->CreateBitmap({4, 4}, nullptr, 0, &properties, mask.GetAddressOf()));
    ThrowIfFailed(target->CreateSolidColorBrush(&white, nullptr, brush.GetAddressOf()));
  }

  void Draw(ID2D1RenderTarget *target) const {
    target->FillOpacityMask(mask.Get(), brush.Get(), D2D1_OPACITY_MASK_CONTENT_GRAPHICS, nullptr, nullptr);
  }

private:
  Microsoft::WRL::ComPtr<ID2D1Bitmap> mask;
  Microsoft::WRL::ComPtr<ID2D1SolidColorBrush> brush;
};

} // namespace

TEST_F(WindowRenderFailure, FailedEndDrawIsPostedOnce) {
  Open();
  const RefusedOperation refused(window.Target());
  window.onPaint = [&](ID2D1RenderTarget *target) { refused.Draw(target); };
  window.Render();
  MSG message{};
  ASSERT_TRUE(::PeekMessageW(&message, window.handle, 1034, 1034, PM_REMOVE));
  EXPECT_EQ(static_cast<HRESULT>(message.wParam), D2DERR_WRONG_STATE);
  EXPECT_EQ(message.lParam, 0);
  EXPECT_FALSE(::PeekMessageW(&message, window.handle, 1034, 1034, PM_REMOVE));
  window.onPaint = nullptr;
  window.Render();
  EXPECT_FALSE(::PeekMessageW(&message, window.handle, 1034, 1034, PM_REMOVE));
}

TEST_F(WindowRenderFailure, AfterAFailedEndDrawTheBitmapIsShownAsFarAsItWasDrawn) {
  const desk::Backdrop blue({100, 120, 400, 300}, RGB(0, 0, 200));
  Open();
  const RefusedOperation refused(window.Target());
  const RECT left{0, 0, 40, 80};
  ColorRectangle red(left, window.Target(), Color{1, 0, 0, 1});
  const D2D1_RECT_F place{0, 0, 40, 80};
  window.onPaint = [&](ID2D1RenderTarget *target) {
    red.Paint(target, &place);
    refused.Draw(target);
  };
  window.Render();
  EXPECT_TRUE(desk::PumpUntil([] { return desk::PixelAt({121, 141}) == 0xFF0000; })) << desk::PixelAt({121, 141});
  EXPECT_EQ(desk::PixelAt({159, 219}), 0xFF0000U);
  EXPECT_EQ(desk::PixelAt({160, 180}), 0x0000C8U); // not drawn, and so transparent
}

namespace {

/// The HRESULT with which a repaint fails; S_OK when it doesn't.
HRESULT FailureOf(Window &window) {
  try {
    window.Render();
    return S_OK;
  } catch (const HResultError &error) {
    return error.Result();
  }
}

HDC WINAPI RefusePaint(HWND, PAINTSTRUCT *) {
  ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return nullptr;
}

HBITMAP WINAPI RefuseBitmap(HDC, int, int) { return nullptr; }

BOOL WINAPI RefuseUpdate(HWND, HDC, POINT *, SIZE *, HDC, POINT *, COLORREF, BLENDFUNCTION *, DWORD) {
  ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return FALSE;
}

HRESULT STDMETHODCALLTYPE RefuseBinding(ID2D1RenderTarget *, HDC, const RECT *) { return D2DERR_RECREATE_TARGET; }

} // namespace

TEST_F(WindowRenderFailure, OnARefusedPaintContextFailsAsThePlatformSays) {
  Open();
  const tests::ImportSlot slot(&__imp_BeginPaint, RefusePaint);
  EXPECT_EQ(FailureOf(window), HResultFromError(ERROR_NOT_ENOUGH_MEMORY));
}

TEST_F(WindowRenderFailure, WithoutABitmapFailsUnspecified) {
  Open();
  const tests::ImportSlot slot(&__imp_CreateCompatibleBitmap, RefuseBitmap);
  EXPECT_EQ(FailureOf(window), E_FAIL);
}

TEST_F(WindowRenderFailure, OnARefusedUpdateFailsAsThePlatformSays) {
  Open();
  const tests::ImportSlot slot(&__imp_UpdateLayeredWindow, RefuseUpdate);
  EXPECT_EQ(FailureOf(window), HResultFromError(ERROR_NOT_ENOUGH_MEMORY));
}

TEST_F(WindowRenderFailure, OnARefusedBindingFailsAsTheTargetSays) {
  constexpr std::size_t bindDC = 57; // of ID2D1DCRenderTarget
  Open();
  {
    tests::OperationSpy spy(window.Target());
    spy.Exchange(bindDC, RefuseBinding);
    EXPECT_EQ(FailureOf(window), D2DERR_RECREATE_TARGET);
  }
  EXPECT_EQ(FailureOf(window), S_OK);
}

} // namespace lumenor
