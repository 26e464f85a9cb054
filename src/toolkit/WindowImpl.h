#pragma once
// The windows of the toolkit: an object, its platform window, and the procedure that connects them.
//
// The object's address is stored with the window at WM_NCCREATE, tested at every message and cleared at WM_NCDESTROY,
// so that neither outlives the other unnoticed: an object that is destroyed destroys its window. No exception crosses
// the platform's frames: the procedure keeps it (KeepWindowException) for the message loop, and the message goes on to
// the default procedure as if nobody had handled it. User-interface thread.

#include "system/Windows.h"

namespace lumenor {

/// A window and what its procedure calls.
class CWindow {
public:
  CWindow() = default;
  CWindow(const CWindow &) = delete;
  CWindow &operator=(const CWindow &) = delete;

  /// The window; null before WM_NCCREATE and after WM_NCDESTROY.
  HWND handle = nullptr;

  /// The message map. Returns TRUE when the message is handled, and then `result` is the answer; otherwise it goes on
  /// to the default procedure. `mapId` tells alternative maps apart; the toolkit has the one with id 0.
  virtual BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                                    DWORD mapId = 0) = 0;

  /// Called when the window is gone, as the last thing. Nothing here.
  virtual void OnFinalMessage(HWND /*window*/) {}

  /// The procedure that a window of this object runs under once the object is stored with it.
  virtual WNDPROC GetWindowProc();

protected:
  virtual ~CWindow();
};

/// The styles that windows of a class are made with.
template <DWORD windowStyle, DWORD windowExStyle> struct CWinTraits {
  static constexpr DWORD style = windowStyle;
  static constexpr DWORD exStyle = windowExStyle;
};

/// Makes the window of `object` under `parent`, empty when `rectangle` is null. With a `superClassName` it is of a
/// class built upon that platform class, whose procedure then is the default one. Null when the platform refused;
/// raises what the object's own handlers raised meanwhile, and nothing that was kept before.
HWND CreateObjectWindow(CWindow *object, const wchar_t *superClassName, DWORD style, DWORD exStyle, HWND parent,
                        const RECT *rectangle, const wchar_t *title, UINT_PTR controlId = 0);

/// The window implementation of class `T`, made with the styles of `Traits`. `T` may have a GetSuperClassName of its
/// own that names a platform class such as "BUTTON".
template <class T, class Base, class Traits> class CWindowImpl : public Base {
public:
  static const wchar_t *GetSuperClassName() { return nullptr; }

  /// Makes the window; see CreateObjectWindow. `rectangle` is in the parent's client coordinates.
  HWND Create(HWND parentWindow, const RECT *rectangle = nullptr, const wchar_t *title = nullptr,
              UINT_PTR controlId = 0) {
    return CreateObjectWindow(this, T::GetSuperClassName(), Traits::style, Traits::exStyle, parentWindow, rectangle,
                              title, controlId);
  }
};

/// Sends a message that concerns a child control on to it, with 0x2000 added to its number. Sets `handled` to TRUE when
/// there was such a control, and then returns its answer.
LRESULT ReflectNotifications(HWND window, UINT message, WPARAM wParam, LPARAM lParam, BOOL &handled);

/// Whether `message` is one of the WM_CTLCOLOR... messages, whose numbers follow each other.
bool AsksForControlColor(UINT message);

/// What is added to the number of a reflected message.
constexpr UINT reflectedMessageBase = 0x2000;

/// Stores `object` with `window`; both know each other from here on.
void HoldWindow(HWND window, CWindow &object);

/// The object stored with `window`; null when there is none.
CWindow *ObjectOf(HWND window);

/// Separates the window, which is being destroyed, from its object, and calls the object's OnFinalMessage.
void ReleaseWindow(HWND window);

} // namespace lumenor
