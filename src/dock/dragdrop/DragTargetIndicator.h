#pragma once
// The white insertion marker of a drag, a capital I as high as its bounds. It is in no panel; the bar paints it over
// everything else. User-interface thread.

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
