#pragma once
// A translucent black plate with rounded corners that lies under a screen's content. User-interface thread.

#include "toolkit/UIElement.h"

namespace lumenor {

class BackPlate : public UIElement {
public:
  /// The plate's alpha runs from `topAlpha` at its top to `bottomAlpha` at its bottom, each 0 to 1. Raises HResultError
  /// when the gradient can't be made.
  BackPlate(const RenderTargetPtr &renderTarget, float topAlpha, float bottomAlpha);

  void Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) override;

private:
  Microsoft::WRL::ComPtr<ID2D1LinearGradientBrush> brush;
};

} // namespace lumenor
