#pragma once
// Registry values about the machine that the installers of the product family write. Read only. Stateless; any thread.

#include <optional>
#include <string>

namespace lumenor {

/// The value; nothing when it is missing or no well-formed text. A missing key is logged.
std::optional<std::wstring> ReadMachineValue(const std::wstring &name);

} // namespace lumenor
