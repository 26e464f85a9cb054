#include "drawing/PaintSurface.h"

#include "system/Desktop.h"
#include "system/HResultError.h"

using Microsoft::WRL::ComPtr;

namespace lumenor::tests {
namespace {

ComPtr<ID2D1DCRenderTarget> sharedTarget;

ComPtr<ID2D1DCRenderTarget> SharedTarget() {
  if (!sharedTarget)
    sharedTarget = CreateGdiRenderTarget();
  return sharedTarget;
}

} // namespace

PaintSurface::PaintSurface(int width, int height) : width(width), height(height), target(SharedTarget()) {}

void PaintSurface::ReleaseTarget() { sharedTarget.Reset(); }

Picture PaintSurface::Draw(const std::function<void()> &body) { return DrawOn(width, height, body); }

Picture PaintSurface::PictureOf(ID2D1Bitmap *bitmap) {
  const D2D1_SIZE_U size = bitmap->GetPixelSize();
  const D2D1_RECT_F all{0, 0, static_cast<float>(size.width), static_cast<float>(size.height)};
  return DrawOn(static_cast<int>(size.width), static_cast<int>(size.height), [&] {
    target->DrawBitmap(bitmap, &all, 1.0F, D2D1_BITMAP_INTERPOLATION_MODE_NEAREST_NEIGHBOR, nullptr);
  });
}

Picture PaintSurface::DrawOn(int drawnWidth, int drawnHeight, const std::function<void()> &body) {
  const BitmapHandle bitmap = MakeDib(SolidPicture(drawnWidth, drawnHeight, 0));
  const MemoryDeviceContext context(ThrowIfNull(::CreateCompatibleDC(nullptr)));
  const SelectedObject selected(context.Get(), bitmap.Get());
  const RECT area{0, 0, drawnWidth, drawnHeight};
  ThrowIfFailed(target->BindDC(context.Get(), &area));
  const D2D1_COLOR_F transparent{0, 0, 0, 0};
  target->BeginDraw();
  target->Clear(&transparent);
  body();
  ThrowIfFailed(target->EndDraw());
  ::GdiFlush();
  return tests::PictureOf(bitmap.Get());
}

} // namespace lumenor::tests
