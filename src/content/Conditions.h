#pragma once
// The conditions of a stub, on files and registry values of the machine. Needs a thread that has initialised COM.

#include <string>
#include <vector>

#include "system/Xml.h"

namespace lumenor {

/// One condition of a stub.
struct Condition {
  std::wstring Type;  // "File" or "Registry"
  std::wstring Logic; // the check
  std::wstring Key;   // a path of a file or of a registry key
  std::wstring ValueName;
  std::wstring ValueData;
  std::wstring ValueType;

  bool operator==(const Condition &) const = default;
};

/// All conditions in the document of `elementNode`, in file order. Raises HResultError.
std::vector<Condition> ReadConditions(const XmlNodePtr &elementNode);

/// Whether all conditions hold, checked in order up to the first that decides. `stubPath` names the stub in the log.
/// Raises HResultError for a registry path that can't be split.
bool EvaluateConditions(const std::wstring &stubPath, const std::vector<Condition> &conditions);

} // namespace lumenor
