#pragma once
// Addresses that come from elsewhere, such as in a message that every program of the desktop can send. Any thread.

#include <optional>
#include <string>

namespace lumenor {

/// A copy of the text at `address`; nothing when its memory can't be read as far as its closing null. Holds at the
/// time of the call: whoever owns the memory may let it go at any time. `address` must not be null.
std::optional<std::wstring> CopyReadableText(const wchar_t *address);

} // namespace lumenor
