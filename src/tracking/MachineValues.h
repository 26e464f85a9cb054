#pragma once
// Registry values of the machine that the installers of the product family write. Read only. Stateless; any thread.

#include <optional>
#include <string>

namespace lumenor {

/// A value about the machine; nothing when it is missing or no well-formed text. A missing key is logged.
std::optional<std::wstring> ReadMachineValue(const std::wstring &name);

/// A value about the collector; empty when there is none, which isn't logged: most machines have no collector.
std::wstring ReadCollectorValue(const std::wstring &name);

} // namespace lumenor
