#include "system/ProgramFile.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "system/ByteReading.h"
#include "system/FileReading.h"
#include "system/Log.h"

namespace lumenor {

namespace {

using namespace std::literals;

constexpr std::size_t startPlace = 60, signatureBytes = 24, sectionBytes = 40;
constexpr std::size_t directoryBytes = 16, entryBytes = 8;
constexpr std::size_t mostSections = 96;                  // as the platform's loader allows
constexpr std::size_t largestResources = 16 << 20;        // bytes, ahead of which all directories have to lie
constexpr std::size_t mostEntries = 1 << 16;              // of the directories of one program
constexpr std::uint32_t highBit = std::uint32_t{1} << 31; // of an entry: a name, a directory
constexpr std::uint32_t lowWord = 0xFFFF;
constexpr std::uint32_t longestSide = 1024; // pixels of an icon
constexpr std::size_t textsOfABlock = 16;
constexpr std::size_t iconHeadBytes = 40, groupHeadBytes = 6;
constexpr std::size_t mostTextBytes = 64 << 20; // of all texts of a program

constexpr std::uint32_t iconType = 3, textType = 6, iconGroupType = 14;

/// Parts of a file, read where they lie.
class PartReader {
public:
  explicit PartReader(HANDLE file) : file(file) {
    LARGE_INTEGER length{};
    if (::GetFileSizeEx(file, &length))
      size = static_cast<std::uint64_t>(length.QuadPart);
  }

  bool Holds(std::uint64_t at, std::uint64_t count) const { return at <= size && count <= size - at; }

  /// The `count` bytes at `at`; fewer when they can't be read.
  std::string Read(std::uint64_t at, std::size_t count) const {
    if (!Holds(at, count))
      return {};
    std::string bytes(count, '\0');
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(at);
    place.OffsetHigh = static_cast<DWORD>(at >> 32);
    DWORD read = 0;
    if (!::ReadFile(file, bytes.data(), static_cast<DWORD>(count), &read, &place))
      read = 0;
    bytes.resize(read);
    return bytes;
  }

private:
  HANDLE file;
  std::uint64_t size = 0;
};

/// Where a part of the program in memory lies in its file.
struct Section {
  std::uint32_t address, size, place; // `size` is that in the file
};

/// A number of a PNG, most significant byte first.
std::uint32_t PngNumber(std::uint32_t number) {
  return number >> 24 | (number >> 8 & 0xFF00) | (number & 0xFF00) << 8 | number << 24;
}

/// Some decoders compute the room for the pixels in 32 bits.
bool IsWholePng(std::string_view icon) {
  const auto width = NumberAt<std::uint32_t>(icon, 16), height = NumberAt<std::uint32_t>(icon, 20);
  return width && height && PngNumber(*width) <= longestSide && PngNumber(*height) <= longestSide;
}

/// A bitmap of `size` bytes with its colors, above them its mask, or a PNG, by its first `iconHeadBytes`.
bool IsWholeIcon(std::string_view icon, std::size_t size) {
  if (icon.starts_with("\x89PNG\r\n\x1A\n"sv))
    return IsWholePng(icon);
  const auto head = NumberAt<std::uint32_t>(icon, 0), width = NumberAt<std::uint32_t>(icon, 4),
             height = NumberAt<std::uint32_t>(icon, 8), compression = NumberAt<std::uint32_t>(icon, 16),
             colors = NumberAt<std::uint32_t>(icon, 32);
  const auto depth = NumberAt<std::uint16_t>(icon, 14);
  constexpr std::uint32_t bitmapHead = 40;
  if (!colors || *head != bitmapHead || *width > longestSide || *height > 2 * longestSide || *compression != BI_RGB)
    return false;
  constexpr std::array<std::uint16_t, 6> depths = {1, 4, 8, 16, 24, 32};
  if (std::ranges::find(depths, *depth) == depths.end() || *colors > 256)
    return false;
  const std::uint32_t palette = *depth > 8 ? *colors : *colors == 0 ? 1U << *depth : *colors;
  const std::size_t row = (std::size_t{*width} * *depth + 31) / 32 * 4;
  return size >= bitmapHead + palette * 4 + row * (*height / 2);
}

/// The resources of one program, by their directories: types, in them names, in them languages.
class Resources {
public:
  Resources(const PartReader &file, std::vector<Section> sections, const Section &own)
      : file(file), sections(std::move(sections)),
        bytes(file.Read(own.place, std::min<std::size_t>(own.size, largestResources))) {}

