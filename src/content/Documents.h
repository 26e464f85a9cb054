#pragma once
// Content documents: the XML files of the user that hold what the bar and its flyouts show, each built from stubs when
// it is needed first. Needs a thread that has initialised COM, in practice that of the user interface; nothing is
// locked. What is read and written of a document comes with content/DocumentFile.h.

#include <string>

#include "content/DocumentFile.h"

namespace lumenor {

/// Makes sure that the document exists: a missing one is built from its stubs. What can't be read stays as it is.
/// Raises HResultError when the DOM or the writing fails.
void EnsureDocument(const std::wstring &name);

/// Builds the document from its stubs, in the place of one that exists. Raises HResultError likewise.
void RebuildDocument(const std::wstring &name);

/// The entries of the document, after RebuildDocument with `force` and after EnsureDocument without; none where it
/// can't be read. A name that no document can have is logged and has none. Raises HResultError likewise.
ElementList LoadDocument(const std::wstring &name, bool force);

} // namespace lumenor
