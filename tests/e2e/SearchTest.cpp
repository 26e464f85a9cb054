// Searching: what is opened, and with which provider.

#include <cstdlib>

#include <gtest/gtest.h>

#include "e2e/Browser.h"
#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

namespace lumenor::e2e {
namespace {

using Texts = std::vector<std::wstring>;
using Addresses = std::vector<std::wstring>;

class Search : public ::testing::Test {
protected:
  Search() {
    installation.WriteUsualStubs();
    installation.WriteSearchProviders(
        {{.head = L"First place", .actionType = L"url", .actionParams = L"http://first.example/find?q="},
         {.head = L"Second place", .actionType = L"url", .actionParams = L"https://second.example/?a=b&q="},
         {.head = L"Help of this machine", .actionType = L"helpSearch"},
         installation.RecorderEntry(L"A program", L"provider")});
    ::SetEnvironmentVariableW(L"LUMENOR_HELP_RECORD", HelpRecord().c_str());
  }
  ~Search() override { ::SetEnvironmentVariableW(L"LUMENOR_HELP_RECORD", nullptr); }

  std::wstring HelpRecord() const { return installation.LogFolder() + L"\\helped.txt"; }

  const Installation installation;
  const Browser browser{installation};
};

TEST_F(Search, ReturnOpensTheAddressOncePerPress) {
  ShownDock dock(installation);
  EnterText(dock, L"\u00e4 b&c/100%");

  PressKey(VK_RETURN);
  const std::wstring address = L"http://first.example/find?q=%c3%a4%20b%26c/100%";
  EXPECT_EQ(Addresses{address}, browser.WaitForAddresses(1));
  PressKey(VK_RETURN);
  EXPECT_EQ((Addresses{address, address}), browser.WaitForAddresses(2));

  EXPECT_TRUE(HoldsFor([&] { return browser.Addresses().size() == 2; }, std::chrono::milliseconds(500)));
  EXPECT_EQ(L"\u00e4 b&c/100%", dock.FieldText()) << "the field keeps its text";
}

TEST_F(Search, TheSearchButtonOpensTheAddress) {
  ShownDock dock(installation);
  EnterText(dock, L"x\xD83D\xDE00");
  Click(dock.SearchButton());
  EXPECT_EQ(Addresses{L"http://first.example/find?q=x%f0%9f%98%80"}, browser.WaitForAddresses(1));
  EXPECT_TRUE(HoldsFor([&] { return browser.Addresses().size() == 1; }, std::chrono::milliseconds(500)));
}

TEST_F(Search, ALongAddressReachesTheBrowserAndTheDockLivesOn) {
  ShownDock dock(installation);
  EnterText(dock, std::wstring(109, L'\u691c'));
  PressKey(VK_RETURN);

  std::wstring address = L"http://first.example/find?q=";
  for (int i = 0; i < 109; ++i)
    address += L"%e6%a4%9c";
  EXPECT_EQ(Addresses{address}, browser.WaitForAddresses(1));
  EXPECT_TRUE(dock.IsRunning());
  EXPECT_NE(nullptr, dock.Bar());
}

TEST_F(Search, AnEmptyFieldOpensNothing) {
  ShownDock dock(installation);
  Click(dock.FieldPoint());
  PressKey(VK_RETURN);
  Click(dock.SearchButton());
  EXPECT_TRUE(HoldsFor([&] { return browser.Addresses().empty(); }, std::chrono::milliseconds(700)));
}

TEST_F(Search, WithoutAProviderATextOpensNothing) {
  installation.WriteSearchProviders({});
  ShownDock dock(installation);
  EnterText(dock, L"text");
  PressKey(VK_RETURN);
  EXPECT_TRUE(
      HoldsFor([&] { return browser.Addresses().empty() && dock.Bar() != nullptr; }, std::chrono::milliseconds(700)));
}

TEST_F(Search, TheListOfProvidersOpensUnderTheFieldWithoutATitle) {
  ShownDock dock(installation);
  const HWND list = OpenSearchProviders(dock);
  const RECT bar = dock.BarRect();
  EXPECT_TRUE(StandsAt(list, FlyoutAt(bar.right - Scaled(95), bar.top + Scaled(51), 4)));
  SaveShot("providers");
}

TEST_F(Search, AChosenProviderChangesThePromptAndTheNextSearch) {
  ShownDock dock(installation);
  const Picture firstPrompt = CaptureSettled(dock.FieldRect());

  ChooseProvider(dock, 1);
  EXPECT_TRUE(WaitFor([&] { return Capture(dock.FieldRect()).Differences(firstPrompt) > 10; }));
  ChooseProvider(dock, 0);
  EXPECT_TRUE(WaitFor([&] { return Capture(dock.FieldRect()) == firstPrompt; }));
  ChooseProvider(dock, 1);

  EnterText(dock, L"late");
  PressKey(VK_RETURN);
  EXPECT_EQ(Addresses{L"https://second.example/?a=b&q=late"}, browser.WaitForAddresses(1));
}

TEST_F(Search, AProviderThatIsAProgramRunsAndChangesNoProvider) {
  ShownDock dock(installation);
  ChooseProvider(dock, 3);
  EXPECT_EQ(Texts{installation.RecorderCommand(L"provider")}, installation.WaitForCommandLines(1));
  EnterText(dock, L"still");
  PressKey(VK_RETURN);
  EXPECT_EQ(Addresses{L"http://first.example/find?q=still"}, browser.WaitForAddresses(1));
}

TEST_F(Search, TheHelpSearchHandsTheTrimmedTextToTheHelpPane) {
  ShownDock dock(installation);
  ChooseProvider(dock, 2);
  EnterText(dock, L"  my printer ");
  PressKey(VK_RETURN);
  EXPECT_TRUE(WaitFor([&] { return ReadBytes(HelpRecord()).find("my printer") != std::string::npos; }));
  EXPECT_EQ(std::string::npos, ReadBytes(HelpRecord()).find("  my printer"));
  EXPECT_NE(nullptr, dock.Bar());
  EXPECT_TRUE(browser.Addresses().empty());
}

TEST_F(Search, TheFactoryProvidersSearchTheEncyclopediaFirst) {
  installation.UseFactorySearchProviders();
  ShownDock dock(installation);
  EnterText(dock, L"bar");
  PressKey(VK_RETURN);
  EXPECT_EQ(Addresses{L"https://en.wikipedia.org/w/index.php?search=bar"}, browser.WaitForAddresses(1));
}

} // namespace
} // namespace lumenor::e2e
