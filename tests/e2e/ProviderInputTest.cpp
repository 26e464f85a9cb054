// Lists that are not as they should be: the bar comes up, shows what can be shown, and stays usable.

#include <algorithm>

#include <gtest/gtest.h>

#include "e2e/Browser.h"
#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/Screen.h"

namespace lumenor::e2e {
namespace {

using std::chrono::seconds;

constexpr char malformed[] = "<?xml version=\"1.0\"?><UIRoot><Lumenor.MainFrame";

class ProviderInput : public ::testing::Test {
protected:
  ProviderInput() { installation.WriteUsualStubs(); }

  std::wstring ForYouPath() const { return installation.DocumentPath(forYouList); }

  Entry RecorderEntry(const std::wstring &word) const {
    return {.head = word, .actionType = L"exe", .actionParams = L"\"" + installation.Recorder() + L"\" " + word};
  }

  /// Opens the For You list and tells its height; 0 when it doesn't open.
  static LONG OpenForYou(DockProcess &dock) {
    Click(dock.ForYouButton());
    const HWND popup = dock.WaitForPopup();
    return popup == nullptr ? 0 : RectOf(popup).bottom - RectOf(popup).top;
  }

  /// The height of the list that is open; 0 without one.
  static LONG PopupHeight(const DockProcess &dock) {
    const std::vector<HWND> popups = dock.Popups();
    return popups.empty() ? 0 : RectOf(popups[0]).bottom - RectOf(popups[0]).top;
  }

  static LONG OpenProviders(DockProcess &dock) {
    Click(dock.SearchProviderButton());
    const HWND popup = dock.WaitForPopup();
    return popup == nullptr ? 0 : RectOf(popup).bottom - RectOf(popup).top;
  }

  void ClickRow(DockProcess &dock, int row) {
    const RECT flyout = RectOf(dock.Popups().at(0));
    Click({flyout.left + 100, flyout.top + row * 40 + 20});
    EXPECT_TRUE(WaitFor([&] { return dock.Popups().empty(); }));
  }

  /// A button of the bar still answers, and the dock ends as it should.
  void ExpectUsable(DockProcess &dock) {
    const std::size_t before = installation.RecordedCommandLines().size();
    Click(dock.MainButton(1));
    EXPECT_TRUE(WaitFor([&] { return installation.RecordedCommandLines().size() == before + 1; }));
    Click(dock.CloseButton());
    EXPECT_EQ(0u, dock.WaitForExit());
  }

