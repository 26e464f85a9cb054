#include "e2e/OtherWindow.h"

#include "e2e/Screen.h"

namespace lumenor::e2e {
namespace {

constexpr wchar_t className[] = L"LumenorOtherWindow";

} // namespace

OtherWindow::OtherWindow(const RECT &area, UINT watched) : watched(watched), thread([this, area] { Run(area); }) {
  WaitFor([this] { return handle != nullptr && ::IsWindowVisible(handle); });
}

OtherWindow::~OtherWindow() {
  ::PostMessageW(handle, WM_CLOSE, 0, 0);
  thread.join();
}

LRESULT CALLBACK OtherWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto *self = reinterpret_cast<OtherWindow *>(::GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self != nullptr && self->watched != 0 && message == self->watched)
    ++self->count;
  if (message == WM_CLOSE)
    ::DestroyWindow(window);
  if (message == WM_DESTROY)
    ::PostQuitMessage(0);
  return message == WM_CLOSE ? 0 : ::DefWindowProcW(window, message, wParam, lParam);
}

void OtherWindow::Run(const RECT &area) {
  WNDCLASSW type = {};
  type.lpfnWndProc = Procedure;
  type.hInstance = ::GetModuleHandleW(nullptr);
  type.lpszClassName = className;
  type.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  ::RegisterClassW(&type);
  const HWND window = ::CreateWindowExW(0, className, L"Other", WS_POPUP, area.left, area.top, area.right - area.left,
                                        area.bottom - area.top, nullptr, nullptr, type.hInstance, nullptr);
  ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  ::ShowWindow(window, SW_SHOW);
  handle = window;
  MSG message = {};
  while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
  }
}

} // namespace lumenor::e2e
