#include "dock/dialogs/WelcomeSettings.h"

#include <gtest/gtest.h>

#include "dock/dialogs/UserLocale.h"
#include "support/KeptRegistryKey.h"
#include "support/TestFolders.h"
#include "system/Handles.h"

namespace lumenor {

namespace {

constexpr wchar_t startupPath[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr wchar_t dockPath[] = L"Software\\Tarnwick\\Lumenor";
constexpr wchar_t startupValue[] = L"LumenorDock";
constexpr wchar_t updateValue[] = L"AllowToUpdate";

class WelcomeSettings : public testing::Test {
protected:
  WelcomeSettings() {
    startup.Delete();
    startup.Create();
    registry.Delete();
    registry.Create();
  }

  /// The text of a value that has this many bytes in the registry.
  static std::wstring StoredText(const wchar_t *path, const wchar_t *name, DWORD expectedBytes) {
    RegistryKey key;
    ::RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, key.Put());
    wchar_t data[512] = {};
    DWORD type = REG_NONE, bytes = sizeof data;
    ::RegQueryValueExW(key.Get(), name, nullptr, &type, reinterpret_cast<BYTE *>(data), &bytes);
    EXPECT_EQ(static_cast<DWORD>(REG_SZ), type);
    EXPECT_EQ(expectedBytes, bytes);
    return data;
  }

  const tests::TestFolders folders;
  const tests::KeptRegistryKey startup{HKEY_CURRENT_USER, startupPath};
  const tests::KeptRegistryKey registry{HKEY_CURRENT_USER, dockPath};
};

TEST_F(WelcomeSettings, StartingWithTheSessionNamesTheInstalledDock) {
  StartWithSession(true);
  const std::wstring dock = folders.InstallFolder() + L"\\Dock\\LumenorDock.exe";
  EXPECT_EQ(dock, StoredText(startupPath, startupValue, static_cast<DWORD>(2 * dock.size() + 2)));
}

TEST_F(WelcomeSettings, StartingWithTheSessionNamesADockInTheOtherProgramFolder) {
  const std::wstring dock = folders.InstallFolderX86() + L"\\Dock\\LumenorDock.exe";
  tests::WriteBytes(dock, "dock");
  StartWithSession(true);
  EXPECT_EQ(dock, startup.Text(startupValue));
}

TEST_F(WelcomeSettings, StartingWithTheSessionReplacesWhatWasThere) {
  startup.SetText(startupValue, L"C:\\old\\LumenorDock.exe");
  StartWithSession(true);
  EXPECT_EQ(folders.InstallFolder() + L"\\Dock\\LumenorDock.exe", startup.Text(startupValue));
}

TEST_F(WelcomeSettings, NotStartingWithTheSessionDeletesTheValueAndNoOther) {
  startup.SetText(startupValue, L"C:\\old\\LumenorDock.exe");
  startup.SetText(L"Another", L"C:\\another.exe");
  StartWithSession(false);
  EXPECT_EQ(std::nullopt, startup.Text(startupValue));
  EXPECT_EQ(L"C:\\another.exe", startup.Text(L"Another"));
}

TEST_F(WelcomeSettings, NotStartingWithTheSessionNeedsNoValue) {
  startup.SetText(L"Another", L"C:\\another.exe");
  StartWithSession(false);
  EXPECT_EQ(std::nullopt, startup.Text(startupValue));
  EXPECT_EQ(L"C:\\another.exe", startup.Text(L"Another"));
}

TEST_F(WelcomeSettings, UpdatesAreNotedAsAWord) {
  AllowToUpdate(true);
  EXPECT_EQ(L"true", StoredText(dockPath, updateValue, 10));
  AllowToUpdate(false);
  EXPECT_EQ(L"false", StoredText(dockPath, updateValue, 12));
}

bool KeyExists(const wchar_t *path) {
  RegistryKey key;
  return ::RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, key.Put()) == ERROR_SUCCESS;
}

TEST_F(WelcomeSettings, AKeyThatIsNotThereIsPassedOver) {
  startup.Delete();
  registry.Delete();
  StartWithSession(true);
  StartWithSession(false);
  AllowToUpdate(true);
  EXPECT_FALSE(KeyExists(startupPath));
  EXPECT_FALSE(KeyExists(dockPath));
}

class TutorialLanguage : public testing::Test {
protected:
  void Install(const std::wstring &code) const {
    tests::WriteBytes(folders.InstallFolder() + L"\\LumenorVideo\\XML\\" + code + L"_Tutorials.xml", "<Tutorials/>");
  }

  const tests::TestFolders folders;
  const tests::UserLocale user{tests::french, tests::canada, L"fr-CA"}; // FRA_CA by the platform's abbreviations
};

TEST_F(TutorialLanguage, IsTheLanguageAndCountryByTheirAbbreviations) {
  for (const wchar_t *code : {L"FRA_CA", L"FRA", L"fr_CA", L"fr", L"en_us"})
    Install(code);
  EXPECT_EQ(L"FRA_CA", GetTutorialLanguage());
}

TEST_F(TutorialLanguage, IsTheAbbreviatedLanguageAloneNext) {
  for (const wchar_t *code : {L"FRA", L"fr_CA", L"fr", L"en_us"})
    Install(code);
  EXPECT_EQ(L"FRA", GetTutorialLanguage());
}

TEST_F(TutorialLanguage, IsTheCountrysTagNext) {
  for (const wchar_t *code : {L"fr_CA", L"fr", L"en_us"})
    Install(code);
  EXPECT_EQ(L"fr_CA", GetTutorialLanguage());
}

TEST_F(TutorialLanguage, IsTheTagsLanguageAloneNext) {
  for (const wchar_t *code : {L"fr", L"en_us"})
    Install(code);
  EXPECT_EQ(L"fr", GetTutorialLanguage());
}

TEST_F(TutorialLanguage, IsEnglishWithoutTutorialsOfTheUsers) {
  Install(L"de_de");
  EXPECT_EQ(L"en_us", GetTutorialLanguage());
}

TEST_F(TutorialLanguage, IsEnglishForAGermanUserOfEnglishTutorials) {
  const tests::UserLocale germanUser(tests::german, tests::germany, L"de-DE");
  Install(L"en_us");
  EXPECT_EQ(L"en_us", GetTutorialLanguage());
}

TEST_F(TutorialLanguage, IsFoundInTheOtherProgramFolder) {
  tests::WriteBytes(folders.InstallFolderX86() + L"\\LumenorVideo\\XML\\fr_Tutorials.xml", "<Tutorials/>");
  EXPECT_EQ(L"fr", GetTutorialLanguage());
}

} // namespace

} // namespace lumenor
