#include "toolkit/WindowImpl.h"

#include <string>
#include <vector>

#include "system/HResultError.h"
#include "system/Instance.h"
#include "system/WindowException.h"

namespace lumenor {

namespace {

/// A class that this file registered, and the procedure that handles what its objects leave.
struct WindowClass {
  std::wstring superClassName;
  ATOM atom;
  WNDPROC defaultProcedure;
};

std::vector<WindowClass> registeredClasses;

WNDPROC DefaultProcedureOf(HWND window) {
  const ULONG_PTR atom = ::GetClassLongPtrW(window, GCW_ATOM);
  for (const WindowClass &windowClass : registeredClasses)
    if (windowClass.atom == atom)
      return windowClass.defaultProcedure;
  return ::DefWindowProcW;
}

LRESULT AnswerByDefault(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return ::CallWindowProcW(DefaultProcedureOf(window), window, message, wParam, lParam);
}

/// Lets the object answer; false when the message is left to the default procedure.
bool AnswerByObject(CWindow &object, HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result) {
  try {
    return object.ProcessWindowMessage(window, message, wParam, lParam, result) != FALSE;
  } catch (...) {
    KeepWindowException();
    result = -1;
    return message == WM_CREATE; // -1 there makes the creation fail
  }
}

LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  CWindow *object = ObjectOf(window);
  LRESULT result = 0;
  if (object == nullptr || !AnswerByObject(*object, window, message, wParam, lParam, result))
    result = AnswerByDefault(window, message, wParam, lParam);
  if (message == WM_NCDESTROY)
    ReleaseWindow(window);
  return result;
}

/// The procedure of every class, until the window has its object.
LRESULT CALLBACK StartWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  if (message != WM_NCCREATE)
    return AnswerByDefault(window, message, wParam, lParam);
  CWindow *object = static_cast<CWindow *>(reinterpret_cast<CREATESTRUCTW *>(lParam)->lpCreateParams);
  HoldWindow(window, *object);
  const WNDPROC procedure = object->GetWindowProc();
  ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
  return procedure(window, message, wParam, lParam);
}

/// A class description whose windows show nothing of their own: no background, the arrow over them.
WNDCLASSEXW DescribePanelClass() {
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  description.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
  description.lpfnWndProc = ::DefWindowProcW;
  return description;
}

WNDCLASSEXW DescribePlatformClass(const std::wstring &name) {
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  ThrowIfFalse(::GetClassInfoExW(nullptr, name.c_str(), &description));
  description.style &= ~static_cast<UINT>(CS_GLOBALCLASS);
  return description;
}

WindowClass RegisterWindowClass(const std::wstring &superClassName) {
  WNDCLASSEXW description = superClassName.empty() ? DescribePanelClass() : DescribePlatformClass(superClassName);
  const WNDPROC defaultProcedure = description.lpfnWndProc;
  const std::wstring name = L"Lumenor" + (superClassName.empty() ? L"Panel" : superClassName);
  description.lpfnWndProc = StartWindowProcedure;
  description.lpszClassName = name.c_str();
  description.hInstance = instanceHandle;
  const ATOM atom = ::RegisterClassExW(&description);
  ThrowIfFalse(atom);
  return {superClassName, atom, defaultProcedure};
}

ATOM ClassAtom(const std::wstring &superClassName) {
  for (const WindowClass &windowClass : registeredClasses)
    if (windowClass.superClassName == superClassName)
      return windowClass.atom;
  return registeredClasses.emplace_back(RegisterWindowClass(superClassName)).atom;
}

HWND ParentNotifyControl(HWND window, WPARAM wParam, LPARAM lParam) {
  const WORD event = LOWORD(wParam);
  if (event == WM_CREATE || event == WM_DESTROY)
    return reinterpret_cast<HWND>(lParam);
  return ::GetDlgItem(window, HIWORD(wParam));
}

/// The child control that a notification concerns; null when there is none.
HWND NotifyingControl(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
  case WM_COMMAND:
  case WM_HSCROLL:
  case WM_VSCROLL:
  case WM_VKEYTOITEM:
  case WM_CHARTOITEM:
    return reinterpret_cast<HWND>(lParam);
  case WM_NOTIFY:
    return reinterpret_cast<const NMHDR *>(lParam)->hwndFrom;
  case WM_PARENTNOTIFY:
    return ParentNotifyControl(window, wParam, lParam);
  case WM_DRAWITEM:
    return wParam == 0 ? nullptr : reinterpret_cast<const DRAWITEMSTRUCT *>(lParam)->hwndItem; // 0: a menu's
  case WM_MEASUREITEM:
    return wParam == 0
               ? nullptr
               : ::GetDlgItem(window, static_cast<int>(reinterpret_cast<const MEASUREITEMSTRUCT *>(lParam)->CtlID));
  case WM_COMPAREITEM:
    return reinterpret_cast<const COMPAREITEMSTRUCT *>(lParam)->hwndItem;
  case WM_DELETEITEM:
    return reinterpret_cast<const DELETEITEMSTRUCT *>(lParam)->hwndItem;
  default:
    return AsksForControlColor(message) ? reinterpret_cast<HWND>(lParam) : nullptr;
  }
}

} // namespace

CWindow::~CWindow() {
  if (handle == nullptr)
    return;
  // The window must not call into what is already half destroyed, nor stay on the screen without its object.
  ::SetWindowLongPtrW(handle, GWLP_USERDATA, 0);
  ::DestroyWindow(handle);
}

WNDPROC CWindow::GetWindowProc() { return WindowProcedure; }

HWND CreateObjectWindow(CWindow *object, const wchar_t *superClassName, DWORD style, DWORD exStyle, HWND parent,
                        const RECT *rectangle, const wchar_t *title, UINT_PTR controlId) {
  const WindowExceptionScope ownFailures;
  const ATOM atom = ClassAtom(superClassName == nullptr ? L"" : superClassName);
  const RECT area = rectangle == nullptr ? RECT{} : *rectangle;
  const HWND window =
      ::CreateWindowExW(exStyle, MAKEINTATOM(atom), title, style, area.left, area.top, area.right - area.left,
                        area.bottom - area.top, parent, reinterpret_cast<HMENU>(controlId), instanceHandle, object);
  RethrowWindowException();
  return window;
}

bool AsksForControlColor(UINT message) { return message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC; }

LRESULT ReflectNotifications(HWND window, UINT message, WPARAM wParam, LPARAM lParam, BOOL &handled) {
  const HWND control = NotifyingControl(window, message, wParam, lParam);
  handled = ::IsWindow(control);
  return handled ? ::SendMessageW(control, message + reflectedMessageBase, wParam, lParam) : 0;
}

void HoldWindow(HWND window, CWindow &object) {
  object.handle = window;
  ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&object));
}

CWindow *ObjectOf(HWND window) { return reinterpret_cast<CWindow *>(::GetWindowLongPtrW(window, GWLP_USERDATA)); }

void ReleaseWindow(HWND window) {
  CWindow *object = ObjectOf(window);
  if (object == nullptr)
    return;
  ::SetWindowLongPtrW(window, GWLP_USERDATA, 0);
  object->handle = nullptr;
  object->OnFinalMessage(window);
}

} // namespace lumenor
