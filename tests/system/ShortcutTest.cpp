#include "system/Shortcut.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/LogCapture.h"
#include "support/ProgramBytes.h"
#include "support/TestFolders.h"

namespace lumenor {
namespace {

using namespace std::literals;
using tests::NumberBytes;
using tests::WriteBytes;

/// A shortcut with these flags, and `parts` behind its head.
std::string ShortcutOf(std::uint32_t flags, const std::string &parts) {
  return "\x4C\0\0\0\x01\x14\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46"s + NumberBytes(flags, 4) + std::string(52, '\0') +
         parts;
}

/// An item of a target, with its length in front.
std::string Item(const std::string &content) {
  return NumberBytes(static_cast<std::uint32_t>(content.size()) + 2, 2) + content;
}
std::string Target(const std::string &items) {
  return NumberBytes(static_cast<std::uint32_t>(items.size()), 2) + items;
}

/// A place with a volume, a path and a suffix.
std::string Place() {
  const std::string volume =
      NumberBytes(20, 4) + NumberBytes(3, 4) + NumberBytes(7, 4) + NumberBytes(16, 4) + "hd\0\0"s;
  return NumberBytes(28 + 20 + 8 + 4, 4) + NumberBytes(28, 4) + NumberBytes(1, 4) + NumberBytes(28, 4) +
         NumberBytes(48, 4) + NumberBytes(0, 4) + NumberBytes(56, 4) + volume + "C:\\a.bc\0"s + "d.e\0"s;
}

/// A place on a server, with texts of both widths.
std::string ServerPlace() {
  const std::string server = NumberBytes(26, 4) + NumberBytes(2, 4) + NumberBytes(20, 4) + NumberBytes(23, 4) +
                             NumberBytes(0, 4) + "sv\0"s + "X:\0"s;
  const auto head = static_cast<std::uint32_t>(36), behind = head + static_cast<std::uint32_t>(server.size());
  return NumberBytes(behind + 2 + 4, 4) + NumberBytes(head, 4) + NumberBytes(2, 4) + NumberBytes(0, 4) +
         NumberBytes(0, 4) + NumberBytes(head, 4) + NumberBytes(behind, 4) + NumberBytes(0, 4) +
         NumberBytes(behind + 2, 4) + server + "a\0"s + "b\0\0\0"s;
}

constexpr std::uint32_t target = 1, place = 2, description = 4, arguments = 0x20, wide = 0x80;

TEST(WholeShortcut, HasAHeadAndWhatItsFlagsTell) {
  EXPECT_TRUE(IsWholeShortcut(ShortcutOf(0, "")));
  EXPECT_TRUE(IsWholeShortcut(ShortcutOf(target, Target(Item("abc") + Item("d") + NumberBytes(0, 2)))));
  EXPECT_TRUE(IsWholeShortcut(ShortcutOf(place, Place())));
  EXPECT_TRUE(IsWholeShortcut(ShortcutOf(place, ServerPlace())));
  EXPECT_TRUE(IsWholeShortcut(ShortcutOf(description | arguments, NumberBytes(2, 2) + "ab" + NumberBytes(0, 2))));
  EXPECT_TRUE(IsWholeShortcut(ShortcutOf(description | wide, NumberBytes(2, 2) + "a\0b\0"s)));
  EXPECT_TRUE(IsWholeShortcut(
      ShortcutOf(0, NumberBytes(12, 4) + "12345678" + NumberBytes(0, 4) + "what is behind is nobody's")));
}

TEST(WholeShortcut, BeginsWithItsLengthAndItsClass) {
  std::string bytes = ShortcutOf(0, "");
  EXPECT_FALSE(IsWholeShortcut(""));
  EXPECT_FALSE(IsWholeShortcut(bytes.substr(0, 75)));
  bytes[0] = '\x4D';
  EXPECT_FALSE(IsWholeShortcut(bytes));
  bytes = ShortcutOf(0, "");
  bytes[19] = '\x45';
  EXPECT_FALSE(IsWholeShortcut(bytes));
}

TEST(WholeShortcut, IsNotOneWhoseTargetDoesntFit) {
  EXPECT_FALSE(IsWholeShortcut(ShortcutOf(target, "")));
  EXPECT_FALSE(IsWholeShortcut(ShortcutOf(target, NumberBytes(100, 2) + Item("abc") + NumberBytes(0, 2))))
      << "too long";
  EXPECT_FALSE(IsWholeShortcut(ShortcutOf(target, Target(Item("abc"))))) << "without an end";
  EXPECT_FALSE(IsWholeShortcut(ShortcutOf(target, Target(NumberBytes(9, 2) + "abc" + NumberBytes(0, 2)))))
      << "an item too long";
  EXPECT_FALSE(IsWholeShortcut(ShortcutOf(target, Target(NumberBytes(1, 2) + NumberBytes(0, 2)))))
      << "an item without a length";
  EXPECT_FALSE(IsWholeShortcut(ShortcutOf(target, Target(NumberBytes(0, 2) + "abc")))) << "something behind the end";
}

TEST(WholeShortcut, IsNotOneWhosePlacePointsOutOfItself) {
  for (const std::size_t at : {0, 4, 12, 16, 24, 28, 40})
    for (const std::uint32_t number : {1U, 0x7FU, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
      std::string bytes = Place();
      bytes.replace(at, 4, NumberBytes(number, 4));
      const bool isText = at == 16 || at == 24 || at == 40;
      if (isText && number == 1)
        continue; // a text may begin anywhere in it
      EXPECT_FALSE(IsWholeShortcut(ShortcutOf(place, bytes))) << number << " at " << at;
    }
  for (const std::size_t at : {20, 28, 32, 36, 44, 48}) {
    std::string bytes = ServerPlace();
    bytes.replace(at, 4, NumberBytes(0x7F, 4));
    EXPECT_FALSE(IsWholeShortcut(ShortcutOf(place, bytes))) << at;
  }
  std::string endless = Place();
  endless.back() = 'x';
  EXPECT_FALSE(IsWholeShortcut(ShortcutOf(place, endless)));
  EXPECT_FALSE(IsWholeShortcut(ShortcutOf(place, Place().substr(0, 40))));
}

TEST(WholeShortcut, IsNotOneWhoseTextsOrBlocksBreakOff) {
  EXPECT_FALSE(IsWholeShortcut(ShortcutOf(description, NumberBytes(3, 2) + "ab")));
  EXPECT_FALSE(IsWholeShortcut(ShortcutOf(description | wide, NumberBytes(2, 2) + "ab")));
  EXPECT_FALSE(IsWholeShortcut(ShortcutOf(description | arguments, NumberBytes(2, 2) + "ab")));
  EXPECT_FALSE(IsWholeShortcut(ShortcutOf(0, NumberBytes(13, 4) + "12345678")));
  EXPECT_FALSE(IsWholeShortcut(ShortcutOf(0, NumberBytes(7, 4) + "12345678")));
}

class DamagedShortcut : public testing::Test {
protected:
  bool IsDamaged(const std::wstring &name, const std::string &bytes) const {
    const std::wstring path = folders.Root() + L"\\" + name;
    WriteBytes(path, bytes);
    return IsDamagedShortcut(path);
  }

  const tests::TestFolders folders;
};

TEST_F(DamagedShortcut, IsAFileWithTheNameOfAShortcutThatIsNotWhole) {
  const std::string whole = ShortcutOf(place, Place());
  const tests::LogCapture log(folders);
  EXPECT_FALSE(IsDamaged(L"a.lnk", whole));
  EXPECT_FALSE(IsDamaged(L"a.txt", "no shortcut"));
  EXPECT_FALSE(IsDamagedShortcut(folders.Root() + L"\\missing.lnk"));
  EXPECT_FALSE(IsDamagedShortcut(folders.Root() + L"\\missing\\lnk"));
  EXPECT_FALSE(IsDamagedShortcut(L"lnk"));
  EXPECT_THAT(log.Lines(), testing::IsEmpty());
  EXPECT_TRUE(IsDamaged(L"a.lnk", ""));
  EXPECT_TRUE(IsDamaged(L"b.LNK", whole.substr(0, 100)));
  EXPECT_TRUE(IsDamaged(L"c.lnk", whole + std::string(1 << 20, '\0')));
  EXPECT_THAT(log.Lines(),
              testing::ElementsAre(testing::EndsWith("\\a.lnk is damaged"), testing::EndsWith("\\b.LNK is damaged"),
                                   testing::EndsWith("\\c.lnk is damaged")));
}

} // namespace
} // namespace lumenor
