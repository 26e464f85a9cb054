#pragma once
// The document of the user's buttons, from the load at the start of a cycle to the saves at its end. It remembers what
// the load found: a list that was never read is never replaced by a shorter one. Needs a thread that has initialised
// COM.

#include "content/Documents.h"

namespace lumenor {

class UserDocument {
public:
  /// The user's entries; none when the document can't be read. Raises HResultError as LoadDocument does.
  ElementList Load();

  /// Writes `list`, the entries of the last load as the user left them. A document that the load couldn't read isn't
  /// changed when there are no entries. When there are some, it is first copied to a file of its name with ".broken"
  /// and, if such a file exists, a number after it; when that fails it isn't changed. Both are logged. Raises
  /// HResultError when the writing fails; all files are then unchanged.
  void Save(const ElementList &list);

private:
  DocumentState found = DocumentState::Missing;
};

} // namespace lumenor
