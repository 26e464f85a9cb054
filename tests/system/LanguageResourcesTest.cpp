#include "system/LanguageResources.h"

#include <gmock/gmock.h>

#include "support/ComApartment.h"
#include "support/HeldFile.h"
#include "support/ImportSlot.h"
#include "support/KeptRegistryKey.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"

extern "C" decltype(&::GetGeoInfoW) __imp_GetGeoInfoW;

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t fileName[] = L"Texts.xml";
constexpr wchar_t dockStrings[] = L"Lumenor.MainFrame.Windows.DockViewWindow.xml";

/// A machine of platform "VRC" whose user is English in Germany: the folders are ENU_DE and, as the test platform has
/// no RFC 1766 tags, en_us.
class LanguageResources : public testing::Test {
protected:
  LanguageResources() {
    platform.SetText(L"platform", L"VRC");
    geo.SetText(L"Nation", L"94");
  }

  std::wstring PathIn(const std::wstring &locale, const std::wstring &name = fileName) const {
    return folders.CommonFolder() + L"\\BaseContent\\LangRes\\LangRes_VRC\\" + locale + L"\\" + name;
  }

  std::wstring UserPath() const { return folders.UserFolder() + L"\\" + fileName; }

  std::string LookLine(const std::wstring &path) const { return "INFO: Looking for file " + tests::Utf8(path); }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const tests::LogCapture log{folders};
  const tests::KeptRegistryKey platform{HKEY_LOCAL_MACHINE, L"SOFTWARE\\Tarnwick\\System Properties"};
  const tests::KeptRegistryKey geo{HKEY_CURRENT_USER, L"Control Panel\\International\\Geo"};
};

TEST_F(LanguageResources, AFileOfTheLanguageAndCountryIsFoundAtOnce) {
  tests::WriteBytes(PathIn(L"ENU_DE"), "");
  tests::WriteBytes(PathIn(L"ENU_xx"), "");
  EXPECT_EQ(PathIn(L"ENU_DE"), FindResourceFile(fileName));
  EXPECT_THAT(log.Lines(), ElementsAre(LookLine(PathIn(L"ENU_DE"))));
}

TEST_F(LanguageResources, FoldersAreFoundInAnyCase) {
  tests::WriteBytes(PathIn(L"enu_de"), "");
  EXPECT_EQ(PathIn(L"ENU_DE"), FindResourceFile(fileName));
}

TEST_F(LanguageResources, WithoutThatTheChainOfTheOtherKeyIsSearched) {
  tests::WriteBytes(PathIn(L"xx_xx"), "");
  tests::WriteBytes(PathIn(L"ENU_xx"), ""); // of the key that was given up
  EXPECT_EQ(PathIn(L"xx_xx"), FindResourceFile(fileName));
  EXPECT_THAT(log.Lines(),
              ElementsAre(LookLine(PathIn(L"en_us")), LookLine(PathIn(L"en_xx")), LookLine(PathIn(L"xx_xx"))));
}

/// Gives the user's country a tag of its own, which the test platform has for none.
class AustrianTag {
private:
  static int WINAPI GeoInfo(GEOID geo, GEOTYPE type, LPWSTR data, int size, LANGID language) {
    if (type != GEO_RFC1766)
      return platformGeoInfo(geo, type, data, size, language);
    if (size != 0)
      ::lstrcpynW(data, L"de-AT", size);
    return 6;
  }

  static inline decltype(__imp_GetGeoInfoW) platformGeoInfo = __imp_GetGeoInfoW;
  const tests::ImportSlot<decltype(__imp_GetGeoInfoW)> slot{&__imp_GetGeoInfoW, &GeoInfo};
};

TEST_F(LanguageResources, ATextAtTheFourthPlaceOfItsChainIsFoundAfterFourLines) {
  const AustrianTag tag;
  tests::WriteBytes(PathIn(L"en_xx"), "<UIRoot><Head>Close</Head></UIRoot>");
  tests::WriteBytes(UserPath(), "<UIRoot><Head>the user's</Head></UIRoot>");
  EXPECT_EQ(L"Close", LoadString(fileName, L"//UIRoot/Head"));
  EXPECT_THAT(log.Lines(), ElementsAre(LookLine(PathIn(L"de_AT")), LookLine(PathIn(L"de_xx")),
                                       LookLine(PathIn(L"xx_xx")), LookLine(PathIn(L"en_xx")),
                                       "INFO: LoadString: Loading from " + tests::Utf8(PathIn(L"en_xx")) +
                                           " with query //UIRoot/Head"));
}

