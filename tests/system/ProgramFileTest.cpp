#include "system/ProgramFile.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/ImportSlot.h"
#include "support/LogCapture.h"
#include "support/ProgramBytes.h"
#include "support/TestFolders.h"
#include "system/Handles.h"

extern "C" decltype(&::ReadFile) __imp_ReadFile;

namespace lumenor {
namespace {

using namespace std::literals;
using tests::MakeProgram;
using tests::NumberBytes;
using tests::programHeadBytes;

constexpr std::uint32_t iconType = 3, textType = 6, groupType = 14;

/// The head of an icon of 2 by 2 pixels in 32 bits, with some of its numbers replaced, and its pixels.
std::string IconOf(std::uint32_t width = 2, std::uint32_t height = 4, std::uint32_t depth = 32,
                   std::uint32_t compression = 0, std::uint32_t colors = 0) {
  return NumberBytes(40, 4) + NumberBytes(width, 4) + NumberBytes(height, 4) + NumberBytes(1, 2) +
         NumberBytes(depth, 2) + NumberBytes(compression, 4) + std::string(12, '\0') + NumberBytes(colors, 4) +
         std::string(4, '\0') + std::string(16, 'p') + std::string(8, 'm');
}

/// The beginning of a PNG.
std::string PngOf(std::uint32_t width, std::uint32_t height) {
  std::string sides = NumberBytes(height, 4) + NumberBytes(width, 4); // to be read backwards
  std::ranges::reverse(sides);
  return "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR"s + sides + "and more";
}

std::string GroupOf(std::uint32_t count, std::size_t entries) {
  return NumberBytes(0, 2) + NumberBytes(1, 2) + NumberBytes(count, 2) + std::string(14 * entries, '\0');
}

std::string Texts(std::uint32_t lastLength = 2) {
  return std::string(30, '\0') + NumberBytes(lastLength, 2) + "a\0b\0"s;
}

class ProgramFile : public ::testing::Test {
protected:
  bool IsDamaged(const std::string &bytes, ProgramPart part = ProgramPart::Icons) const {
    const std::wstring path = folders.Root() + L"\\a.exe";
    tests::WriteBytes(path, bytes);
    return IsDamagedProgram(path, part);
  }

  bool IsIconDamaged(const std::string &icon) const { return IsDamaged(MakeProgram({{iconType, icon}})); }

  /// With the number at `at` of its head, or `at` behind it in the resources, replaced.
  bool IsDamagedWith(std::size_t at, std::uint32_t number, int bytes = 4) const {
    std::string program = MakeProgram({{iconType, IconOf()}, {groupType, GroupOf(1, 1)}});
    return IsDamaged(program.replace(at, static_cast<std::size_t>(bytes), NumberBytes(number, bytes)));
  }

