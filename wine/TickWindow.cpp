#include "TickWindow.h"

#include "AnimationErrors.h"

namespace lumenor::services {

namespace {

constexpr wchar_t className[] = L"LumenorServicesTick";
constexpr UINT tickMs = 10;

enum TimerId : UINT_PTR { TickTimerId = 1 };

/// Registered with the first window; a second registration fails and changes nothing.
void EnsureClass(WNDPROC procedure) {
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  description.lpfnWndProc = procedure;
  description.cbWndExtra = sizeof(ModuleLock *);
  description.hInstance = ModuleInstance();
  description.lpszClassName = className;
  ::RegisterClassExW(&description);
}

} // namespace

TickWindow::TickWindow(TickSink &sink) {
  EnsureClass(Procedure);
  window = ::CreateWindowExW(0, className, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, ModuleInstance(), &sink);
}

TickWindow::~TickWindow() {
  ::SetWindowLongPtrW(window, GWLP_USERDATA, 0);
  if (IsOnItsThread())
    ::DestroyWindow(window);
  else
    ::PostMessageW(window, WM_CLOSE, 0, 0);
}

HRESULT TickWindow::Start() {
  if (!IsOnItsThread())
    return wrongThread;
  return ::SetTimer(window, TickTimerId, tickMs, nullptr) != 0 ? S_OK : E_FAIL;
}

HRESULT TickWindow::Stop() {
  if (!IsOnItsThread())
    return wrongThread;
  ::KillTimer(window, TickTimerId);
  return S_OK;
}

void TickWindow::ForgetClass() { ::UnregisterClassW(className, ModuleInstance()); }

/// The window keeps the DLL loaded by itself: it can outlive its timer.
LRESULT CALLBACK TickWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto lock = reinterpret_cast<ModuleLock *>(::GetWindowLongPtrW(window, 0));
  switch (message) {
  case WM_NCCREATE:
    ::SetWindowLongPtrW(window, 0, reinterpret_cast<LONG_PTR>(new ModuleLock));
    ::SetWindowLongPtrW(window, GWLP_USERDATA,
                        reinterpret_cast<LONG_PTR>(reinterpret_cast<const CREATESTRUCTW *>(lParam)->lpCreateParams));
    break;
  case WM_TIMER:
    if (const auto sink = reinterpret_cast<TickSink *>(::GetWindowLongPtrW(window, GWLP_USERDATA)); sink != nullptr)
      sink->OnTick();
    return 0;
  case WM_NCDESTROY:
    delete lock;
    break;
  default:
    break;
  }
  return ::DefWindowProcW(window, message, wParam, lParam);
}

bool TickWindow::IsOnItsThread() const { return ::GetWindowThreadProcessId(window, nullptr) == ::GetCurrentThreadId(); }

} // namespace lumenor::services