TEST_F(LanguageResources, AFileInTheUsersFolderAloneIsFoundThereAfterFiveLines) {
  tests::WriteBytes(UserPath(), "");
  EXPECT_EQ(UserPath(), FindResourceFile(fileName));
  EXPECT_THAT(log.Lines(), ElementsAre(LookLine(PathIn(L"en_us")), LookLine(PathIn(L"en_xx")),
                                       LookLine(PathIn(L"xx_xx")), LookLine(PathIn(L"en_xx")), LookLine(UserPath())));
}

TEST_F(LanguageResources, TheInstalledFileComesBeforeTheUsers) {
  tests::WriteBytes(UserPath(), "");
  tests::WriteBytes(PathIn(L"en_xx"), "");
  EXPECT_EQ(PathIn(L"en_xx"), FindResourceFile(fileName));
}

TEST_F(LanguageResources, AMissingFileIsEmptyText) {
  EXPECT_EQ(L"", FindResourceFile(fileName));
  EXPECT_EQ(5u, log.Lines().size());
}

TEST_F(LanguageResources, TheTreeOfAnotherPlatformIsNotSearched) {
  tests::WriteBytes(folders.CommonFolder() + L"\\BaseContent\\LangRes\\LangRes_VRA\\en_us\\" + fileName, "");
  EXPECT_EQ(L"", FindResourceFile(fileName));
}

constexpr char texts[] = "<?xml version=\"1.0\" encoding=\"utf-8\"?><UIRoot><Texts><Elements>"
                         "<Element ID=\"Close\"><Head>Schlie\xC3\x9F"
                         "en</Head></Element>"
                         "<Element ID=\"Close\"><Head>second</Head></Element></Elements></Texts></UIRoot>";

TEST_F(LanguageResources, LoadStringGivesTheFirstMatch) {
  tests::WriteBytes(PathIn(L"ENU_DE"), texts);
  EXPECT_EQ(L"Schlie\u00DFen", LoadString(fileName, L"//UIRoot/Texts/Elements/Element[@ID='Close']/Head"));
  EXPECT_THAT(log.Lines(), ElementsAre(LookLine(PathIn(L"ENU_DE")),
                                       "INFO: LoadString: Loading from " + tests::Utf8(PathIn(L"ENU_DE")) +
                                           " with query //UIRoot/Texts/Elements/Element[@ID='Close']/Head"));
}

TEST_F(LanguageResources, AQueryThatMatchesNothingGivesEmptyTextWithoutAFurtherLine) {
  tests::WriteBytes(PathIn(L"ENU_DE"), texts);
  EXPECT_EQ(L"", LoadString(fileName, L"//UIRoot/Texts/Elements/Element[@ID='Open']/Head"));
  EXPECT_EQ(2u, log.Lines().size());
}

TEST_F(LanguageResources, ABrokenFileGivesEmptyTextWithoutAFurtherLine) {
  tests::WriteBytes(PathIn(L"ENU_DE"), "<UIRoot>");
  EXPECT_EQ(L"", LoadString(fileName, L"//UIRoot"));
  EXPECT_EQ(2u, log.Lines().size());
}

TEST_F(LanguageResources, AFileThatIsInUseIsWaitedFor) {
  tests::WriteBytes(PathIn(L"ENU_DE"), "<UIRoot><Head>Close</Head></UIRoot>");
  const tests::HeldFile held(PathIn(L"ENU_DE"), 2);
  ASSERT_TRUE(held.IsHeld());
  EXPECT_EQ(L"Close", LoadString(fileName, L"//UIRoot/Head"));
  EXPECT_EQ(2u, log.Lines().size());
}

TEST_F(LanguageResources, AMissingFileGivesEmptyTextAndAnErrorWithTheBareName) {
  EXPECT_EQ(L"", LoadString(fileName, L"//UIRoot"));
  ASSERT_EQ(6u, log.Lines().size());
  EXPECT_EQ("ERROR: LoadString: Couldn't find file Texts.xml", log.Lines().back());
}

TEST_F(LanguageResources, DockStringsComeFromTheirOwnDocument) {
  tests::WriteBytes(PathIn(L"ENU_DE", dockStrings),
                    "<UIRoot><Lumenor.MainFrame.Windows.DockViewWindow><Elements><Element ID=\"Button.Tooltip.Close\">"
                    "<Head>Close</Head></Element></Elements></Lumenor.MainFrame.Windows.DockViewWindow></UIRoot>");
  EXPECT_EQ(L"Close", LoadDockString(L"Button.Tooltip.Close"));
  EXPECT_EQ("INFO: LoadString: Loading from " + tests::Utf8(PathIn(L"ENU_DE", dockStrings)) +
                " with query //UIRoot/Lumenor.MainFrame.Windows.DockViewWindow/Elements/"
                "Element[@ID='Button.Tooltip.Close']/Head",
            log.Lines().back());
}

} // namespace
} // namespace lumenor
