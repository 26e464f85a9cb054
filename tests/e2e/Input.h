#pragma once
// Real input: the cursor, the mouse buttons and the keyboard, through the platform's input queue.

#include <string>
#include <vector>

#include "system/Windows.h"

namespace lumenor::e2e {

/// Whether the window is a tip.
bool IsToolTip(HWND window);

/// Moves the cursor to `point` (screen coordinates) and waits until the platform says it is there.
void MoveCursor(POINT point);

/// Presses or releases the left mouse button where the cursor is.
void PressLeftButton();
void ReleaseLeftButton();

/// Moves to `point`, presses and releases, at the pace of a user.
void Click(POINT point);

/// Moves to `point`, presses and releases in one call: no input of another program comes between.
void ClickAtOnce(POINT point);

/// Presses at `from`, moves to `to` and releases there.
void Drag(POINT from, POINT to);

/// Releases the left button at `place`, at the end of a drag. The platform's loop of a drag takes the position of any
/// message that arrives for the cursor's, and a message that has waited carries an old position. So the cursor moves by
/// a pixel a few times before.
void LetGo(POINT place);

/// Presses at the first of `places`, moves through the others and releases.
void DragThrough(const std::vector<POINT> &places);

/// Presses and releases a key of the keyboard.
void PressKey(WORD virtualKey);

/// Presses and releases `virtualKey` `times` times while `modifier` is held.
void PressKeyWith(WORD modifier, WORD virtualKey, int times = 1);

/// Types `text` as an input method does, one UTF-16 unit after the other, without regard to the keyboard's letters.
void TypeText(const std::wstring &text);

/// Puts `text` on the clipboard.
void CopyToClipboard(const std::wstring &text);

} // namespace lumenor::e2e
