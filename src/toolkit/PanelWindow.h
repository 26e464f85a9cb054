#pragma once
// What makes a container a real child window. User-interface thread.

#include "system/Windows.h"
#include "toolkit/Container.h"
#include "toolkit/WindowedElement.h"

namespace lumenor {

using PanelTraits = CWinTraits<WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0>;

/// The messages that every panel handles. WM_PAINT becomes an invalidation of the parent: a child window never draws,
/// the root does. WM_COMMAND is posted back to the control that sent it.
BOOL ProcessPanelMessage(UIElement &panel, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result);

/// The container `Panel` with its window.
template <typename Panel> class PanelWindow : public WindowedElement<Panel, Container, PanelTraits> {
public:
  void OnLeftChanged() override { MoveAndLayOut(); }
  void OnTopChanged() override { MoveAndLayOut(); }
  void OnWidthChanged() override { MoveAndLayOut(); }
  void OnHeightChanged() override { MoveAndLayOut(); }

  BOOL ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result, DWORD = 0) override {
    return ProcessPanelMessage(*this, message, wParam, lParam, result);
  }

private:
  void MoveAndLayOut() {
    MoveElementWindow(*this);
    this->Layout();
  }
};

} // namespace lumenor
