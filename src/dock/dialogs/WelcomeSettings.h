#pragma once
// What the welcome screen stores in the registry when it is closed, and the language in which its tour is shown.
// Stateless; any thread; nothing here raises on a key or a file that isn't there.

#include <string>

namespace lumenor {

/// Makes the dock start with the user's session, or no longer. A failure is silent.
void StartWithSession(bool starts);

/// Stores whether the dock may update itself, for the program that does it. A failure is silent.
void AllowToUpdate(bool allowed);

/// The code of the language that the tour is passed: the user's language and country, or the language alone, for which
/// tutorials are installed; "en_us" when there are none.
std::wstring GetTutorialLanguage();

} // namespace lumenor
