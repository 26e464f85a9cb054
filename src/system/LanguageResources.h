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

/// The same from the resource document `documentName`; `path` is an XPath from the list of its elements on, such as
/// "Element/Head".
std::wstring LoadDocumentString(const std::wstring &documentName, const std::wstring &path);

/// The text with the ID `id` in the resource document `documentName`.
std::wstring LoadStringById(const std::wstring &documentName, const std::wstring &id);

/// The text with the ID `id` among the dock's own strings.
std::wstring LoadDockString(const std::wstring &id);

} // namespace lumenor
