#pragma once
// The white marker at the place of the row where a drag would land: a capital I as high as it is told. It stands in no
// panel; the bar paints it over everything else. User-interface thread.

#include "toolkit/UIElement.h"

namespace lumenor {

class DragTargetIndicator : public UIElement {
public:
  /// Raises HResultError when the brush can't be made.
  explicit DragTargetIndicator(RenderTargetPtr renderTarget);

  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;

private:
  RenderTargetPtr renderTarget;
  Microsoft::WRL::ComPtr<ID2D1SolidColorBrush> brush;
};

} // namespace lumenor
