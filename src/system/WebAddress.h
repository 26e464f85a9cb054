#pragma once
// Opens addresses: through the shell, or in the browser itself where an address is too long for the shell. Stateless;
// any thread that may call the shell.

#include <string>

#include "system/Windows.h"

namespace lumenor {

/// Opens `address` (of the web, of another scheme, or a file) through the shell, in a normal window that belongs to
/// `owner`; both `owner` and `arguments` may be null. An address of the web that doesn't fit the shell goes to the
/// user's browser on its command line, as one word. One of more than 2,083 characters, or one that no browser takes,
/// isn't opened and gets a log line, which tells nothing of it but its length. A failure to open is silent by design.
void OpenAddress(HWND owner, const std::wstring &address, const wchar_t *arguments);

} // namespace lumenor
