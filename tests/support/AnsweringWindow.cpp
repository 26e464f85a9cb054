#include "support/AnsweringWindow.h"

#include <utility>

namespace lumenor::tests {

AnsweringWindow::AnsweringWindow(std::function<LRESULT(UINT message, WPARAM wParam, LPARAM lParam)> answer, HWND parent)
    : answer(std::move(answer)),
      window(::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 0, 0, parent, nullptr, nullptr, nullptr)) {
  ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&AnsweringWindow::Procedure));
}

AnsweringWindow::~AnsweringWindow() {
  if (::IsWindow(window))
    ::DestroyWindow(window);
}

LRESULT CALLBACK AnsweringWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto *self = reinterpret_cast<AnsweringWindow *>(::GetWindowLongPtrW(window, GWLP_USERDATA));
  return message >= WM_USER ? self->answer(message, wParam, lParam) : ::DefWindowProcW(window, message, wParam, lParam);
}

} // namespace lumenor::tests
