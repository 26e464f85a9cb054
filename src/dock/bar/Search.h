#pragma once
// The search for the text of the search field: in the browser for a web provider, in the platform's help pane for the
// help search. User-interface thread.

#include <string>

#include "content/Element.h"
#include "system/Windows.h"

namespace lumenor {

/// `text` encoded for the end of a URL: its UTF-8 bytes, the unsafe ones as "%" and two hexadecimal digits in
/// lower case. A "%" stays as it is. Empty when the result would be longer than 2047 characters.
std::wstring UrlEncode(const std::wstring &text);

/// Searches for `text` with `provider`: its ActionType says how, and any but "url" and "helpSearch" does nothing.
/// `owner` is the window that the browser's start belongs to. A help pane that can't be had raises HResultError.
void SearchFor(HWND owner, const Element &provider, const std::wstring &text);

} // namespace lumenor
