#include "system/Shortcut.h"

#include <cstdint>

#include "system/ByteReading.h"
#include "system/FileReading.h"
#include "system/Log.h"
#include "system/Text.h"

namespace lumenor {

namespace {

using namespace std::literals;

constexpr std::wstring_view extension = L".lnk";
constexpr LONGLONG largestShortcut = 1 << 20; // bytes

constexpr std::size_t headBytes = 76;
constexpr std::string_view headStart =
    "\x4C\0\0\0\x01\x14\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46"sv; // its length, the class

/// Flags of the head.
enum : std::uint32_t {
  hasTarget = 0x1,
  hasPlace = 0x2,
  firstText = 0x4, // five texts, each with its flag, from a description to an icon's file
  endOfTexts = 0x80,
  isWide = 0x80,
};

/// Takes the first `count` bytes from `bytes` into `part`; false when there are fewer.
bool Take(std::string_view &bytes, std::size_t count, std::string_view &part) {
  if (bytes.size() < count)
    return false;
  part = bytes.substr(0, count);
  bytes.remove_prefix(count);
  return true;
}

/// A list of items, each of which begins with its length, up to one of no length.
bool TakeTarget(std::string_view &bytes) {
  const auto length = NumberAt<std::uint16_t>(bytes, 0);
  std::string_view lengthItself, items, item;
  if (!length || !Take(bytes, sizeof *length, lengthItself) || !Take(bytes, *length, items))
    return false;
  while (const auto itemLength = NumberAt<std::uint16_t>(items, 0)) {
    if (*itemLength == 0)
      return items.size() == sizeof *itemLength;
    if (*itemLength <= sizeof *itemLength || !Take(items, *itemLength, item))
      return false;
  }
  return false;
}

/// Whether the offset at `at` is 0 or that of a text which ends within `part`.
template <typename Character> bool HoldsText(std::string_view part, std::size_t at) {
  const auto offset = NumberAt<std::uint32_t>(part, at);
  if (!offset || *offset == 0)
    return offset.has_value();
  for (std::size_t i = *offset; const auto c = NumberAt<Character>(part, i); i += sizeof(Character))
    if (*c == 0)
      return true;
  return false;
}

/// Whether the offset at `at` is 0 or that of a part within `whole` which begins with its own length, at least `least`,
/// and of which `isGood` holds.
template <typename Check> bool HoldsPart(std::string_view whole, std::size_t at, std::size_t least, Check isGood) {
  const auto offset = NumberAt<std::uint32_t>(whole, at);
  if (!offset || *offset == 0)
    return offset.has_value();
  const std::uint32_t length = NumberAt<std::uint32_t>(whole, *offset).value_or(0);
  return length >= least && whole.size() - *offset >= length && isGood(whole.substr(*offset, length));
}

/// Where the target was: its volume, its path, its server.
bool TakePlace(std::string_view &bytes) {
  constexpr std::size_t leastHead = 28, headWithWideTexts = 36, leastVolume = 16, leastServer = 20;
  const auto length = NumberAt<std::uint32_t>(bytes, 0);
  std::string_view place;
  if (!length || !Take(bytes, *length, place))
    return false;
  const auto head = NumberAt<std::uint32_t>(place, 4);
  if (place.size() < leastHead || !head || *head < leastHead || *head > place.size())
    return false;
  bool isGood = HoldsText<char>(place, 16) && HoldsText<char>(place, 24);
  if (*head >= headWithWideTexts)
    isGood = isGood && HoldsText<char16_t>(place, 28) && HoldsText<char16_t>(place, 32);
  return isGood &&
         HoldsPart(place, 12, leastVolume, [](std::string_view volume) { return HoldsText<char>(volume, 12); }) &&
         HoldsPart(place, 20, leastServer,
                   [](std::string_view server) { return HoldsText<char>(server, 8) && HoldsText<char>(server, 12); });
}

bool TakeText(std::string_view &bytes, std::size_t characterBytes) {
  const auto length = NumberAt<std::uint16_t>(bytes, 0);
  std::string_view text;
  return length && Take(bytes, sizeof *length + *length * characterBytes, text);
}

/// Blocks that begin with their length, up to one that has none or the end.
bool AreBlocks(std::string_view bytes) {
  constexpr std::size_t leastBlock = 8;
  std::string_view block;
  while (const auto length = NumberAt<std::uint32_t>(bytes, 0)) {
    if (*length < sizeof *length)
      return true;
    if (*length < leastBlock || !Take(bytes, *length, block))
      return false;
  }
  return true;
}

} // namespace

bool IsWholeShortcut(std::string_view bytes) {
  std::string_view head;
  if (!Take(bytes, headBytes, head) || !head.starts_with(headStart))
    return false;
  const std::uint32_t flags = NumberAt<std::uint32_t>(head, headStart.size()).value_or(0);
  if ((flags & hasTarget) != 0 && !TakeTarget(bytes))
    return false;
  if ((flags & hasPlace) != 0 && !TakePlace(bytes))
    return false;
  for (std::uint32_t text = firstText; text < endOfTexts; text <<= 1)
    if ((flags & text) != 0 && !TakeText(bytes, (flags & isWide) != 0 ? sizeof(char16_t) : sizeof(char)))
      return false;
  return AreBlocks(bytes);
}

bool IsShortcut(const std::wstring &path) {
  return path.size() >= extension.size() &&
         EqualsIgnoringCase(path.substr(path.size() - extension.size()), extension.data());
}

bool IsDamagedShortcut(const std::wstring &path) {
  if (!IsShortcut(path))
    return false;
  const FileHandle file = OpenForReading(path);
  LARGE_INTEGER size{};
  if (!file || !::GetFileSizeEx(file.Get(), &size))
    return false;
  std::string bytes;
  bool isWhole = size.QuadPart <= largestShortcut;
  if (isWhole) {
    bytes.resize(static_cast<std::size_t>(size.QuadPart));
    DWORD read = 0;
    isWhole = ::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) &&
              IsWholeShortcut({bytes.data(), read});
  }
  if (!isWhole)
    LogError("Shortcut: %S is damaged", path.c_str());
  return !isWhole;
}

} // namespace lumenor
