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

/// Clicks the row of the open flyout, counted from 0 at its top; a title is a row too.
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
