#pragma once
// The search that the search field stands for: with a provider of the web in the browser, with the help search in the
// platform's help pane. User-interface thread.

#include <string>

#include "content/Element.h"
#include "system/Windows.h"

namespace lumenor {

/// `text` as it goes behind the start of a URL: its UTF-8 bytes, the unsafe ones as "%" and two hexadecimal digits in
/// lower case. A "%" stays as it is. Empty when the result would be longer than 2047 characters.
std::wstring UrlEncode(const std::wstring &text);

/// Searches for `text` with `provider`: its ActionType says how, and any but "url" and "helpSearch" does nothing.
/// `owner` is the window that the browser's start belongs to. A help pane that can't be had raises HResultError.
void SearchFor(HWND owner, const Element &provider, const std::wstring &text);

} // namespace lumenor
