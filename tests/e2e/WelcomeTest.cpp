// The welcome screen: when it comes, and what closing it stores.

#include <algorithm>

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

namespace lumenor::e2e {
namespace {

constexpr wchar_t welcomeValue[] = L"ShowWelcomePage";

class Welcome : public ::testing::Test {
protected:
  Welcome() {
    RemoveDockValue(welcomeValue);
    installation.WriteUsualStubs();
  }

  /// The places of the buttons on the dialog, in the order on the screen from top to bottom and then left to right.
  static std::vector<RECT> ButtonsOf(HWND dialog) {
    std::vector<RECT> buttons;
    ::EnumChildWindows(
        dialog,
        [](HWND window, LPARAM parameter) -> BOOL {
          if ((::SendMessageW(window, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON) != 0)
            reinterpret_cast<std::vector<RECT> *>(parameter)->push_back(RectOf(window));
          return TRUE;
        },
        reinterpret_cast<LPARAM>(&buttons));
    std::sort(buttons.begin(), buttons.end(), [](const RECT &a, const RECT &b) { return a.top < b.top; });
    return buttons; // the tour's, the box for updates, the close button, the box for the start
  }

  static POINT CloseButton(HWND dialog) { return Center(ButtonsOf(dialog).at(2)); }

  /// Where a check box has its box.
  static POINT BoxOf(const RECT &checkBox) { return {checkBox.left + 8, (checkBox.top + checkBox.bottom) / 2}; }
  static POINT UpdateCheckBox(HWND dialog) { return BoxOf(ButtonsOf(dialog).at(1)); }
  static POINT StartupCheckBox(HWND dialog) { return BoxOf(ButtonsOf(dialog).at(3)); }

  /// Starts the dock and closes it again, which works only while no dialog is open.
  void RunOnce() {
    ShownDock dock(installation);
    EXPECT_TRUE(HoldsFor([&] { return dock.Popups().empty(); }, std::chrono::milliseconds(500)));
    ASSERT_EQ(0U, CloseByButton(dock));
  }

  /// Starts the dock, closes the welcome screen, and closes the dock.
  void RunWithWelcome() {
    ShownDock dock(installation);
    const HWND dialog = AwaitPopup(dock);
    Click(CloseButton(dialog));
    ASSERT_TRUE(dock.WaitForNoPopup());
    ASSERT_EQ(0U, CloseByButton(dock));
  }

  const Installation installation;
};

TEST_F(Welcome, ComesAtTheFirstStartOnly) {
  RunWithWelcome();
  EXPECT_EQ(L"0", DockValue(welcomeValue));
  RunOnce();
  EXPECT_EQ(L"0", DockValue(welcomeValue));
}

TEST_F(Welcome, ComesAgainForAValueOfOneAndForNoOther) {
  SetDockValue(welcomeValue, L"1");
  RunWithWelcome();
  EXPECT_EQ(L"0", DockValue(welcomeValue));
  SetDockValue(welcomeValue, L"yes");
  RunOnce();
  EXPECT_EQ(L"yes", DockValue(welcomeValue));
}

TEST_F(Welcome, ComesWhereTheKeyWasMissingSinceTheDockStoresItsIdThere) {
  ASSERT_EQ(ERROR_SUCCESS, ::RegDeleteTreeW(HKEY_CURRENT_USER, L"SOFTWARE\\Tarnwick"));
  RunWithWelcome();
  EXPECT_EQ(L"0", DockValue(welcomeValue));
  EXPECT_NE(std::nullopt, DockValue(L"AppID"));
}

TEST_F(Welcome, IsNotedAsShownWhileItStands) {
  ShownDock dock(installation);
  AwaitPopup(dock);
  EXPECT_EQ(L"0", DockValue(welcomeValue));
}

TEST_F(Welcome, StandsBelowTheMiddleOfTheBarAndBlocksIt) {
  ShownDock dock(installation);
  const HWND dialog = AwaitPopup(dock);
  EXPECT_TRUE(StandsAt(dialog, {260, 77, 1020, 527}));
  SaveShot("welcome");

  Click(dock.CloseButton());

  EXPECT_TRUE(HoldsFor([&] { return dock.IsRunning() && ::IsWindow(dialog); }, std::chrono::milliseconds(500)));
}

TEST_F(Welcome, ClosingItAsItComesStoresBothSettings) {
  ShownDock dock(installation);
  const HWND dialog = AwaitPopup(dock);
  EXPECT_EQ(std::nullopt, StartupValue());
  EXPECT_EQ(std::nullopt, DockValue(L"AllowToUpdate"));

  Click(CloseButton(dialog));

  ASSERT_TRUE(dock.WaitForNoPopup());
  EXPECT_EQ(installation.DockExe(), StartupValue());
  EXPECT_EQ(L"true", DockValue(L"AllowToUpdate")); // the prefix is in the United States
}

TEST_F(Welcome, ClosingItWithBothBoxesClearedStoresThat) {
  ShownDock dock(installation);
  const HWND dialog = AwaitPopup(dock);
  Click(UpdateCheckBox(dialog));
  Click(StartupCheckBox(dialog));

  Click(CloseButton(dialog));

  ASSERT_TRUE(dock.WaitForNoPopup());
  EXPECT_EQ(std::nullopt, StartupValue());
  EXPECT_EQ(L"false", DockValue(L"AllowToUpdate"));
}

TEST_F(Welcome, OpensTheTourAndStays) {
  installation.InstallTour();
  ShownDock dock(installation);
  const HWND dialog = AwaitPopup(dock);

  Click(Center(ButtonsOf(dialog).at(0)));

  const std::vector<std::wstring> lines = installation.WaitForCommandLines(1);
  ASSERT_EQ(1U, lines.size());
  const std::wstring &line = lines[0];
  EXPECT_NE(std::wstring::npos, line.find(L"\\LumenorVideo\\doc.exe"));
  EXPECT_TRUE(line.ends_with(L" en_us")) << std::string(line.begin(), line.end());
  EXPECT_TRUE(::IsWindow(dialog));
  EXPECT_EQ(std::nullopt, StartupValue());
}

} // namespace
} // namespace lumenor::e2e
