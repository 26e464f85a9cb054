#include "toolkit/Gradient.h"

#include "system/HResultError.h"

namespace lumenor {

Microsoft::WRL::ComPtr<ID2D1LinearGradientBrush>
MakeUnitGradient(ID2D1RenderTarget *renderTarget, const D2D1_GRADIENT_STOP *stops, UINT32 count, float x) {
  Microsoft::WRL::ComPtr<ID2D1GradientStopCollection> collection;
  ThrowIfFailed(
      renderTarget->CreateGradientStopCollection(stops, count, D2D1_GAMMA_2_2, D2D1_EXTEND_MODE_CLAMP, &collection));
  const D2D1_LINEAR_GRADIENT_BRUSH_PROPERTIES line{{x, 0.0F}, {x, 1.0F}};
  const D2D1_BRUSH_PROPERTIES properties{1.0F, {1.0F, 0.0F, 0.0F, 1.0F, 0.0F, 0.0F}};
  Microsoft::WRL::ComPtr<ID2D1LinearGradientBrush> brush;
  ThrowIfFailed(renderTarget->CreateLinearGradientBrush(&line, &properties, collection.Get(), &brush));
  return brush;
}

void StretchUnitGradient(ID2D1Brush *brush, float left, float top, float height) {
  const D2D1_MATRIX_3X2_F transform{1.0F, 0.0F, 0.0F, height, left, top};
  brush->SetTransform(&transform);
}

} // namespace lumenor