  const tests::TestFolders folders;
};

TEST_F(ProgramFile, WithAllItsResourcesIsWhole) {
  const tests::LogCapture log(folders);
  EXPECT_FALSE(IsDamaged(MakeProgram({{iconType, IconOf()}, {textType, Texts()}, {groupType, GroupOf(1, 1)}})));
  EXPECT_FALSE(IsDamaged(MakeProgram({{textType, Texts()}}), ProgramPart::Texts));
  EXPECT_FALSE(IsDamaged("no program"));
  EXPECT_FALSE(IsDamaged(""));
  EXPECT_FALSE(IsDamagedProgram(folders.Root() + L"\\missing.exe", ProgramPart::Icons));
  EXPECT_THAT(log.Lines(), testing::IsEmpty());
}

TEST_F(ProgramFile, ThatIsDamagedIsLogged) {
  const tests::LogCapture log(folders);
  EXPECT_TRUE(IsDamaged("MZ"));
  EXPECT_THAT(log.Lines(), testing::ElementsAre(testing::EndsWith("\\a.exe is damaged")));
}

TEST_F(ProgramFile, OfThePlatformIsWhole) {
  for (const std::wstring folder : {L"C:\\windows\\", L"C:\\windows\\system32\\"}) {
    WIN32_FIND_DATAW found{};
    const FindHandle find(::FindFirstFileW((folder + L"*.exe").c_str(), &found));
    ASSERT_TRUE(find);
    for (bool more = true; more; more = ::FindNextFileW(find.Get(), &found) != FALSE)
      for (const ProgramPart part : {ProgramPart::Icons, ProgramPart::Texts})
        EXPECT_FALSE(IsDamagedProgram(folder + found.cFileName, part)) << tests::Utf8(found.cFileName);
  }
}

TEST_F(ProgramFile, IsCheckedForWhatIsReadOnly) {
  const std::string badTexts = MakeProgram({{iconType, IconOf()}, {textType, Texts(3)}});
  EXPECT_FALSE(IsDamaged(badTexts, ProgramPart::Icons));
  EXPECT_TRUE(IsDamaged(badTexts, ProgramPart::Texts));
  const std::string badIcon = MakeProgram({{iconType, IconOf(3, 6)}, {textType, Texts()}});
  EXPECT_TRUE(IsDamaged(badIcon, ProgramPart::Icons));
  EXPECT_FALSE(IsDamaged(badIcon, ProgramPart::Texts));
}

TEST_F(ProgramFile, OfAnotherKindHasNoneOfTheseResources) {
  EXPECT_FALSE(IsDamagedWith(64, 0)) << "a program of DOS";
  EXPECT_TRUE(IsDamagedWith(64, 'N' | 'E' << 8)) << "one for 16 bits";
}

TEST_F(ProgramFile, WithAWrongHeadIsDamaged) {
  EXPECT_TRUE(IsDamagedWith(60, 0x7FFFFFFF)) << "its head lies behind its end";
  EXPECT_TRUE(IsDamagedWith(60, 0xFFFFFFFF));
  EXPECT_TRUE(IsDamagedWith(70, 97, 2)) << "more sections than can be";
  EXPECT_TRUE(IsDamagedWith(70, 40, 2)) << "more sections than there are";
  EXPECT_TRUE(IsDamagedWith(84, 100, 2)) << "a head without a place for the resources";
  EXPECT_TRUE(IsDamagedWith(64 + 24 + 108, 2)) << "directories without one";
  EXPECT_TRUE(IsDamagedWith(64 + 24 + 112 + 16, 0x9000)) << "in no section";
  EXPECT_FALSE(IsDamagedWith(64 + 24 + 112 + 16, 0)) << "nowhere";
  EXPECT_FALSE(IsDamagedWith(64 + 24 + 60, 0x1000));
  EXPECT_TRUE(IsDamagedWith(64 + 24 + 60, 0x1001)) << "heads that reach into the section";
  const std::size_t section = 64 + 24 + 112 + 16 * 8;
  EXPECT_TRUE(IsDamagedWith(section + 16, 0x10000)) << "a section longer than the file";
  EXPECT_TRUE(IsDamagedWith(section + 20, 0xFFFFFFFF)) << "a section behind its end";
  EXPECT_TRUE(IsDamagedWith(section + 20, 0)) << "resources in a section of memory alone";
}

TEST_F(ProgramFile, MayHaveSectionsOfMemoryAlone) {
  std::string program = MakeProgram({{iconType, IconOf()}});
  const std::size_t section = 64 + 24 + 112 + 16 * 8;
  program.replace(70, 2, NumberBytes(2, 2));
  program.replace(section + 40 + 12, 8, NumberBytes(0x9000, 4) + NumberBytes(0x100000, 4));
  EXPECT_FALSE(IsDamaged(program));
}

TEST_F(ProgramFile, WithMoreThan65536EntriesIsDamaged) {
  const auto withNamesOfOneIcon = [](std::uint32_t count) {
    constexpr std::uint32_t typeOffset = 20, languages = 56, directory = 0x80000000;
    std::string names = std::string(14, '\0') + NumberBytes(count, 2);
    for (std::uint32_t i = 0; i < count; ++i)
      names += NumberBytes(i + 1, 4) + NumberBytes(directory | languages, 4);
    std::string program = MakeProgram({{iconType, IconOf()}, {textType, names}});
    const std::size_t place = program.find(names) - programHeadBytes;
    return program.replace(programHeadBytes + typeOffset, 4, NumberBytes(directory | place, 4));
  };
  EXPECT_FALSE(IsDamaged(withNamesOfOneIcon(32'767))) << "and as many of their language, and two types";
  EXPECT_TRUE(IsDamaged(withNamesOfOneIcon(32'768)));
}

TEST_F(ProgramFile, WhoseResourcesLeadOutOfItIsDamaged) {
  constexpr std::size_t root = programHeadBytes, names = root + 16 + 2 * 8, languages = names + 24,
                        leaf = languages + 24;
  EXPECT_TRUE(IsDamagedWith(root + 14, 0x8000, 2)) << "more entries than fit";
  EXPECT_TRUE(IsDamagedWith(root + 14, 0, 2)) << "none";
  EXPECT_TRUE(IsDamagedWith(root + 16, 0x80005000)) << "a name behind the end";
  EXPECT_TRUE(IsDamagedWith(root + 20, 48)) << "a type that is no directory";
  EXPECT_TRUE(IsDamagedWith(root + 20, 0x80005000)) << "names behind the end";
  EXPECT_TRUE(IsDamagedWith(names + 14, 0, 2)) << "no name";
  EXPECT_TRUE(IsDamagedWith(names + 20, 0x80005000)) << "languages behind the end";
  EXPECT_TRUE(IsDamagedWith(languages + 20, 0x5000)) << "a leaf behind the end";
  EXPECT_TRUE(IsDamagedWith(languages + 20, 0x80000000 | 48)) << "a leaf that is a directory";
  EXPECT_TRUE(IsDamagedWith(leaf, 0x5000)) << "data in no section";
  EXPECT_TRUE(IsDamagedWith(leaf, 0)) << "data ahead of all sections";
  EXPECT_TRUE(IsDamagedWith(leaf + 4, 0xFFFFFFFF)) << "data over the end";
}

TEST_F(ProgramFile, WhoseTypeHasMoreThanItsNumberIsCheckedAsThatType) {
  constexpr std::size_t type = programHeadBytes + 16;
  EXPECT_TRUE(IsDamaged(MakeProgram({{iconType, IconOf(3, 6)}}).replace(type, 4, NumberBytes(0x20003, 4))));
  EXPECT_FALSE(IsDamaged(MakeProgram({{iconType, IconOf(3, 6)}}).replace(type, 4, NumberBytes(0x20004, 4))));
}

TEST_F(ProgramFile, WithAnIconOfAnotherSizeIsDamaged) {
  EXPECT_FALSE(IsIconDamaged(PngOf(256, 256)));
  EXPECT_FALSE(IsIconDamaged(PngOf(1024, 1024)));
  EXPECT_TRUE(IsIconDamaged(PngOf(1025, 1)));
  EXPECT_TRUE(IsIconDamaged(PngOf(1, 1025)));
  EXPECT_TRUE(IsIconDamaged(PngOf(32768, 32768))) << "whose pixels take 0 bytes of 32 bits";
  EXPECT_TRUE(IsIconDamaged(PngOf(1, 1).substr(0, 23)));
  EXPECT_FALSE(IsIconDamaged(IconOf(2, 4, 8, 0, 2)));
  EXPECT_TRUE(IsIconDamaged(IconOf().substr(0, 30)));
  EXPECT_TRUE(IsIconDamaged("\x0C" + IconOf().substr(1)));
  EXPECT_TRUE(IsIconDamaged(IconOf(1025, 0)));
  EXPECT_TRUE(IsIconDamaged(IconOf(0, 2049)));
  EXPECT_TRUE(IsIconDamaged(IconOf(2, 4, 33)));
  EXPECT_TRUE(IsIconDamaged(IconOf(2, 4, 32, 1)));
  EXPECT_TRUE(IsIconDamaged(IconOf(2, 4, 8, 0, 257)));
  EXPECT_TRUE(IsIconDamaged(IconOf(2, 4, 8))) << "with a palette of 256 colors";
  EXPECT_TRUE(IsIconDamaged(IconOf(3, 6)));
}

/// A file of icons that claims `count` of them, with one of `icon` in `size` bytes at `place`.
std::string IconFileOf(const std::string &icon, std::uint32_t count = 1, std::uint32_t size = 64,
                       std::uint32_t place = 22) {
  return "\0\0\1\0"s + NumberBytes(count, 2) + std::string(8, '\0') + NumberBytes(size, 4) + NumberBytes(place, 4) +
         icon;
}

TEST_F(ProgramFile, OfIconsHasToHoldThem) {
  EXPECT_FALSE(IsDamaged(IconFileOf(IconOf())));
  EXPECT_TRUE(IsDamaged(IconFileOf(IconOf(3, 6))));
  EXPECT_TRUE(IsDamaged(IconFileOf(IconOf(), 0)));
  EXPECT_TRUE(IsDamaged(IconFileOf(IconOf(), 6)));
  EXPECT_TRUE(IsDamaged(IconFileOf(IconOf(), 1, 65)));
  EXPECT_TRUE(IsDamaged(IconFileOf(IconOf(), 1, 64, 0xFFFFFFFF)));
  EXPECT_TRUE(IsDamaged("\0\0\1\0"s));
  EXPECT_FALSE(IsDamaged(IconFileOf(IconOf(3, 6)), ProgramPart::Texts));
}

TEST_F(ProgramFile, WithAGroupOfMoreIconsThanItListsIsDamaged) {
  EXPECT_FALSE(IsDamaged(MakeProgram({{groupType, GroupOf(2, 2)}})));
  EXPECT_TRUE(IsDamaged(MakeProgram({{groupType, GroupOf(2, 1)}})));
  EXPECT_TRUE(IsDamaged(MakeProgram({{groupType, GroupOf(0, 1)}})));
  EXPECT_TRUE(IsDamaged(MakeProgram({{groupType, "short"}})));
}

std::uint64_t bytesRead = 0;
decltype(__imp_ReadFile) platformRead = nullptr;

BOOL WINAPI CountRead(HANDLE file, LPVOID buffer, DWORD bytes, LPDWORD read, LPOVERLAPPED place) {
  bytesRead += bytes;
  return platformRead(file, buffer, bytes, read, place);
}

TEST_F(ProgramFile, ThatListsOnePartVeryOftenIsNotReadVeryOften) {
  const tests::ImportSlot counted(&__imp_ReadFile, &CountRead);
  platformRead = counted.Former();
  constexpr std::uint32_t count = 1000, partBytes = 1 << 20;
  std::string list;
  for (std::uint32_t i = 0; i < count; ++i)
    list += std::string(8, '\0') + NumberBytes(partBytes, 4) + NumberBytes(6 + 16 * count, 4);
  bytesRead = 0;
  EXPECT_FALSE(IsDamaged("\0\0\1\0"s + NumberBytes(count, 2) + list + PngOf(1, 1) + std::string(partBytes, 'p')));
  EXPECT_GT(partBytes, bytesRead);
}

TEST_F(ProgramFile, WithOneBlockOfTextsUnderVeryManyNamesIsDamaged) {
  const std::string block = Texts() + std::string(1 << 20, 't');
  // All but the last have no bytes of their own, and so begin where the last one does.
  const auto isDamaged = [&](std::size_t names) {
    std::vector<std::pair<std::uint32_t, std::string>> resources(names - 1, {textType, ""});
    resources.emplace_back(textType, block);
    std::string program = MakeProgram(resources);
    for (std::size_t i = 0; i + 1 < names; ++i)
      program.replace(programHeadBytes + 16 + 8 * names + 64 * i + 52, 4, NumberBytes(block.size(), 4));
    return IsDamaged(program, ProgramPart::Texts);
  };
  EXPECT_FALSE(isDamaged(10));
  EXPECT_TRUE(isDamaged(100));
}

} // namespace
} // namespace lumenor
