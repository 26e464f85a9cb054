#pragma once
// What the installers of the family leave in the machine's part of the registry. Read only. Stateless; any thread.

#include <optional>
#include <string>

namespace lumenor {

/// A value that tells of the machine; nothing when it is missing or no well-formed text. A missing key is logged.
std::optional<std::wstring> ReadMachineValue(const std::wstring &name);

/// A value that tells of the collector; empty when there is none, with no word in the log: most machines have no
/// collector.
std::wstring ReadCollectorValue(const std::wstring &name);

} // namespace lumenor
