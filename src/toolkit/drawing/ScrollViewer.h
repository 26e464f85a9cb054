#pragma once
// A child window that shows a horizontal strip, its one child, through a room that may be narrower. User-interface
// thread.

#include <memory>

#include "toolkit/PanelWindow.h"
#include "toolkit/SingleChildContainer.h"

namespace lumenor {

class ScrollViewer : public SingleChildContainer, public CWindowImpl<ScrollViewer, CWindow, PanelTraits> {
public:
  /// `renderTarget` is what the arrow buttons are drawn on.
  explicit ScrollViewer(RenderTargetPtr renderTarget);

  HWND GetHandle() override;
  void OnAttached() override;
  void OnDetached() override;

  /// Replaces the strip and follows its wishes from now on. `newChild` must not be null.
  void SetChild(UIElement *newChild) override;

  /// Gives the strip the width it asks for and the viewer's height, and keeps its ends at or outside the room's.
  void Layout() override;

  void OnWidthChanged() override;
  void OnHeightChanged() override;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId = 0) override;

private:
  void OnChildDesiredWidthChanged(PropertyChangeEventArgs<long> *args);

  RenderTargetPtr renderTarget;
  std::shared_ptr<TypedEventListener<ScrollViewer, PropertyChangeEventArgs<long>>> childDesiredWidthListener;
};

} // namespace lumenor
