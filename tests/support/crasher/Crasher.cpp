// A program with a window whose procedure crashes when the window goes.

#include <cstdio>

#include "system/Windows.h"

namespace {

LRESULT CALLBACK CrashAtTheEnd(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_DESTROY)
    __builtin_trap();
  return ::DefWindowProcW(window, message, wParam, lParam);
}

} // namespace

int main() {
  const HWND window = ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CrashAtTheEnd));
  ::DestroyWindow(window);
  std::puts("goes on");
}
