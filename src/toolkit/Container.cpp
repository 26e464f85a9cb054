#include "toolkit/Container.h"

#include <algorithm>

namespace lumenor {

Container::Container()
    : childDesiredWidthListener(
          MakeListener<PropertyChangeEventArgs<long>>(this, &Container::OnChildDesiredWidthChanged)),
      childDesiredHeightListener(
          MakeListener<PropertyChangeEventArgs<long>>(this, &Container::OnChildDesiredHeightChanged)),
      childVisibilityListener(
          MakeListener<PropertyChangeEventArgs<lumenor::Visibility>>(this, &Container::OnChildVisibilityChanged)) {
  subscriptions.Add(this, &Container::OnLeftChanged, Left.changed);
  subscriptions.Add(this, &Container::OnTopChanged, Top.changed);
  subscriptions.Add(this, &Container::OnWidthChanged, Width.changed);
  subscriptions.Add(this, &Container::OnHeightChanged, Height.changed);
}

void Container::Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) {
  for (UIElement *child : children)
    PaintChild(renderTarget, child, rect); // which leaves out what isn't visible
}

bool Container::IsDirty() {
  return dirty || std::any_of(children.begin(), children.end(), [](UIElement *child) { return child->IsDirty(); });
}

void Container::RemoveChild(UIElement *child) {
  const auto found = std::find(children.begin(), children.end(), child);
  if (found != children.end()) {
    children.erase(found);
    child->SetParent(nullptr);
    child->DesiredWidth.changed.RemoveListener(childDesiredWidthListener.get());
    child->DesiredHeight.changed.RemoveListener(childDesiredHeightListener.get());
    child->Visibility.changed.RemoveListener(childVisibilityListener.get());
  }
  Layout();
}

void Container::InsertChild(UIElement *child, std::size_t index) {
  if (child == nullptr)
    return;
  const std::size_t place = std::min(index, children.size());
  children.insert(children.begin() + static_cast<std::ptrdiff_t>(place), child);
  child->SetParent(this);
  Layout();
  child->DesiredWidth.changed.AddListener(childDesiredWidthListener.get());
  child->DesiredHeight.changed.AddListener(childDesiredHeightListener.get());
  child->Visibility.changed.AddListener(childVisibilityListener.get());
}

std::size_t Container::MoveChild(std::size_t from, std::size_t to) {
  if (from >= children.size())
    return children.size();
  UIElement *child = children[from];
  children.erase(children.begin() + static_cast<std::ptrdiff_t>(from));
  const std::size_t place = std::min(to, children.size());
  children.insert(children.begin() + static_cast<std::ptrdiff_t>(place), child);
  Layout();
  return place;
}

int Container::IndexOfChild(UIElement *child) {
  const auto found = std::find(children.begin(), children.end(), child);
  return found == children.end() ? -1 : static_cast<int>(found - children.begin());
}

} // namespace lumenor
