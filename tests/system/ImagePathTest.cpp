#include "system/ImagePath.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/LogCapture.h"
#include "support/TestFolders.h"

namespace lumenor {
namespace {

using namespace tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ImagePath : public ::testing::Test {
protected:
  std::wstring Path(const std::wstring &name) const { return folders.Root() + L"\\" + name; }

  const TestFolders folders;
  const CurrentFolder currentFolder{folders.Root() + L"\\current"};
};

TEST_F(ImagePath, APathThatExistsIsUsedAsItStands) {
  const LogCapture log(folders);
  WriteBytes(Path(L"current\\here.png"), "x");
  EXPECT_EQ(L"here.png", ResolveImagePath(L"here.png"));
  EXPECT_EQ(Path(L"current"), ResolveImagePath(Path(L"current"))) << "a folder exists, too";
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(ImagePath, ARelativePathIsFoundInTheCurrentFolderFirst) {
  WriteBytes(Path(L"current\\both.png"), "x");
  WriteBytes(folders.InstallFolder() + L"\\both.png", "x");
  EXPECT_EQ(L"both.png", ResolveImagePath(L"both.png"));
}

TEST_F(ImagePath, APathThatDoesNotExistIsSoughtInTheInstallationFolder) {
  const std::wstring installed = folders.InstallFolder() + L"\\pictures\\mail.png";
  WriteBytes(installed, "x");
  WriteBytes(folders.CommonFolder() + L"\\LangRes\\pictures\\mail.png", "x");
  const LogCapture log(folders);
  EXPECT_EQ(installed, ResolveImagePath(L"pictures\\mail.png"));
  EXPECT_THAT(log.Lines(),
              ElementsAre("INFO: WICHelper: can't find pictures\\mail.png falling back to " + Utf8(installed)));
}

TEST_F(ImagePath, APathThatExistsNowhereEndsInTheLanguageFolder) {
  const LogCapture log(folders);
  const std::wstring installed = folders.InstallFolder() + L"\\mail.png";
  const std::wstring common = folders.CommonFolder() + L"\\LangRes\\mail.png";
  EXPECT_EQ(common, ResolveImagePath(L"mail.png"));
  EXPECT_THAT(log.Lines(),
              ElementsAre("INFO: WICHelper: can't find mail.png falling back to " + Utf8(installed),
                          "INFO: WICHelper: can't find " + Utf8(installed) + " falling back to " + Utf8(common)));
}

class ImageCacheFolderTest : public ::testing::Test {
protected:
  const TestFolders folders;
};

TEST_F(ImageCacheFolderTest, IsMadeWhereItIsMissing) {
  MakeFolders(folders.CommonFolder());
  EXPECT_EQ(folders.CommonFolder() + L"\\ImageCache\\", ImageCacheFolder());
  EXPECT_THAT(ListFolder(folders.CommonFolder()), ElementsAre(L"ImageCache"));
}

TEST_F(ImageCacheFolderTest, IsMadeWithoutItsParents) {
  EXPECT_EQ(folders.CommonFolder() + L"\\ImageCache\\", ImageCacheFolder());
  EXPECT_THAT(ListFolder(folders.ProgramData()), IsEmpty());
}

TEST_F(ImageCacheFolderTest, KeepsWhatIsInIt) {
  WriteBytes(folders.CommonFolder() + L"\\ImageCache\\mail.ico", "x");
  ImageCacheFolder();
  EXPECT_THAT(ListFolder(folders.CommonFolder() + L"\\ImageCache"), ElementsAre(L"mail.ico"));
}

TEST_F(ImageCacheFolderTest, LeavesAFileInItsPlace) {
  WriteBytes(folders.CommonFolder() + L"\\ImageCache", "a file");
  EXPECT_EQ(folders.CommonFolder() + L"\\ImageCache\\", ImageCacheFolder());
  EXPECT_EQ("a file", ReadBytes(folders.CommonFolder() + L"\\ImageCache"));
}

} // namespace
} // namespace lumenor
