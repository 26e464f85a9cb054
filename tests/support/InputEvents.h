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

} // namespace lumenor::tests
