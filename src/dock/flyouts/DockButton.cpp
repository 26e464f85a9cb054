#include "dock/flyouts/DockButton.h"

#include <utility>

#include "content/Documents.h"
#include "dock/dragdrop/DragState.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "dock/Placement.h"
#include "toolkit/drawing/IButtonPainter.h"
#include "toolkit/Scale.h"

namespace lumenor {

namespace {

/// The height that a flyout is taken to have before there is one.
constexpr int expectedFlyoutHeight = 242;

} // namespace

// A row without a flyout can't list itself: documents that name each other would open windows without end.
DockButton::DockButton(std::shared_ptr<IButtonPainter> painter, const Element &element)
    : Button(std::move(painter)), element(element) {
  Name.Set(element.ToolTip);
}

DockButton::DockButton(std::shared_ptr<IButtonPainter> painter, const Element &element,
                       EventListener<PropertyChangeEventArgs<lumenor::Visibility>> *flyoutListener)
    : DockButton(std::move(painter), element) {
  if (element.ActionType != flyoutAction)
    return;
  flyout = std::make_shared<FlyoutWindow>(GetFlyoutRect(), element.Head, LoadDocument(element.ActionParams, false));
  flyout->Visible.AddListener(flyoutListener);
  subscriptions.Add(this, &DockButton::OnFlyoutVisibilityChanged, flyout->Visible);
}

// The arrow turns, also when the flyout goes because another program has come up, which paints nothing of the bar.
void DockButton::OnFlyoutVisibilityChanged() { InvalidateWindow(FALSE); }

RECT DockButton::GetFlyoutRect() {
  POINT corner = {Left.Get(), Top.Get() + Height.Get()};
  if (parent != nullptr)
    ::ClientToScreen(parent->GetHandle(), &corner);
  const LONG flyoutHeight = flyout ? flyout->DesiredHeight.Get() : ScaleY(expectedFlyoutHeight);
  return ButtonFlyoutRect(corner, Height.Get(), flyoutHeight, GetWorkArea(), ScreenScale());
}

void DockButton::OnCreate() {
  painter->Attach(this);
  if (flyout)
    RunOnceShown([this, listed = std::weak_ptr(flyout)] {
      if (const auto alive = listed.lock(); alive && ::IsWindow(handle))
        alive->Create(GetRootHandle());
    });
}

void DockButton::OnDestroy() {
  if (flyout && ::IsWindow(flyout->GetHandle()))
    ::DestroyWindow(flyout->GetHandle());
}

BOOL DockButton::ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                                      DWORD mapId) {
  if (message == WM_MOUSEMOVE && OnMouseMove(LOWORD(lParam), HIWORD(lParam))) {
    result = 1;
    return TRUE;
  }
  if (message == WM_MOUSELEAVE)
    lastMouseX = lastMouseY = -1;
  return Button::ProcessWindowMessage(window, message, wParam, lParam, result, mapId);
}

bool DockButton::OnMouseMove(int x, int y) {
  if (x == lastMouseX && y == lastMouseY)
    return true;
  lastMouseX = x;
  lastMouseY = y;
  if (Draggable.Get() != 0 && IsPressed.Get() != 0 && draggedButton != handle) {
    draggedButton = handle;
    ButtonEventArgs args{this};
    DragBegin.Fire(&args);
  }
  return false;
}

} // namespace lumenor
