#pragma once
// The dialog in which the dock asks before it discards the user's buttons.

#include <vector>

#include "e2e/DockProcess.h"

namespace lumenor::e2e {

/// Clicks the reset button and returns the window of the dialog. Raises an error when it doesn't come.
HWND OpenResetDialog(const DockProcess &dock);

/// The dialog's two buttons in the order on the screen, left to right: yes, no.
std::vector<RECT> DialogButtons(HWND dialog);

/// Resets the dock as a user does, and waits until the new bar stands; false when it doesn't come.
bool Reset(DockProcess &dock);

} // namespace lumenor::e2e
