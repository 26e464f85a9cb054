#pragma once
// The dock's controls as a screen reader finds them: by the platform's proxies, from outside the process.

#include <string>
#include <vector>

#include "system/Windows.h"

namespace lumenor::e2e {

/// Each control below `root`, shown or not, as its role and name, such as "button Close", "field Search" or "ticked
/// check box Update". They come from top to bottom and at one height from left to right; with `inColumns` the other way
/// round. The panels between the window and its controls aren't among them.
std::vector<std::wstring> ControlsOf(HWND root, bool inColumns = false);

/// The same of one control.
std::wstring ControlAt(HWND control);

} // namespace lumenor::e2e
