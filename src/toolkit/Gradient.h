#pragma once
// Unit gradients: linear gradient brushes from (0, 0) to (0, 1), which a transform stretches over what they fill.
// User-interface thread.

#include <array>

#include "toolkit/UIElement.h"

namespace lumenor {

/// The stops between two colours, clamped outside, interpolated with gamma 2.2. Raises HResultError.
Microsoft::WRL::ComPtr<ID2D1GradientStopCollection> CreateGradientStops(ID2D1RenderTarget *renderTarget,
                                                                        const std::array<D2D1_GRADIENT_STOP, 2> &stops);

/// A brush over `stops` from top to bottom of the unit square, fully opaque. Raises HResultError.
Microsoft::WRL::ComPtr<ID2D1LinearGradientBrush> CreateUnitGradientBrush(ID2D1RenderTarget *renderTarget,
                                                                         ID2D1GradientStopCollection *stops);

/// Stretches a unit gradient to `height` pixels from (`left`, `top`) down.
void StretchUnitGradient(ID2D1Brush *brush, float left, float top, float height);

} // namespace lumenor
