#pragma once
// The words of a test program's command line.

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <string>

namespace lumenor::tests {

/// The number that the word begins with; 0 when it is none.
inline std::uint64_t NumberOf(const wchar_t *word) { return std::wcstoull(word, nullptr, 10); }

/// The path with the separators of the platform: the shell takes no others.
inline std::wstring PathOf(std::wstring word) {
  std::ranges::replace(word, L'/', L'\\');
  return word;
}

} // namespace lumenor::tests
