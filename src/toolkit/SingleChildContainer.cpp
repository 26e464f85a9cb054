#include "toolkit/SingleChildContainer.h"

namespace lumenor {

SingleChildContainer::SingleChildContainer() {
  subscriptions.Add(this, &SingleChildContainer::OnWidthChanged, Width.changed);
  subscriptions.Add(this, &SingleChildContainer::OnHeightChanged, Height.changed);
}

void SingleChildContainer::Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) {
  PaintChild(renderTarget, child, rect);
}

bool SingleChildContainer::IsDirty() { return dirty || (child != nullptr && child->IsDirty()); }

void SingleChildContainer::SetChild(UIElement *newChild) {
  if (child != nullptr)
    child->SetParent(nullptr);
  child = newChild;
  child->SetParent(this);
  Layout();
}

void SingleChildContainer::Layout() {
  if (child == nullptr)
    return;
  child->Width.Set(Width.Get());
  child->Height.Set(Height.Get());
}

} // namespace lumenor
