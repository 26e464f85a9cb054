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

/// What a load met.
enum class DocumentState {
  Missing,    // nothing, nor anything to build it from
  Read,       // the document
  Unreadable, // something that can't be read now, or isn't this document
};

struct DocumentReading {
  DocumentState state = DocumentState::Missing;
  ElementList elements; // in file order; empty unless the document was read
};

/// Reads the document. A missing one, or any when `force` is set, is first written afresh from its stubs; what can't be
/// read stays as it is. A file that is in use is waited for a while. A name that no document can have is logged and
/// reads as missing. Raises HResultError when the DOM or the writing fails.
DocumentReading ReadDocument(const std::wstring &name, bool force);

/// The entries of the same.
ElementList LoadDocument(const std::wstring &name, bool force);

/// Writes `list` over the document, whole or not at all, making the user's folder when it is missing; does nothing for
/// a name that no document can have. A file that is in use is waited for a while. Raises HResultError; the old document
/// is then as it was.
void SaveDocument(const ElementList &list, const std::wstring &name);

} // namespace lumenor