  /// Whether all of the `types` are whole.
  bool AreWhole(std::span<const std::uint32_t> types) {
    return ForEachEntry(0, [&](std::uint32_t name, std::uint32_t names) {
      const std::uint32_t type = name & lowWord; // the rest of a number isn't looked at by all who read it
      return std::ranges::find(types, type) == types.end() || IsWholeType(type, names);
    });
  }

private:
  /// False when the directory doesn't lie within the resources, has no entry, or `isGood` doesn't hold of the name and
  /// the offset of one.
  template <typename Check> bool ForEachEntry(std::size_t directory, Check isGood) {
    const auto named = NumberAt<std::uint16_t>(bytes, directory + 12),
               numbered = NumberAt<std::uint16_t>(bytes, directory + 14);
    const std::size_t count = named && numbered ? std::size_t{*named} + *numbered : 0;
    entries += count;
    if (count == 0 || entries > mostEntries)
      return false;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t at = directory + directoryBytes + i * entryBytes;
      const auto name = NumberAt<std::uint32_t>(bytes, at), offset = NumberAt<std::uint32_t>(bytes, at + 4);
      if (!name || !offset || !HoldsName(*name) || !isGood(*name, *offset))
        return false;
    }
    return true;
  }

  bool HoldsName(std::uint32_t name) const {
    if ((name & highBit) == 0)
      return true;
    const std::size_t at = name & ~highBit;
    const auto length = NumberAt<std::uint16_t>(bytes, at);
    return length && bytes.size() - at - sizeof *length >= *length * sizeof(char16_t);
  }

  bool IsWholeType(std::uint32_t type, std::uint32_t names) {
    const auto isDirectory = [](std::uint32_t offset) { return (offset & highBit) != 0; };
    return isDirectory(names) && ForEachEntry(names & ~highBit, [&](std::uint32_t, std::uint32_t languages) {
             return isDirectory(languages) &&
                    ForEachEntry(languages & ~highBit,
                                 [&](std::uint32_t, std::uint32_t leaf) { return IsWholeLeaf(type, leaf); });
           });
  }

  /// What many entries share is read for each, so no more is read than is looked at, and of texts not without end.
  bool IsWholeLeaf(std::uint32_t type, std::size_t leaf) {
    const auto address = NumberAt<std::uint32_t>(bytes, leaf), size = NumberAt<std::uint32_t>(bytes, leaf + 4);
    if (!NumberAt<std::uint64_t>(bytes, leaf + 8))
      return false;
    const auto section = std::ranges::find_if(sections, [&](const Section &each) {
      return *address >= each.address && std::uint64_t{*address} + *size <= std::uint64_t{each.address} + each.size;
    });
    if (section == sections.end() || *size > largestResources)
      return false;
    const std::uint64_t place = std::uint64_t{section->place} + *address - section->address;
    const auto begin = [&](std::size_t count) { return file.Read(place, std::min<std::size_t>(*size, count)); };
    if (type == iconType)
      return IsWholeIcon(begin(iconHeadBytes), *size);
    if (type == iconGroupType)
      return IsWholeGroup(begin(groupHeadBytes), *size);
    textBytes += *size;
    return textBytes <= mostTextBytes && IsWholeBlock(begin(*size));
  }

  static bool IsWholeGroup(std::string_view group, std::size_t size) {
    constexpr std::size_t groupEntry = 14;
    const auto count = NumberAt<std::uint16_t>(group, 4);
    return count && *count > 0 && size >= groupHeadBytes + *count * groupEntry;
  }

  static bool IsWholeBlock(std::string_view block) {
    for (std::size_t i = 0, at = 0; i < textsOfABlock; ++i) {
      const auto length = NumberAt<std::uint16_t>(block, at);
      if (!length || block.size() - at - sizeof *length < *length * sizeof(char16_t))
        return false;
      at += sizeof *length + *length * sizeof(char16_t);
    }
    return true;
  }