  bool Logged(const std::string &text) const {
    const auto lines = installation.LogLines();
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string &line) { return line.find(text) != std::string::npos; });
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
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  EXPECT_EQ(40, OpenForYou(dock));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, FilesOfNoBytesAreEmptyLists) {
  installation.WriteDocument(forYouList, {});
  WriteBytes(ForYouPath(), "");
  installation.WriteRawSearchProviders("");
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  EXPECT_EQ(40, OpenForYou(dock));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, AMalformedListWhileTheBarStandsKeepsTheLastOne) {
  installation.WriteDocument(forYouList, {RecorderEntry(L"one"), RecorderEntry(L"two")});
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  const int readings = installation.ForYouReadings();
  WriteBytes(ForYouPath(), malformed);
  ASSERT_TRUE(WaitFor([&] { return installation.ForYouReadings() >= readings + 2; }));
  EXPECT_EQ(40 + 2 * 40, OpenForYou(dock));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, AListWithoutEntriesEmptiesTheOneThatIsShown) {
  installation.WriteDocument(forYouList, {RecorderEntry(L"one"), RecorderEntry(L"two")});
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  ASSERT_EQ(40 + 2 * 40, OpenForYou(dock));
  installation.WriteDocument(forYouList, {});
  EXPECT_TRUE(WaitFor([&] { return PopupHeight(dock) == 40; }));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, OfTenThousandEntriesTheFirstFiveAreShown) {
  std::vector<Entry> entries, providers;
  for (int i = 0; i < 10000; ++i) {
    entries.push_back({.head = L"n" + std::to_wstring(i),
                       .actionType = L"exe",
                       .actionParams = L"\"" + installation.Recorder() + L"\" n" + std::to_wstring(i)});
    providers.push_back(
        {.head = L"p" + std::to_wstring(i), .actionType = L"url", .actionParams = L"http://p.example/"});
  }
  installation.WriteDocument(forYouList, entries);
  installation.WriteSearchProviders(providers);
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  WaitUntilIdle(dock); // the documents of the first start were written into the watched folder
  EXPECT_EQ(5 * 40, OpenProviders(dock));
  ClickRow(dock, 4);
  EXPECT_EQ(40 + 5 * 40, OpenForYou(dock));
  ClickRow(dock, 5);
  ASSERT_TRUE(WaitFor([&] { return installation.RecordedCommandLines().size() == 1; }));
  EXPECT_TRUE(installation.RecordedCommandLines()[0].ends_with(L" n4"));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, TextsOf64KilobytesAreShownAsFarAsTheyFit) {
  const std::wstring longText(64 * 1024, L'w');
  const Browser browser(installation);
  installation.WriteDocument(
      forYouList,
      {{.head = longText, .actionType = L"exe", .actionParams = longText, .image = longText, .toolTip = longText},
       RecorderEntry(L"short")});
  installation.WriteSearchProviders(
      {{.head = longText, .actionType = L"url", .actionParams = L"http://long.example/" + longText},
       {.head = L"Short", .actionType = L"url", .actionParams = L"http://short.example/"}});
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  EXPECT_EQ(40 + 2 * 40, OpenForYou(dock));
  SaveShot("long-texts");
  ClickRow(dock, 2); // not the long one: the test platform's shell doesn't survive an address of its length
  ASSERT_TRUE(WaitFor([&] { return installation.RecordedCommandLines().size() == 1; }));
  EXPECT_EQ(2 * 40, OpenProviders(dock));
  ClickRow(dock, 1);
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
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  EXPECT_EQ(40 + 40, OpenForYou(dock));
  ClickRow(dock, 1);
  EXPECT_EQ(40, OpenProviders(dock));
  ClickRow(dock, 0);
  Click(dock.FieldPoint());
  TypeText(L"q");
  PressKey(VK_RETURN); // the first provider of the list is the one in use, whatever its word
  EXPECT_TRUE(
      HoldsFor([&] { return browser.Addresses().empty() && installation.RecordedCommandLines().empty() && dock.Bar(); },
               std::chrono::milliseconds(700)));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, AMissingPictureGivesTheDefaultOne) {
  Entry entry = RecorderEntry(L"bare");
  entry.image = L"..\\resources\\nowhere.png";
  installation.WriteDocument(forYouList, {entry});
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  EXPECT_EQ(40 + 40, OpenForYou(dock));
  EXPECT_TRUE(Logged("nowhere.png loading default image"));
  ExpectUsable(dock);
}

TEST_F(ProviderInput, APictureThatIsNoneGivesTheDefaultOneAtTheStartAndLater) {
  WriteBytes(installation.ResourcesFolder() + L"\\corrupt.png", "this is no picture at all");
  Entry entry = RecorderEntry(L"corrupt");
  entry.image = L"..\\resources\\corrupt.png";
  installation.WriteDocument(forYouList, {entry});
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  EXPECT_EQ(40 + 40, OpenForYou(dock));
  installation.WriteDocument(forYouList, {entry, entry, entry});
  EXPECT_TRUE(WaitFor([&] { return PopupHeight(dock) == 40 + 3 * 40; }));
  ClickRow(dock, 3);
  EXPECT_TRUE(WaitFor([&] { return installation.RecordedCommandLines().size() == 1; }));
  ExpectUsable(dock);
}

} // namespace
} // namespace lumenor::e2e
