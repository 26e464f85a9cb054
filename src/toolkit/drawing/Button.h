#pragma once
// The clickable element: at once a control of the tree and a real child window of the platform's button class. The
// window shows nothing of its own; it is there for the platform's part of a click (capture, release inside or outside,
// the space key, the notification). What the user sees is painted by the button's painter in the root's one pass, and
// what a screen reader calls the button is the text that its window answers.
// Held in a shared pointer by whoever composes the screen. User-interface thread.

#include <memory>
#include <string>

#include "system/Handles.h"
#include "system/Windows.h"
#include "toolkit/Event.h"
#include "toolkit/Property.h"
#include "toolkit/WindowedElement.h"

namespace lumenor {

class Button;
class IButtonPainter;

/// The arguments of a button's event; on the stack of the code that fires it.
struct ButtonEventArgs {
  Button *sender = nullptr;
};

class Button : public WindowedElement<Button, WindowControl, CWinTraits<WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, 0>>,
               public std::enable_shared_from_this<Button> {
public:
  /// `painter` must not be null. Makes no window; that comes with OnAttached.
  explicit Button(std::shared_ptr<IButtonPainter> painter);
  ~Button() override;

  /// The platform's class that the window is built upon.
  static const wchar_t *GetSuperClassName() { return L"BUTTON"; }

  /// Fired one turn of the message loop after a release inside the button or after the space key came up. A button that
  /// is held in a shared pointer outlives the firing, even if its listeners drop it. An exception of a listener passes
  /// through to the code that dispatches the button's messages.
  Event<ButtonEventArgs> Click{L"Click"};

  /// 1 while the left mouse button or the space key is down on the button.
  Property<int> IsPressed{0};

  /// 1 from the first mouse move over the button until the mouse leaves.
  Property<int> IsMouseOver{0};

  /// Replaces the painter, attaches it to this button and asks for a repaint. `newPainter` must not be null.
  void SetPainter(std::shared_ptr<IButtonPainter> newPainter);

  void Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) override;
  void OnAttached() override;

  /// What screen readers call the button: its label, or its tip where it has none.
  std::wstring GetAccessibleName() const;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId = 0) override;

protected:
  /// On WM_CREATE: attaches the painter.
  virtual void OnCreate();

  /// On WM_DESTROY: nothing here.
  virtual void OnDestroy() {}

  /// Asks for a repaint of the button, at the next turn of the message loop. `erase` as the platform takes it.
  void InvalidateWindow(BOOL erase);

  std::shared_ptr<IButtonPainter> painter;

private:
  BOOL OnPaint(LRESULT &result);
  BOOL OnKey(UINT message, WPARAM key, LRESULT &result);
  BOOL OnMouseMove(LRESULT &result);
  BOOL OnMouseLeave(LRESULT &result);
  BOOL FinishStateMessage(LRESULT &result);
  BOOL OnCommand(WPARAM wParam, LPARAM lParam, LRESULT &result);
  BOOL OnTextRequest(UINT message, WPARAM room, LPARAM buffer, LRESULT &result) const;

  void OnStateChanged();
  void OnNameChanged();
  bool HasWindowText() const;
  void BuildToolTip();
  void MakeToolTip();
  void AddToToolTip(HWND root);

  WindowHandle toolTipWindow;
};

} // namespace lumenor
