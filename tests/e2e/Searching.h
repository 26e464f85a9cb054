#pragma once
// A user who searches.

#include <string>

#include "e2e/DockProcess.h"

namespace lumenor::e2e {

/// Types `text` into the search field, which is empty.
void EnterText(const DockProcess &dock, const std::wstring &text);

/// Opens the list of providers and chooses the one in that row.
void ChooseProvider(const DockProcess &dock, int row);

} // namespace lumenor::e2e
