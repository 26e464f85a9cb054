#pragma once
// The file of a content document: where it is, what is in it, and how it is written. `name` is one that a document can
// have (content/DocumentNames.h). Needs a thread that has initialised COM; nothing is locked.

#include <string>

#include "content/Element.h"

namespace lumenor {

/// The expanded path of the document's file in the user's folder.
std::wstring DocumentPath(const std::wstring &name);

/// Whether something with the name of the document's file exists, even a folder.
bool DocumentExists(const std::wstring &name);

/// The XML of the document without entries.
std::wstring EmptyDocumentXml(const std::wstring &name);

/// The XPath of the document's entries.
std::wstring ElementsQuery(const std::wstring &name);

/// What a reading found.
enum class DocumentState {
  Missing,    // nothing
  Read,       // the document
  Unreadable, // something that can't be read now, or isn't this document
};

struct DocumentReading {
  DocumentState state = DocumentState::Missing;
  ElementList elements; // in file order; empty unless the document was read
};

/// Reads the file as it is. One that is in use is tried again for a while. Raises HResultError when the DOM fails.
DocumentReading ReadDocument(const std::wstring &name);

/// Writes `list` over the document, whole or not at all, making the user's folder when it is missing; does nothing for
/// a name that no document can have. A file that is in use is tried again for a while. Raises HResultError; the old
/// document is then as it was.
void SaveDocument(const ElementList &list, const std::wstring &name);

} // namespace lumenor
