#pragma once
// Texts in the user's language, read from the resource documents that are installed beside the dock. Each call searches
// and parses anew. Needs a thread that has initialised COM.

#include <string>

namespace lumenor {

/// The full path of a language resource, searched along the user's locale chain and last in the user's own folder;
/// empty when no folder has it.
std::wstring FindResourceFile(const std::wstring &fileName);

/// The text of the first node of the resource that the XPath `query` selects; empty when the file can't be found or
/// read or nothing matches. Raises HResultError when the DOM fails.
std::wstring LoadString(const std::wstring &fileName, const std::wstring &query);

/// The same from the dock's own strings; `query` goes on from the list of elements, as in
/// "Element[@ID='Button.Tooltip.Close']/Head".
std::wstring LoadDockString(const std::wstring &query);

} // namespace lumenor
