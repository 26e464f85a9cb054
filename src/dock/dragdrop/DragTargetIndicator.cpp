#include "dock/dragdrop/DragTargetIndicator.h"

#include "system/HResultError.h"

namespace lumenor {

DragTargetIndicator::DragTargetIndicator(RenderTargetPtr renderTarget) : renderTarget(std::move(renderTarget)) {
  const D2D1_COLOR_F white{1.0F, 1.0F, 1.0F, 1.0F};
  ThrowIfFailed(this->renderTarget->CreateSolidColorBrush(&white, nullptr, &brush));
}

void DragTargetIndicator::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  const float x = (rect->left + rect->right) / 2;
  const D2D1_RECT_F stem{x - 1, rect->top, x + 1, rect->bottom};
  const D2D1_RECT_F topCap{rect->left, rect->top, rect->right, rect->top + 1};
  const D2D1_RECT_F bottomCap{rect->left, rect->bottom - 1, rect->right, rect->bottom};
  for (const D2D1_RECT_F &part : {stem, topCap, bottomCap})
    target->FillRectangle(&part, brush.Get());
}

} // namespace lumenor
