#include "toolkit/ColorRectangle.h"

#include "system/HResultError.h"

namespace lumenor {

ColorRectangle::ColorRectangle(const RECT &bounds, RenderTargetPtr renderTarget, const Color &color) : bounds(bounds) {
  const D2D1_COLOR_F brushColor{color.red, color.green, color.blue, color.alpha};
  ThrowIfFailed(renderTarget->CreateSolidColorBrush(&brushColor, nullptr, &brush));
}

void ColorRectangle::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  target->FillRectangle(rect, brush.Get());
}

} // namespace lumenor
