#pragma once
// Where pictures lie: those of the installation and of content, by name, and those that the dock makes itself.
// Stateless; any thread.

#include <string>

namespace lumenor {

/// The path to use for `imagePath`: itself where it exists, else below the installation folder, else below the common
/// language folder, whether it exists there or not.
std::wstring ResolveImagePath(const std::wstring &imagePath);

/// The expanded folder of the pictures that the dock makes of others, with a "\" at its end. It is made where it is
/// missing, its parents are not; that it can't be made shows when something is to be written there.
std::wstring ImageCacheFolder();

} // namespace lumenor
