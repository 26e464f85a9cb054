#pragma once
// What a user does at the bar, one step a function. A step whose window doesn't come raises an error, which fails the
// test.

#include <optional>
#include <string>

#include "e2e/DockProcess.h"

namespace lumenor::e2e {

/// Waits for the one flyout or dialog that comes, and returns its window, shown and painted.
HWND AwaitPopup(const DockProcess &dock);

/// Clicks the button at `button` and returns the window of the flyout or dialog that it opens, shown and painted.
HWND OpenPopup(const DockProcess &dock, POINT button);
HWND OpenForYou(const DockProcess &dock);
HWND OpenSearchProviders(const DockProcess &dock);

/// Where a flyout of so many rows, its title among them, stands at a density: from its corner, and where the bar's
/// first button opens it at either edge.
RECT FlyoutAt(LONG left, LONG top, int rows);
RECT FlyoutBelow(const DockProcess &dock, int rows);
RECT FlyoutAbove(const DockProcess &dock, int rows);

/// Clicks the row of the open flyout, counted from 0; its title is none.
void ClickRow(const DockProcess &dock, int row);

/// Clicks a row and waits until the flyout has closed; false when it stays.
bool ChooseRow(const DockProcess &dock, int row);

/// Opens the list of search providers, chooses the one in that row, and takes the cursor away from it.
void ChooseProvider(const DockProcess &dock, int row);

/// Types `text` into the search field, which is empty.
void EnterText(const DockProcess &dock, const std::wstring &text);

/// Clicks the close button and waits for the end of the process: its exit code, or nothing when it still runs.
std::optional<DWORD> CloseByButton(const DockProcess &dock);

} // namespace lumenor::e2e
