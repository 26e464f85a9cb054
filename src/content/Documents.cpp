#include "content/Documents.h"

#include "content/DocumentNames.h"
#include "content/Stubs.h"
#include "system/Log.h"
#include "system/Paths.h"

namespace lumenor {

void EnsureDocument(const std::wstring &name) {
  if (PathIsMissing(DocumentPath(name)))
    RebuildDocument(name);
}

void RebuildDocument(const std::wstring &name) { ApplyStubs(name); }

ElementList LoadDocument(const std::wstring &name, bool force) {
  if (!IsDocumentName(name)) {
    LogError("Document: \"%S\" can't be the name of a document", name.c_str());
    return {};
  }
  if (force)
    RebuildDocument(name);
  else
    EnsureDocument(name);
  return ReadDocument(name).elements;
}

} // namespace lumenor
