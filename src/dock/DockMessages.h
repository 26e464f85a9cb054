#pragma once
// The numbers of the dock's messages, notifications, timers, controls and quit codes: one table of each kind.

#include "system/Windows.h"

namespace lumenor {

/// Messages of the dock's main window. WM_USER+10 is the root window's own, for a failed EndDraw.
enum DockMessage : UINT {
  DragAddMessage = WM_USER + 1,                // 1025: a path was dropped; by SendAddress, lParam the screen point
  RemoveButtonMessage = WM_USER + 3,           // 1027: wParam the window of the button to remove
  ShowWelcomeMessage = WM_USER + 4,            // 1028
  DockAtTopMessage = WM_USER + 5,              // 1029: posted by the registry thread
  DockAtBottomMessage = WM_USER + 6,           // 1030: posted by the registry thread
  RefreshForYouMessage = WM_USER + 11,         // 1035: sent by a folder thread
  RefreshSearchProviderMessage = WM_USER + 12, // 1036: sent by a folder thread
  SetSearchProviderMessage = WM_USER + 13,     // 1037: an Element that lives as long as the call; by SendAddress
  ResetDockMessage = WM_USER + 15,             // 1039: posted by the reset dialog
};

/// Sends `message` to `window`, a window of this thread, with `address` as its wParam, and returns the answer. Any
/// program of the desktop can send or post the same message with a number of its own choice in the place of the
/// address; this is how the receiver tells them apart. User-interface thread.
LRESULT SendAddress(HWND window, UINT message, const void *address, LPARAM lParam = 0);

/// In the handler of `message`: the address in its wParam; null when there is none, and, with a log line, when it
/// doesn't come from SendAddress.
const void *ReceiveAddress(UINT message, WPARAM wParam);

/// The registered message by which a second start asks the running dock to come to the front. The entry function
/// registers it before any dock is built.
inline UINT dockActivateMessage = 0;

/// Codes of WM_NOTIFY by which the drop target tells the dock's main window of a drag. Those with a place have its
/// screen point in idFrom, x in the low half and y in the high one.
enum DragNotification : UINT {
  NoNotification = 0,
  DragEnterNotification = 1,
  DragOverNotification = 2,
  DragLeaveNotification = 3, // idFrom is the window of the dragged button, cut to 32 bits
  DropNotification = 4,      // of a dragged button; files come as DragAddMessage
};

/// The screen point that DragAddMessage and the notifications carry. Screens to the left and above have negative ones.
inline POINT UnpackedPoint(UINT_PTR packed) {
  return {static_cast<short>(LOWORD(packed)), static_cast<short>(HIWORD(packed))};
}

/// Timers of the dock's main window.
enum DockTimer : UINT_PTR {
  FadeTimer = 3,
  StartMainApplicationTimer = 4,
  TrackingTimer = 8,
};

/// Periods of the timers, in milliseconds.
enum DockTimerPeriod : UINT {
  fadeStepMs = 200,
  startMainApplicationMs = 120'000,
  trackingFlushMs = 1'800'000,
};

/// Control ids. The ids of a row of buttons count up from its first one.
enum DockControlId : LONG {
  TextBoxId = 100,
  FirstFixedButtonId = 1000,
  ResetDialogButtonId = 1003, // both buttons of the reset dialog; nothing reads it
  FirstUserButtonId = 2000,
  FirstFlyoutItemId = 3000,
};

/// At most so many user buttons, and so many control ids from FirstUserButtonId.
constexpr int maxUserButtons = 30;

/// At most so many fixed buttons, whatever the main document holds.
constexpr int maxFixedButtons = 3;

/// Codes in the wParam of WM_QUIT.
enum DockQuitCode : int {
  EndProcessQuitCode = 0,
  RestartQuitCode = 999, // build the bar anew in the same process
};

} // namespace lumenor
