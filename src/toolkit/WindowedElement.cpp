#include "toolkit/WindowedElement.h"

#include <utility>

namespace lumenor {

void MoveElementWindow(UIElement &element) {
  const HWND window = element.GetHandle();
  if (!::IsWindow(window))
    return;
  if (WindowMoveHold::depth != 0) {
    WindowMoveHold::Forget(element);
    WindowMoveHold::moved.push_back(&element);
    return;
  }
  ::SetWindowPos(window, nullptr, element.Left.Get(), element.Top.Get(), element.Width.Get(), element.Height.Get(),
                 SWP_FRAMECHANGED);
}

/// A move's message may ask for further moves and end elements, so each is taken out before it is made.
WindowMoveHold::~WindowMoveHold() {
  if (--depth != 0)
    return;
  while (!moved.empty()) {
    UIElement *const next = moved.front();
    moved.erase(moved.begin());
    MoveElementWindow(*next);
  }
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

void WindowControl::RunLatestOnceShown(std::function<void()> work) {
  latestRequest.reset();
  if (!::IsWindow(GetHandle()))
    return;
  latestRequest = std::make_shared<char>();
  RunOnceShown([this, request = std::weak_ptr<void>(latestRequest), work = std::move(work)] {
    if (!request.expired() && ::IsWindow(GetHandle()))
      work();
  });
}

void WindowControl::OnGeometryChanged() { MoveElementWindow(*this); }

void WindowControl::OnVisibilityChanged(PropertyChangeEventArgs<lumenor::Visibility> *args) {
  if (::IsWindow(GetHandle()))
    ::ShowWindow(GetHandle(), args->newValue == lumenor::Visibility::Visible ? SW_SHOW : SW_HIDE);
}

} // namespace lumenor
