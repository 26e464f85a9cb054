#include "toolkit/Gradient.h"

#include "system/HResultError.h"

namespace lumenor {

namespace {

/// (x, y) becomes (x + left, y * height + top).
D2D1_MATRIX_3X2_F Stretch(float left, float top, float height) {
  D2D1_MATRIX_3X2_F transform{};
  transform._11 = 1;
  transform._22 = height;
  transform._31 = left;
  transform._32 = top;
  return transform;
}

} // namespace

Microsoft::WRL::ComPtr<ID2D1GradientStopCollection>
CreateGradientStops(ID2D1RenderTarget *renderTarget, const std::array<D2D1_GRADIENT_STOP, 2> &stops) {
  Microsoft::WRL::ComPtr<ID2D1GradientStopCollection> collection;
  ThrowIfFailed(renderTarget->CreateGradientStopCollection(stops.data(), static_cast<UINT>(stops.size()),
                                                           D2D1_GAMMA_2_2, D2D1_EXTEND_MODE_CLAMP, &collection));
  return collection;
}

Microsoft::WRL::ComPtr<ID2D1LinearGradientBrush> CreateUnitGradientBrush(ID2D1RenderTarget *renderTarget,
                                                                         ID2D1GradientStopCollection *stops) {
  const D2D1_LINEAR_GRADIENT_BRUSH_PROPERTIES line{{0, 0}, {0, 1}};
  const D2D1_BRUSH_PROPERTIES opaque{1.0F, Stretch(0, 0, 1)};
  Microsoft::WRL::ComPtr<ID2D1LinearGradientBrush> brush;
  ThrowIfFailed(renderTarget->CreateLinearGradientBrush(&line, &opaque, stops, &brush));
  return brush;
}

void StretchUnitGradient(ID2D1Brush *brush, float left, float top, float height) {
  const D2D1_MATRIX_3X2_F transform = Stretch(left, top, height);
  brush->SetTransform(&transform);
}

} // namespace lumenor
