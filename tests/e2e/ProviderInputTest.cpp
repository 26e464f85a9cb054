// Broken and huge lists: the bar starts, shows what can be shown, and stays usable.

#include <gtest/gtest.h>

#include "e2e/Browser.h"
#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

namespace lumenor::e2e {
namespace {

using std::chrono::seconds;

constexpr char malformed[] = "<?xml version=\"1.0\"?><UIRoot><Lumenor.MainFrame";

class ProviderInput : public ::testing::Test {
protected:
  ProviderInput() { installation.WriteUsualStubs(); }

  std::wstring ForYouPath() const { return installation.DocumentPath(forYouList); }

  /// An entry that is called by the word that it starts the recorder with.
  Entry WordEntry(const std::wstring &word) const { return installation.RecorderEntry(word, word); }

  /// Opens a list and gives its height.
  static LONG OpenForYouList(const DockProcess &dock) { return HeightOf(OpenForYou(dock)); }
  static LONG OpenProviderList(const DockProcess &dock) { return HeightOf(OpenSearchProviders(dock)); }

  /// The height of the list that is open; 0 without one.
  static LONG PopupHeight(const DockProcess &dock) {
    const std::vector<HWND> popups = dock.Popups();
    return popups.empty() ? 0 : HeightOf(popups[0]);
  }

  /// A button of the bar still works, and the dock ends with 0.
  void ExpectUsable(DockProcess &dock) {
    const std::size_t before = installation.RecordedCommandLines().size();
    Click(dock.MainButton(1));
    EXPECT_EQ(before + 1, installation.WaitForCommandLines(before + 1).size());
    EXPECT_EQ(0U, CloseByButton(dock));
  }

  /// Waits until the bar answers at once again: reading a long list takes its time.
  static void WaitUntilIdle(const DockProcess &dock) {
    DWORD_PTR result = 0;
    EXPECT_TRUE(WaitFor([&] { return ::SendMessageTimeoutW(dock.Bar(), WM_NULL, 0, 0, SMTO_NORMAL, 100, &result); },
                        seconds(60)));
  }

