#include "support/RenderSurface.h"

#include "system/Desktop.h"
#include "system/HResultError.h"

namespace lumenor::tests {

using Microsoft::WRL::ComPtr;

namespace {

HBITMAP MakeTopDownBitmap(HDC context, int width, int height, void **bits) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  return ThrowIfNull(::CreateDIBSection(context, &info, DIB_RGB_COLORS, bits, nullptr, 0));
}

/// Targets that no surface holds; making one costs the test platform 200 ms.
std::vector<ComPtr<ID2D1DCRenderTarget>> &IdleTargets() {
  static std::vector<ComPtr<ID2D1DCRenderTarget>> targets;
  return targets;
}

ComPtr<ID2D1DCRenderTarget> TakeTarget() {
  if (IdleTargets().empty())
    return CreateGdiRenderTarget();
  const auto target = IdleTargets().back();
  IdleTargets().pop_back();
  return target;
}

} // namespace

RenderSurface::RenderSurface(int width, int height)
    : width(width), pixels(static_cast<std::size_t>(width * height)), target(TakeTarget()),
      context(ThrowIfNull(::CreateCompatibleDC(nullptr))),
      bitmap(MakeTopDownBitmap(context.Get(), width, height, &bits)), selected(context.Get(), bitmap.Get()) {
  const RECT area{0, 0, width, height};
  ThrowIfFailed(target->BindDC(context.Get(), &area));
}

RenderSurface::~RenderSurface() { IdleTargets().push_back(target); }

std::vector<std::uint32_t> RenderSurface::Draw(const std::function<void()> &body) {
  const D2D1_COLOR_F transparent{0, 0, 0, 0};
  target->BeginDraw();
  target->Clear(&transparent);
  body();
  ThrowIfFailed(target->EndDraw());
  ::GdiFlush();
  const auto *first = static_cast<const std::uint32_t *>(bits);
  pixels.assign(first, first + pixels.size());
  return pixels;
}

} // namespace lumenor::tests
