#pragma once
// Unit gradients: linear gradient brushes from top to bottom of a rectangle one pixel high, which a transform stretches
// over what they fill. User-interface thread.

#include "toolkit/UIElement.h"

namespace lumenor {

/// A brush through `count` stops, opaque, clamped outside, interpolated with gamma 2.2. Its line runs down at `x`,
/// which doesn't change what it paints. Raises HResultError.
Microsoft::WRL::ComPtr<ID2D1LinearGradientBrush>
MakeUnitGradient(ID2D1RenderTarget *renderTarget, const D2D1_GRADIENT_STOP *stops, UINT32 count, float x = 1.0F);

/// Stretches a unit gradient to `height` pixels from (`left`, `top`) down.
void StretchUnitGradient(ID2D1Brush *brush, float left, float top, float height);

} // namespace lumenor
