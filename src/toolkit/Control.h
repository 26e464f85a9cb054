#pragma once
// An element that can have the focus. User-interface thread.

#include "toolkit/Event.h"
#include "toolkit/UIElement.h"

namespace lumenor {

class Control;

/// The arguments of a control's input event.
struct ControlEventArgs {
  Control *sender;
};

class Control : public UIElement {
public:
  /// 1 between WM_SETFOCUS and WM_KILLFOCUS; kept by the controls that have a window.
  Property<int> HasFocus;

  /// The toolkit never fires these: input goes to each class's own message map.
  Event<ControlEventArgs> MouseDown{L"MouseDown"}, MouseUp{L"MouseUp"}, MouseMove{L"MouseMove"},
      MouseLeave{L"MouseLeave"}, MouseHover{L"MouseHover"}, MouseWheelTurned{L"MouseWheelTurned"}, KeyDown{L"KeyDown"},
      KeyUp{L"KeyUp"};
};

} // namespace lumenor
