#include "toolkit/PanelWindow.h"

namespace lumenor {

namespace {

BOOL OnPanelPaint(UIElement &panel, LRESULT &result) {
  if (panel.GetHandle() == nullptr) {
    result = 1;
    return TRUE;
  }
  if (panel.IsDirty() && panel.parent != nullptr)
    panel.parent->Invalidate();
  return FALSE; // so that the default procedure validates the window
}

BOOL OnPanelCommand(UIElement &panel, WPARAM wParam, LPARAM lParam, LRESULT &result) {
  const auto control = reinterpret_cast<HWND>(lParam);
  if (::IsWindow(control) && control != panel.GetHandle())
    ::PostMessageW(control, WM_COMMAND, wParam, lParam);
  result = 0;
  return TRUE;
}

} // namespace

BOOL ProcessPanelMessage(UIElement &panel, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result) {
  switch (message) {
  case WM_PAINT:
    return OnPanelPaint(panel, result);
  case WM_COMMAND:
    return OnPanelCommand(panel, wParam, lParam, result);
  default:
    return FALSE;
  }
}

} // namespace lumenor
