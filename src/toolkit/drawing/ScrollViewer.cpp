#include "toolkit/drawing/ScrollViewer.h"

#include <utility>

namespace lumenor {

ScrollViewer::ScrollViewer(RenderTargetPtr renderTarget)
    : renderTarget(std::move(renderTarget)),
      childDesiredWidthListener(MakeListener(this, &ScrollViewer::OnChildDesiredWidthChanged)) {}

HWND ScrollViewer::GetHandle() { return handle; }

void ScrollViewer::OnAttached() {
  if (HasParentWindow(*this))
    Create(parent->GetHandle());
}

void ScrollViewer::OnDetached() {
  if (::IsWindow(handle))
    ::DestroyWindow(handle);
}

void ScrollViewer::SetChild(UIElement *newChild) {
  if (child != nullptr)
    child->DesiredWidth.changed.RemoveListener(childDesiredWidthListener.get());
  newChild->DesiredWidth.changed.AddListener(childDesiredWidthListener.get());
  SingleChildContainer::SetChild(newChild);
}

void ScrollViewer::Layout() {
  if (child == nullptr)
    return;
  child->Width.Set(child->DesiredWidth.Get());
  child->Height.Set(Height.Get());
  const long overhang = child->Width.Get() - Width.Get();
  if (overhang <= 0 || child->Left.Get() > 0)
    child->Left.Set(0);
  else if (child->Left.Get() < -overhang)
    child->Left.Set(-overhang); // the strip's end never comes inside the room
}

void ScrollViewer::OnWidthChanged() {
  MovePanelWindow(*this);
  Layout();
}

void ScrollViewer::OnHeightChanged() {
  MovePanelWindow(*this);
  Layout();
}

BOOL ScrollViewer::ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result, DWORD) {
  return ProcessPanelMessage(*this, message, wParam, lParam, result);
}

void ScrollViewer::OnChildDesiredWidthChanged(PropertyChangeEventArgs<long> *) { Layout(); }

} // namespace lumenor
