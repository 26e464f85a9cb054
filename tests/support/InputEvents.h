#pragma once
// Events of the mouse and the keyboard, as the platform's input queue takes them. How a sender waits for their effect
// is its own affair.

#include "system/Windows.h"

namespace lumenor::tests {

/// A mouse button that goes down or up where the cursor is; `flags` are MOUSEEVENTF_*.
INPUT MouseInput(DWORD flags);

/// The cursor's move to `point`, in screen coordinates.
INPUT MoveInput(POINT point);

/// A key that goes down, or up with KEYEVENTF_KEYUP.
INPUT KeyInput(WORD virtualKey, DWORD flags);

/// True when the platform says that the cursor is at `point`, in screen coordinates.
bool IsCursorAt(POINT point);

/// Waits until the thread that owns `receiver`, another one than this, has taken the input that was sent to it. A user
/// goes on once the last input has had its effect; without the wait, a machine that stops the receiver for a while
/// would make several inputs one.
void WaitUntilInputIsTaken(HWND receiver);

} // namespace lumenor::tests