  const Installation installation;
};

TEST_F(ProviderInput, MalformedListsAtTheStartAreEmptyLists) {
  installation.WriteDocument(forYouList, {});
  WriteBytes(ForYouPath(), malformed);
  installation.WriteRawSearchProviders("<SearchingProviders><Providers>");
  ShownDock dock(installation);
  EXPECT_EQ(40, OpenForYouList(dock));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, FilesOfNoBytesAreEmptyLists) {
  installation.WriteDocument(forYouList, {});
  WriteBytes(ForYouPath(), "");
  installation.WriteRawSearchProviders("");
  ShownDock dock(installation);
  EXPECT_EQ(40, OpenForYouList(dock));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, AMalformedListKeepsTheLastOneWhileTheBarRuns) {
  installation.WriteDocument(forYouList, {WordEntry(L"one"), WordEntry(L"two")});
  ShownDock dock(installation);
  const int readings = installation.ForYouReadings();
  WriteBytes(ForYouPath(), malformed);
  ASSERT_TRUE(WaitFor([&] { return installation.ForYouReadings() >= readings + 2; }));
  EXPECT_EQ(40 + 2 * 40, OpenForYouList(dock));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, AListWithoutEntriesEmptiesTheOneThatIsShown) {
  installation.WriteDocument(forYouList, {WordEntry(L"one"), WordEntry(L"two")});
  ShownDock dock(installation);
  ASSERT_EQ(40 + 2 * 40, OpenForYouList(dock));
  installation.WriteDocument(forYouList, {});
  EXPECT_TRUE(WaitFor([&] { return PopupHeight(dock) == 40; }));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, OfTenThousandEntriesTheFirstFiveAreShown) {
  std::vector<Entry> entries, providers;
  for (int i = 0; i < 10000; ++i) {
    entries.push_back(WordEntry(L"n" + std::to_wstring(i)));
    providers.push_back(
        {.head = L"p" + std::to_wstring(i), .actionType = L"url", .actionParams = L"http://p.example/"});
  }
  installation.WriteDocument(forYouList, entries);
  installation.WriteSearchProviders(providers);
  ShownDock dock(installation);
  WaitUntilIdle(dock); // the documents of the first start were written into the watched folder
  EXPECT_EQ(5 * 40, OpenProviderList(dock));
  EXPECT_TRUE(ChooseRow(dock, 4));
  EXPECT_EQ(40 + 5 * 40, OpenForYouList(dock));
  EXPECT_TRUE(ChooseRow(dock, 4));
  EXPECT_EQ(std::vector{installation.RecorderCommand(L"n4")}, installation.WaitForCommandLines(1));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, TextsOf64KilobytesAreShownAsFarAsTheyFit) {
  const std::wstring longText(64 * 1024, L'w');
  const Browser browser(installation);
  installation.WriteDocument(
      forYouList,
      {{.head = longText, .actionType = L"exe", .actionParams = longText, .image = longText, .toolTip = longText},
       WordEntry(L"short")});
  installation.WriteSearchProviders(
      {{.head = longText, .actionType = L"url", .actionParams = L"http://long.example/" + longText},
       {.head = L"Short", .actionType = L"url", .actionParams = L"http://short.example/"}});
  ShownDock dock(installation);
  EXPECT_EQ(40 + 2 * 40, OpenForYouList(dock));
  SaveShot("long-texts");
  EXPECT_TRUE(
      ChooseRow(dock, 1)); // not the long one: the test platform's shell doesn't survive an address of its length
  ASSERT_EQ(1U, installation.WaitForCommandLines(1).size());
  EXPECT_EQ(2 * 40, OpenProviderList(dock));
  EXPECT_TRUE(ChooseRow(dock, 1));
  Click(dock.FieldPoint());
  TypeText(L"q");
  PressKey(VK_RETURN);
  EXPECT_EQ(std::vector<std::wstring>{L"http://short.example/q"}, browser.WaitForAddresses(1));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, UnknownActionWordsDoNothing) {
  const Browser browser(installation);
  installation.WriteDocument(forYouList, {{.head = L"Dance", .actionType = L"dance", .actionParams = L"wildly"}});
  installation.WriteSearchProviders(
      {{.head = L"Sing", .actionType = L"sing", .actionParams = L"http://sing.example/"}});
  ShownDock dock(installation);
  EXPECT_EQ(40 + 40, OpenForYouList(dock));
  EXPECT_TRUE(ChooseRow(dock, 0));
  EXPECT_EQ(40, OpenProviderList(dock));
  EXPECT_TRUE(ChooseRow(dock, 0));
  Click(dock.FieldPoint());
  TypeText(L"q");
  PressKey(VK_RETURN); // the first provider of the list is the one in use, whatever its word
  EXPECT_TRUE(
      HoldsFor([&] { return browser.Addresses().empty() && installation.RecordedCommandLines().empty() && dock.Bar(); },
               std::chrono::milliseconds(700)));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, AMissingPictureGivesTheDefaultOne) {
  Entry entry = WordEntry(L"bare");
  entry.image = L"..\\resources\\nowhere.png";
  installation.WriteDocument(forYouList, {entry});
  ShownDock dock(installation);
  EXPECT_EQ(40 + 40, OpenForYouList(dock));
  EXPECT_TRUE(installation.Logged("nowhere.png loading default image"));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, ACorruptPictureGivesTheDefaultOneAtTheStartAndLater) {
  WriteBytes(installation.ResourcesFolder() + L"\\corrupt.png", "this is no picture at all");
  Entry entry = WordEntry(L"corrupt");
  entry.image = L"..\\resources\\corrupt.png";
  installation.WriteDocument(forYouList, {entry});
  ShownDock dock(installation);
  EXPECT_EQ(40 + 40, OpenForYouList(dock));
  installation.WriteDocument(forYouList, {entry, entry, entry});
  EXPECT_TRUE(WaitFor([&] { return PopupHeight(dock) == 40 + 3 * 40; }));
  EXPECT_TRUE(ChooseRow(dock, 2));
  EXPECT_EQ(1U, installation.WaitForCommandLines(1).size());
  ExpectUsable(dock);
}

} // namespace
} // namespace lumenor::e2e
