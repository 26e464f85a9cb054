#include "drawing/ButtonStage.h"

namespace lumenor::tests {

ButtonStage::Host::Host()
    : window(::CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP, 100, 100, 300, 200, nullptr, nullptr,
                               ::GetModuleHandleW(nullptr), nullptr)) {
  // Taking an active window down again would wait for a window manager.
  ::ShowWindow(window, SW_SHOWNOACTIVATE);
}

ButtonStage::Host::~Host() { ::DestroyWindow(window); }

ButtonStage::ButtonStage(Button &button, const RECT &bounds) : button(button) {
  button.parent = &host;
  button.SetBounds(&bounds);
  button.OnAttached();
}

ButtonStage::~ButtonStage() {
  button.OnDetached();
  button.parent = nullptr;
}

} // namespace lumenor::tests
