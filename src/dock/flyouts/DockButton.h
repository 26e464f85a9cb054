#pragma once
// A button of the bar or a row of a flyout: a Button with its element, can be dragged, and owns the flyout of
// an element that lists others. Owned by shared pointers of its list. User-interface thread.

#include <memory>

#include "content/Element.h"
#include "system/Windows.h"
#include "toolkit/drawing/Button.h"
#include "toolkit/Event.h"
#include "toolkit/Property.h"

namespace lumenor {

class FlyoutWindow;

class DockButton : public Button {
public:
  /// A row of a flyout, which opens no flyout of its own. Takes a copy of `element`.
  DockButton(std::shared_ptr<IButtonPainter> painter, const Element &element);

  /// A button of the bar. Takes a copy of `element`. An element of action type "xml" loads its document and gets a
  /// flyout, and `flyoutListener`, unless null, is called when it is shown or hidden; the caller keeps the listener
  /// alive.
  DockButton(std::shared_ptr<IButtonPainter> painter, const Element &element,
             EventListener<PropertyChangeEventArgs<lumenor::Visibility>> *flyoutListener);

  /// 1 for buttons that the user can drag.
  Property<int> Draggable{0};

  /// Fired when a press turns into a drag.
  Event<ButtonEventArgs> DragBegin{L"DragBegin"};

  const Element &GetElement() const { return element; }

  /// The flyout of a bar's "xml" element, owned by the button; null for all others.
  FlyoutWindow *GetFlyout() const { return flyout.get(); }

  /// Where the flyout is to open, in screen coordinates: under the button, or over it when the work area ends.
  RECT GetFlyoutRect();

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId = 0) override;

protected:
  void OnCreate() override;
  void OnDestroy() override;

private:
  /// Notes the position of a mouse move and begins a drag where one is due; true when the mouse didn't move at all.
  bool OnMouseMove(int x, int y);

  void OnFlyoutVisibilityChanged();

  Element element;
  std::shared_ptr<FlyoutWindow> flyout;
  int lastMouseX = -1;
  int lastMouseY = -1;
};

} // namespace lumenor
