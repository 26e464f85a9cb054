#include "toolkit/WindowedElement.h"

namespace lumenor {

bool HasParentWindow(const UIElement &element) {
  return element.parent != nullptr && ::IsWindow(element.parent->GetHandle());
}

void MoveElementWindow(UIElement &element) {
  if (const HWND window = element.GetHandle(); ::IsWindow(window))
    ::SetWindowPos(window, nullptr, element.Left.Get(), element.Top.Get(), element.Width.Get(), element.Height.Get(),
                   SWP_FRAMECHANGED);
}

WindowControl::WindowControl() {
  subscriptions.Add(this, &WindowControl::OnGeometryChanged, Left.changed, Top.changed, Width.changed, Height.changed);
  subscriptions.Add(this, &WindowControl::OnVisibilityChanged, Visibility.changed);
}

BOOL WindowControl::OnMove(LPARAM position) {
  Left.Set(LOWORD(position));
  Top.Set(HIWORD(position));
  return FALSE;
}

BOOL WindowControl::OnSize(LPARAM size) {
  Width.Set(LOWORD(size));
  Height.Set(HIWORD(size));
  return FALSE;
}

void WindowControl::OnGeometryChanged() { MoveElementWindow(*this); }

void WindowControl::OnVisibilityChanged(PropertyChangeEventArgs<lumenor::Visibility> *args) {
  if (::IsWindow(GetHandle()))
    ::ShowWindow(GetHandle(), args->newValue == lumenor::Visibility::Visible ? SW_SHOW : SW_HIDE);
}

} // namespace lumenor
