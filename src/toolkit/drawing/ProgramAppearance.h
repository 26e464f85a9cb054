#pragma once
// How the shell shows a program: its name and its picture. User-interface thread only, with COM initialised.

#include <string>

#include "system/Handles.h"

namespace lumenor {

/// The name that the shell shows for the file. Raises E_FAIL where the shell knows none.
std::wstring ProgramDisplayName(const std::wstring &programPath);

/// The shell's picture of the file, 32 bits a pixel, 48 by 48 pixels or the size that the shell chooses; the icon of
/// the file where the shell's image service has only a blank picture. Raises HResultError where there is neither.
BitmapHandle ProgramImage(const std::wstring &programPath);

} // namespace lumenor
