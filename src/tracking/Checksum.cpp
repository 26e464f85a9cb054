#include "tracking/Checksum.h"

#include <array>

#include "system/FileReading.h"

namespace lumenor {

namespace {

constexpr std::uint32_t polynomial = 0xEDB88320;

constexpr std::array<std::uint32_t, 256> MakeTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
    std::uint32_t entry = byte;
    for (int bit = 0; bit < 8; ++bit)
      entry = (entry & 1U) != 0 ? entry >> 1U ^ polynomial : entry >> 1U;
    table[byte] = entry;
  }
  return table;
}

constexpr std::array<std::uint32_t, 256> table = MakeTable();

} // namespace

std::uint32_t ContinueChecksum(std::uint32_t checksum, std::string_view bytes) {
  for (const char byte : bytes)
    checksum = checksum >> 8U ^ table[(checksum ^ static_cast<unsigned char>(byte)) & 0xFFU];
  return checksum;
}

std::uint32_t FileChecksum(const std::wstring &path) {
  const FileHandle file = OpenForReadingWhenFree(path);
  if (!file)
    return 0;
  std::uint32_t checksum = checksumStart;
  std::string buffer;
  for (std::string_view piece = ReadPiece(file.Get(), buffer); !piece.empty(); piece = ReadPiece(file.Get(), buffer))
    checksum = ContinueChecksum(checksum, piece);
  return checksum;
}

} // namespace lumenor
