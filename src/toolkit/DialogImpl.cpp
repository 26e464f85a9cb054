#include "toolkit/DialogImpl.h"

#include <utility>

#include "system/Instance.h"
#include "system/ScopeExit.h"
#include "system/WindowException.h"

namespace lumenor {

namespace {

/// The object whose window this thread is making and that has seen no message yet. One for each thread, so no lock.
thread_local CDialog *startingDialog = nullptr;

/// Whether a dialog procedure's answer to `message` is its return value itself.
bool AnswersDirectly(UINT message) {
  switch (message) {
  case WM_INITDIALOG:
  case WM_COMPAREITEM:
  case WM_VKEYTOITEM:
  case WM_CHARTOITEM:
  case WM_QUERYDRAGICON:
    return true;
  default:
    return AsksForControlColor(message);
  }
}

INT_PTR Answer(HWND window, UINT message, LRESULT result) {
  if (AnswersDirectly(message))
    return result;
  ::SetWindowLongPtrW(window, DWLP_MSGRESULT, result);
  return TRUE;
}

INT_PTR AnswerByObject(CWindow &object, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  try {
    LRESULT result = 0;
    return object.ProcessWindowMessage(window, message, wParam, lParam, result) ? Answer(window, message, result)
                                                                                : FALSE;
  } catch (...) {
    KeepWindowException();
    return FALSE;
  }
}

INT_PTR CALLBACK DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  CWindow *object = ObjectOf(window);
  const INT_PTR answer = object == nullptr ? FALSE : AnswerByObject(*object, window, message, wParam, lParam);
  if (message == WM_NCDESTROY)
    ReleaseWindow(window);
  return answer;
}

INT_PTR CALLBACK StartDialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  CDialog *object = std::exchange(startingDialog, nullptr);
  if (object == nullptr)
    return FALSE;
  HoldWindow(window, *object);
  const DLGPROC procedure = object->GetDialogProc();
  ::SetWindowLongPtrW(window, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(procedure));
  return procedure(window, message, wParam, lParam);
}

} // namespace

DLGPROC CDialog::GetDialogProc() { return DialogProcedure; }

HWND CreateDialogObject(CDialog *object, WORD dialogId, HWND parentWindow) {
  const WindowExceptionScope ownFailures;
  const ScopedValue start(startingDialog, object);
  const HWND window =
      ::CreateDialogParamW(instanceHandle, MAKEINTRESOURCEW(dialogId), parentWindow, StartDialogProcedure, 0);
  RethrowWindowException();
  return ::IsWindow(window) ? window : nullptr;
}

INT_PTR RunDialogObject(CDialog *object, WORD dialogId, HWND parentWindow) {
  const WindowExceptionScope ownFailures;
  const HWND owner = ::GetAncestor(parentWindow, GA_ROOT);
  // The platform disables the owner of a modal dialog and may enable it at EndDialog only. A dialog that is destroyed
  // instead, when it is closed or has failed, must not leave its owner disabled.
  const ScopeExit enabling([owner, wasEnabled = ::IsWindowEnabled(owner)] {
    if (!wasEnabled || ::IsWindowEnabled(owner))
      return;
    ::EnableWindow(owner, TRUE);
    ::SetActiveWindow(owner);
  });
  const ScopedValue start(startingDialog, object);
  const INT_PTR answer =
      ::DialogBoxParamW(instanceHandle, MAKEINTRESOURCEW(dialogId), parentWindow, StartDialogProcedure, 0);
  RethrowWindowException();
  return answer;
}

} // namespace lumenor
