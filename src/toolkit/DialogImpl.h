#pragma once
// Windows made from a dialog template. The object that is being started is remembered for its thread until the first
// message arrives, whichever that is, so that nothing that comes before WM_INITDIALOG is lost. User-interface thread.

#include "system/Windows.h"
#include "toolkit/WindowImpl.h"

namespace lumenor {

/// A window from a dialog template and what its dialog procedure calls.
class CDialog : public CWindow {
public:
  /// The dialog procedure that the window runs under once the object is stored with it. It answers as the platform
  /// expects of dialog procedures: the result of the message map through DWLP_MSGRESULT, but directly for
  /// WM_INITDIALOG, WM_CTLCOLOR... and the few others whose answer is the return value itself.
  virtual DLGPROC GetDialogProc();
};

/// Makes the modeless window of `object` from the program's template `dialogId`. Null when the platform refused or the
/// window was destroyed meanwhile; raises what the object's own handlers raised, and nothing that was kept before.
HWND CreateDialogObject(CDialog *object, WORD dialogId, HWND parentWindow);

/// Runs the window as a modal dialog; returns what EndDialog was given, -1 when the platform refused. Raises what was
/// kept within the dialog's loop, and nothing that was kept before.
INT_PTR RunDialogObject(CDialog *object, WORD dialogId, HWND parentWindow);

/// The dialog implementation of class `T`, whose `dialogId` is the template's number.
template <class T, class Base = CDialog> class CDialogImpl : public Base {
public:
  /// Makes the modeless window; see CreateDialogObject.
  HWND Create(HWND parentWindow) { return CreateDialogObject(this, static_cast<T *>(this)->dialogId, parentWindow); }

  /// Runs the modal dialog; see RunDialogObject.
  INT_PTR DoModal(HWND parentWindow) { return RunDialogObject(this, static_cast<T *>(this)->dialogId, parentWindow); }
};

} // namespace lumenor
