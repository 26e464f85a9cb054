#pragma once
// Content documents: the XML files of the user that hold what the bar and its flyouts show. Each load reads the file
// anew. Needs a thread that has initialised COM, in practice the one of the user interface; nothing is locked.

#include <string>

#include "content/Element.h"
#include "system/Xml.h"

namespace lumenor {

/// The expanded path of the document's file in the user's folder.
std::wstring DocumentPath(const std::wstring &name);

/// Whether something of the document's file name is there, be it a folder.
bool DocumentExists(const std::wstring &name);

/// The XML of the document without entries.
std::wstring EmptyDocumentXml(const std::wstring &name);

/// The XPath of the document's entries.
std::wstring ElementsQuery(const std::wstring &name);

/// A new node of `document` that holds all of `element`. Raises HResultError.
XmlNodePtr ElementToNode(const XmlDocumentPtr &document, const Element &element);

/// The entry that an `Element` node holds; a missing child or attribute reads as empty or 0. `ActionParamsBackup` isn't
/// read: after one load and save a document no longer has it, on purpose. Raises HResultError.
Element NodeToElement(const XmlNodePtr &node);

/// Reads the document in file order. A missing document, or any when `force` is set, is first written afresh from its
/// stubs; a broken one reads as empty and stays as it is. A name that no document can have is logged and reads as
/// empty. Raises HResultError when the DOM or the writing fails.
ElementList LoadDocument(const std::wstring &name, bool force);

/// Writes `list` over the document, whole or not at all, making the user's folder when it is missing; does
/// nothing for a name that no document can have. A file that is in
/// use is waited for a while. Raises HResultError; the old document is then as it was.
void SaveDocument(const ElementList &list, const std::wstring &name);

} // namespace lumenor
