#include "toolkit/BackPlate.h"

#include "system/Desktop.h"
#include "toolkit/Gradient.h"

namespace lumenor {

namespace {

constexpr float cornerRadius = 6.0F;

} // namespace

BackPlate::BackPlate(const RenderTargetPtr &renderTarget, float topAlpha, float bottomAlpha) {
  const D2D1_GRADIENT_STOP stops[] = {{0.0F, {0, 0, 0, topAlpha}}, {1.0F, {0, 0, 0, bottomAlpha}}};
  brush = MakeUnitGradient(renderTarget.Get(), stops, 2, 0.0F);
}

void BackPlate::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  // The gradient starts at the element's own place, not at the rectangle's.
  StretchUnitGradient(brush.Get(), static_cast<float>(Left.Get()), static_cast<float>(Top.Get()),
                      static_cast<float>(Height.Get()));
  if (IsLowColorDisplay()) {
    target->FillRectangle(rect, brush.Get());
    return;
  }
  const D2D1_ROUNDED_RECT plate{*rect, cornerRadius, cornerRadius};
  target->FillRoundedRectangle(&plate, brush.Get());
}

} // namespace lumenor
