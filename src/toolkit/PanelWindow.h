#pragma once
// What makes a container a real child window. The window shows nothing: it is there for the platform to find what lies
// under the cursor, and to be the parent of its children's windows. User-interface thread.

#include "system/Windows.h"
#include "toolkit/Container.h"
#include "toolkit/WindowImpl.h"

namespace lumenor {

using PanelTraits = CWinTraits<WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0>;

/// The messages that every panel handles. WM_PAINT becomes an invalidation of the parent: a child window never draws,
/// it passes the job up to the root. WM_COMMAND is posted back to the control that sent it.
BOOL ProcessPanelMessage(UIElement &panel, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result);

/// Moves a panel's window to the element's rectangle, on top of its siblings.
void MovePanelWindow(UIElement &panel);

/// Whether `panel` stands under an element that has a window, which a window of its own needs.
bool HasParentWindow(const UIElement &panel);

/// The container `Panel` with its window, which lives from OnAttached to OnDetached.
template <typename Panel> class PanelWindow : public Container, public CWindowImpl<Panel, CWindow, PanelTraits> {
public:
  HWND GetHandle() override { return this->handle; }

  void OnAttached() override {
    if (HasParentWindow(*this))
      this->Create(parent->GetHandle());
  }

  void OnDetached() override {
    if (::IsWindow(this->handle))
      ::DestroyWindow(this->handle);
  }

  void OnLeftChanged() override { MoveAndLayOut(); }
  void OnTopChanged() override { MoveAndLayOut(); }
  void OnWidthChanged() override { MoveAndLayOut(); }
  void OnHeightChanged() override { MoveAndLayOut(); }

  BOOL ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result, DWORD = 0) override {
    return ProcessPanelMessage(*this, message, wParam, lParam, result);
  }

private:
  void MoveAndLayOut() {
    MovePanelWindow(*this);
    this->Layout();
  }
};

} // namespace lumenor
