#pragma once
// An entry as a node of a document, and back. Needs a thread that has initialised COM; both raise HResultError.

#include "content/Element.h"
#include "system/Xml.h"

namespace lumenor {

/// A new node of `document`, not yet in its tree, that holds all of `element`.
XmlNodePtr ElementToNode(const XmlDocumentPtr &document, const Element &element);

/// The entry that an `Element` node holds; a missing child or attribute reads as empty or 0. `ActionParamsBackup` isn't
/// read: after one load and save a document no longer has it, on purpose.
Element NodeToElement(const XmlNodePtr &node);

} // namespace lumenor
