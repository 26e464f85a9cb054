#include "system/IconSource.h"

#include <gmock/gmock.h>

#include "support/ComApartment.h"
#include "support/LogCapture.h"
#include "support/ProgramBytes.h"
#include "support/Shortcut.h"
#include "support/TestFolders.h"

namespace lumenor {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;

constexpr std::uint32_t versionType = 16;

class DamagedIcon : public ::testing::Test {
protected:
  DamagedIcon() {
    tests::WriteBytes(Path(L"whole.exe"), tests::MakeProgram({{versionType, "any"}}));
    tests::WriteBytes(Path(L"damaged.exe"), "MZ");
  }

  std::wstring Path(const std::wstring &name) const { return folders.Root() + L"\\" + name; }

  /// The path of a new shortcut.
  std::wstring LinkTo(const std::wstring &target, const std::wstring &iconFile = {}) {
    std::wstring path = Path(L"link" + std::to_wstring(++links) + L".LNK");
    tests::MakeShortcut(path, {.target = Path(target), .iconFile = iconFile.empty() ? L"" : Path(iconFile)});
    return path;
  }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const tests::LogCapture log{folders};
  int links = 0;
};

TEST_F(DamagedIcon, IsNoneOfAWholeProgramOrOfAShortcutToOne) {
  EXPECT_FALSE(HasDamagedIcon(Path(L"whole.exe")));
  EXPECT_FALSE(HasDamagedIcon(LinkTo(L"whole.exe")));
  EXPECT_FALSE(HasDamagedIcon(LinkTo(L"whole.exe", L"whole.exe")));
  EXPECT_FALSE(HasDamagedIcon(LinkTo(L"missing.exe")));
  EXPECT_FALSE(HasDamagedIcon(Path(L"missing.lnk")));
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(DamagedIcon, IsThatOfADamagedProgramAndOfAShortcutToOne) {
  EXPECT_TRUE(HasDamagedIcon(Path(L"damaged.exe")));
  EXPECT_TRUE(HasDamagedIcon(LinkTo(L"damaged.exe")));
  EXPECT_TRUE(HasDamagedIcon(LinkTo(L"whole.exe", L"damaged.exe")));
  EXPECT_THAT(log.Lines(), testing::Each(EndsWith("\\damaged.exe is damaged")));
  EXPECT_EQ(3u, log.Lines().size());
}

TEST_F(DamagedIcon, IsThatOfAShortcutThatIsDamagedItself) {
  tests::WriteBytes(Path(L"no.lnk"), "no shortcut");
  EXPECT_TRUE(HasDamagedIcon(Path(L"no.lnk")));
  EXPECT_THAT(log.Lines(), ElementsAre(EndsWith("\\no.lnk is damaged")));
}

TEST_F(DamagedIcon, IsFoundBehindAShortcutToAShortcut) {
  LinkTo(L"damaged.exe");
  LinkTo(L"link1.LNK");
  EXPECT_TRUE(HasDamagedIcon(LinkTo(L"link2.LNK")));
  EXPECT_THAT(log.Lines(), ElementsAre(EndsWith("\\damaged.exe is damaged")));
}

TEST_F(DamagedIcon, IsThatOfAShortcutThatLeadsToItself) {
  tests::WriteBytes(Path(L"link2.LNK"), ""); // the shell makes no shortcut to a file that isn't there
  LinkTo(L"link2.LNK");
  EXPECT_TRUE(HasDamagedIcon(LinkTo(L"link1.LNK")));
  EXPECT_THAT(log.Lines(), ElementsAre(EndsWith("\\link2.LNK leads to itself or to too many files")));
}

} // namespace
} // namespace lumenor
