#pragma once
// The document of the user's buttons, from the load at the start of a cycle to the saves at its end. It remembers what
// the load met: a list that was never read is never replaced by a shorter one. Needs a thread that has initialised COM.

#include "content/Documents.h"

namespace lumenor {

class UserDocument {
public:
  /// The user's entries; none where the document can't be read. Raises HResultError as LoadDocument does.
  ElementList Load();

  /// Writes `list`, the entries of the last load as the user left them. A document that the load couldn't read stays as
  /// it is when there are no entries; when there are some it is first copied to a file of its name with ".broken" and,
  /// where there is such a file, a number behind it, and stays when that fails; the log tells. Raises HResultError when
  /// the writing fails; all is then as it was.
  void Save(const ElementList &list);

private:
  DocumentState met = DocumentState::Missing;
};

} // namespace lumenor
