#pragma once
// Opens addresses: through the shell, or in the browser itself when an address is too long for the shell. Stateless;
// any thread that may call the shell.

#include <string>

#include "system/Windows.h"

namespace lumenor {

/// Opens `address` (a web address, another scheme's, or a file) through the shell, in a normal window that belongs to
/// `owner`; both `owner` and `arguments` may be null. A web address that is too long for the shell goes to the command
/// line of the user's browser, as one word. One of more than 2,083 characters, or one that no browser takes, isn't
/// opened and gets a log line with nothing but its length. A failure to open is silent by design.
void OpenAddress(HWND owner, const std::wstring &address, const wchar_t *arguments);

} // namespace lumenor