  const PartReader &file;
  const std::vector<Section> sections;
  const std::string bytes;
  std::size_t entries = 0;
  std::uint64_t textBytes = 0;
};

/// The sections that have a place in the file. Nothing when one of them doesn't lie within it, or in memory within the
/// first `headsSize` bytes, where addresses count as places in the file.
std::optional<std::vector<Section>> SectionsIn(const PartReader &file, std::string_view table,
                                               std::uint32_t headsSize) {
  std::vector<Section> sections;
  for (std::size_t at = 0; at + sectionBytes <= table.size(); at += sectionBytes) {
    const Section section{*NumberAt<std::uint32_t>(table, at + 12), *NumberAt<std::uint32_t>(table, at + 16),
                          *NumberAt<std::uint32_t>(table, at + 20)};
    if (section.place == 0)
      continue; // it is in memory only
    if (!file.Holds(section.place, section.size) || section.address < headsSize)
      return {};
    sections.push_back(section);
  }
  return sections;
}

/// The address of the resources by the head with the directories of a program, 0 without any. Nothing when the head has
/// no place for it.
std::optional<std::uint32_t> AddressOfResources(std::string_view head) {
  constexpr std::uint16_t wide = 0x20B;
  const std::size_t count = NumberAt<std::uint16_t>(head, 0) == wide ? 108 : 92;
  if (NumberAt<std::uint32_t>(head, count).value_or(0) <= 2)
    return {};
  return NumberAt<std::uint32_t>(head, count + 20);
}

bool IsWholeProgram(const PartReader &file, std::uint32_t start, std::span<const std::uint32_t> types) {
  constexpr std::size_t sizeOfHeads = 60;
  const std::string signature = file.Read(start, signatureBytes);
  if (signature.size() != signatureBytes || signature.starts_with("NE"))
    return false; // one for 16 bits can't run, and isn't worth its own check
  if (!signature.starts_with("PE\0\0"sv))
    return true; // an old program without resources
  const std::size_t count = *NumberAt<std::uint16_t>(signature, 6), headSize = *NumberAt<std::uint16_t>(signature, 20);
  const std::string heads =
      count > mostSections ? "" : file.Read(start + signatureBytes, headSize + count * sectionBytes);
  const std::string_view all = heads, head = all.substr(0, headSize);
  const auto address = AddressOfResources(head);
  const auto sections =
      SectionsIn(file, all.substr(head.size()), NumberAt<std::uint32_t>(head, sizeOfHeads).value_or(0));
  if (!address || !sections)
    return false;
  if (*address == 0)
    return true;
  const auto own = std::ranges::find_if(
      *sections, [&](const Section &each) { return *address >= each.address && *address - each.address < each.size; });
  if (own == sections->end())
    return false;
  const std::uint32_t skipped = *address - own->address;
  return Resources(file, *sections, {*address, own->size - skipped, own->place + skipped}).AreWhole(types);
}

/// A list of icons, and these behind it.
bool IsWholeIconFile(const PartReader &file) {
  constexpr std::size_t listHead = 6, listEntry = 16;
  const std::size_t count = NumberAt<std::uint16_t>(file.Read(4, 2), 0).value_or(0);
  const std::string list = file.Read(listHead, count * listEntry);
  for (std::size_t at = 0; at < list.size(); at += listEntry) {
    const std::uint32_t size = *NumberAt<std::uint32_t>(list, at + 8), place = *NumberAt<std::uint32_t>(list, at + 12);
    if (size > largestResources || !file.Holds(place, size) ||
        !IsWholeIcon(file.Read(place, std::min<std::size_t>(size, iconHeadBytes)), size))
      return false;
  }
  return !list.empty();
}

/// Whether the file is of another kind, or has these resources as it should.
bool IsWhole(const PartReader &file, ProgramPart part) {
  constexpr std::array iconTypes = {iconType, iconGroupType};
  constexpr std::array textTypes = {textType};
  const std::string begin = file.Read(0, 4);
  if (part == ProgramPart::Icons && begin == "\0\0\1\0"sv)
    return IsWholeIconFile(file);
  if (file.Read(0, 2) != "MZ")
    return true;
  const auto start = NumberAt<std::uint32_t>(file.Read(startPlace, sizeof(std::uint32_t)), 0);
  if (part == ProgramPart::Icons)
    return start && IsWholeProgram(file, *start, iconTypes);
  return start && IsWholeProgram(file, *start, textTypes);
}

} // namespace

bool IsDamagedProgram(const std::wstring &path, ProgramPart part) {
  const FileHandle file = OpenForReading(path);
  if (!file || IsWhole(PartReader(file.Get()), part))
    return false;
  LogError("Program: %S is damaged", path.c_str());
  return true;
}

} // namespace lumenor
