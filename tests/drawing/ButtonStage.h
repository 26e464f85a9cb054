#pragma once
// A window on the screen with one button in it, for painters that draw only what can be seen.

#include "system/Handles.h"
#include "toolkit/drawing/Button.h"
#include "toolkit/UIElement.h"

namespace lumenor::tests {

class ButtonStage {
public:
  /// Puts `button` into a window that shows, at `bounds` in it. The button must outlive this.
  ButtonStage(Button &button, const RECT &bounds);
  ~ButtonStage();
  ButtonStage(const ButtonStage &) = delete;
  ButtonStage &operator=(const ButtonStage &) = delete;

  /// Hides the window, and with it the button.
  void Hide() const { ::ShowWindow(host.window, SW_HIDE); }

private:
  /// Stands in for a panel: an element with a window.
  class Host : public UIElement {
  public:
    Host();
    ~Host() override;
    HWND GetHandle() override { return window; }
    void Paint(RenderTargetPtr, const D2D1_RECT_F *) override {}

    HWND window;
  };

  Host host;
  Button &button;
};

} // namespace lumenor::tests
