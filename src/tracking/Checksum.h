#pragma once
// The checksum that is the name of a closed payload. Stateless; any thread.

#include <cstdint>
#include <string>
#include <string_view>

namespace lumenor {

/// What a checksum starts with.
inline constexpr std::uint32_t checksumStart = 0xFFFFFFFF;

/// CRC-32 with the reflected polynomial 0xEDB88320 over `bytes`, continued from `checksum`. Its bits aren't inverted in
/// the end, unlike those of archive formats: the collector computes the same.
std::uint32_t ContinueChecksum(std::uint32_t checksum, std::string_view bytes);

/// The checksum of the whole file at the expanded `path`; 0 when it can't be opened.
std::uint32_t FileChecksum(const std::wstring &path);

} // namespace lumenor
