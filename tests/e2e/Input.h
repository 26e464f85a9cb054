#pragma once
// Real input: the cursor is moved and buttons are pressed the way a hand does it, through the platform's input queue.

#include "system/Windows.h"

namespace lumenor::e2e {

/// Moves the cursor to `point` (screen coordinates) and waits until the platform says it is there.
void MoveCursor(POINT point);

/// Presses or releases the left mouse button where the cursor is.
void PressLeftButton();
void ReleaseLeftButton();

/// Moves to `point`, presses and releases, at a hand's pace.
void Click(POINT point);

/// Presses and releases a key of the keyboard.
void PressKey(WORD virtualKey);

} // namespace lumenor::e2e
