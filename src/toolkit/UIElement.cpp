#include "toolkit/UIElement.h"

#include <utility>

#include "toolkit/WindowedElement.h"

namespace lumenor {

void UIElement::Invalidate() {
  dirty = true;
  if (parent != nullptr)
    parent->Invalidate();
}

void UIElement::SetParent(UIElement *newParent) {
  if (parent != nullptr)
    OnDetached();
  parent = newParent;
  if (parent != nullptr)
    OnAttached();
}

UIElement *UIElement::GetRootElement() {
  const HWND window = GetHandle();
  if (::IsWindow(window) && (::GetWindowLongW(window, GWL_STYLE) & WS_CHILD) == 0)
    return this;
  return parent == nullptr ? nullptr : parent->parent;
}

HWND UIElement::GetRootHandle() {
  UIElement *root = GetRootElement();
  return root == nullptr ? nullptr : root->GetHandle();
}

void UIElement::RunOnceShown(std::function<void()> work) {
  if (parent != nullptr)
    parent->RunOnceShown(std::move(work));
  else
    work();
}

RECT UIElement::GetBounds() const {
  return {Left.Get(), Top.Get(), Left.Get() + Width.Get(), Top.Get() + Height.Get()};
}

void UIElement::SetBounds(const RECT *rectangle) {
  const WindowMoveHold hold;
  Left.Set(rectangle->left);
  Top.Set(rectangle->top);
  Width.Set(rectangle->right - rectangle->left);
  Height.Set(rectangle->bottom - rectangle->top);
}

void UIElement::PaintChild(RenderTargetPtr renderTarget, UIElement *child, const D2D1_RECT_F *parentRect) {
  if (child == nullptr || child->Visibility.Get() != lumenor::Visibility::Visible)
    return;
  const float left = static_cast<float>(child->Left.Get()) + parentRect->left;
  const float top = static_cast<float>(child->Top.Get()) + parentRect->top;
  const D2D1_RECT_F rect{left, top, static_cast<float>(child->Width.Get()) + left,
                         static_cast<float>(child->Height.Get()) + top};
  renderTarget->PushAxisAlignedClip(&rect, D2D1_ANTIALIAS_MODE_PER_PRIMITIVE);
  child->Paint(renderTarget, &rect);
  renderTarget->PopAxisAlignedClip();
}

void UIElement::EndUpdate() {
  if (updateDepth > 0)
    --updateDepth;
  if (updateDepth == 0)
    Update();
}

} // namespace lumenor
