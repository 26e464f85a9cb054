#pragma once
// Numbers in the bytes of a file. Stateless; any thread.

#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

namespace lumenor {

/// The number of `Number`'s size at `at`, least significant byte first, or nothing behind the end.
template <typename Number> std::optional<Number> NumberAt(std::string_view bytes, std::size_t at) {
  Number number;
  if (at > bytes.size() || bytes.size() - at < sizeof number)
    return {};
  std::memcpy(&number, bytes.data() + at, sizeof number);
  return number;
}

} // namespace lumenor
