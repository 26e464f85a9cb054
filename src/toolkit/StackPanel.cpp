#include "toolkit/StackPanel.h"

#include "toolkit/Arrangement.h"

namespace lumenor {

StackPanel::StackPanel() { subscriptions.Add(this, &StackPanel::Layout, Orientation.changed); }

void StackPanel::Layout() {
  if (IsLayoutSuspended())
    return;
  if (Orientation.Get() == lumenor::Orientation::Horizontal)
    LayOutHorizontally();
  else
    LayOutVertically();
}

void StackPanel::LayOutHorizontally() {
  long offset = 0;
  for (UIElement *child : children) {
    if (child->Visibility.Get() == lumenor::Visibility::Collapsed)
      continue;
    const lumenor::Margin margin = child->Margin.Get();
    child->Left.Set(margin.left + offset);
    child->Width.Set(child->DesiredWidth.Get());
    ArrangeVertically(*child, 0, Height.Get());
    offset += child->Width.Get() + margin.right + margin.left;
  }
  DesiredWidth.Set(offset);
}

void StackPanel::LayOutVertically() {
  long offset = 0;
  for (UIElement *child : children) {
    if (child->Visibility.Get() == lumenor::Visibility::Collapsed)
      continue;
    const lumenor::Margin margin = child->Margin.Get();
    child->Top.Set(margin.top + offset);
    child->Height.Set(child->DesiredHeight.Get());
    ArrangeHorizontally(*child, 0, Width.Get());
    offset += child->Height.Get() + margin.bottom + margin.top;
  }
  DesiredHeight.Set(offset);
}

} // namespace lumenor
