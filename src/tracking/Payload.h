#pragma once
// The payload that is being written: an XML document in one temporary file, read again for each writing. Needs a thread
// that has initialised COM. Operations raise HResultError when the DOM fails, unless they say otherwise.

#include <optional>
#include <string>
#include <utility>

#include "system/Xml.h"
#include "tracking/TrackRecord.h"

namespace lumenor {

/// The expanded path of the temporary file.
std::wstring PayloadPath();

class Payload {
public:
  /// What the temporary file holds, or an empty payload when there is none. Nothing when the file is no payload: it
  /// isn't changed, and gets a line in the log.
  static std::optional<Payload> Open();

  /// Inserts the header of a closed payload as the first node: the application's name, and a row for each of `facts`.
  void InsertSessionInfo(const std::wstring &appName, const XmlAttributes &facts);

  /// Adds the record at the end.
  void Append(const TrackRecord &record);

  /// Writes the payload over the temporary file, whole or not at all, making its folder when it is missing.
  void Save() const;

private:
  Payload(XmlDocumentPtr document, XmlNodePtr root) : document(std::move(document)), root(std::move(root)) {}

  XmlNodePtr MakeNode(const wchar_t *name, const XmlAttributes &attributes, const XmlAttributes &rows) const;

  XmlDocumentPtr document;
  XmlNodePtr root;
};

} // namespace lumenor
