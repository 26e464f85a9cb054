// Hovering, clicking, and the flyout of an "xml" button.

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/OtherWindow.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

namespace lumenor::e2e {
namespace {

using Texts = std::vector<std::wstring>;

constexpr wchar_t flyoutDocument[] = L"Lumenor.MainFrame.Windows.DockViewWindow.Tools";
constexpr POINT farAway = {640, 600};

class Buttons : public ::testing::Test {
protected:
  Buttons() {
    installation.WriteUsualStubs();
    MoveCursor(farAway);
  }

  /// Makes the first fixed button open a flyout of `count` entries.
  void MakeFlyoutButton(int count) {
    installation.WriteStub(L"enu_us", mainDocument, 0,
                           {.head = L"Tools", .actionType = L"xml", .actionParams = flyoutDocument, .position = 0});
    for (int i = 0; i < count; ++i)
      installation.WriteStub(
          L"xx_xx", flyoutDocument, i,
          installation.RecorderEntry(L"Entry " + std::to_wstring(i), L"entry " + std::to_wstring(i), i));
  }

  const Installation installation;
};

/// What a user does as soon as the window is there, which is before the bar has made its tips and flyouts.
class FirstInstant : public Buttons {
protected:
  /// Waits for the window and not for what it shows. The button that the input is for is at its place from then on.
  static bool WaitForWindow(const DockProcess &dock) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (dock.Bar() == nullptr)
      if (std::chrono::steady_clock::now() > end)
        return false;
    return true;
  }
};

TEST_F(FirstInstant, AClickOpensTheFlyoutWithItsRows) {
  MakeFlyoutButton(2);
  DockProcess dock(installation);
  ASSERT_TRUE(WaitForWindow(dock));

  ClickAtOnce(dock.MainButton(0));

  EXPECT_TRUE(StandsAt(AwaitPopup(dock), FlyoutBelow(dock, 3)));
  EXPECT_TRUE(ChooseRow(dock, 1));
  EXPECT_EQ(Texts{installation.RecorderCommand(L"entry 1")}, installation.WaitForCommandLines(1));
}

TEST_F(FirstInstant, ACursorThatRestsOnAButtonGetsItsToolTip) {
  DockProcess dock(installation);
  ASSERT_TRUE(WaitForWindow(dock));

  MoveCursor(dock.MainButton(0));

  EXPECT_TRUE(WaitFor([&] { return dock.ToolTip() != nullptr; }));
  MoveCursor(farAway);
}

TEST_F(Buttons, HoverShowsTheHaloAndTheToolTipAndLeavingTakesThemAway) {
  ShownDock dock(installation);
  const RECT button = RectOf(dock.Control(1000));
  // The picture is inset by 22 and 16; the halo reaches 4 beyond it.
  const RECT halo = {button.left + 18, button.top + 12, button.right - 19, button.top + 16};
  const Picture idle = CaptureSettled(halo);

  MoveCursor(Center(button));

  EXPECT_TRUE(WaitFor([&] { return Capture(halo).Differences(idle) > 20; }));
  EXPECT_TRUE(WaitFor([&] { return dock.ToolTip() != nullptr; }));
  SaveShot("hover");

  MoveCursor(farAway);
  EXPECT_TRUE(WaitFor([&] { return Capture(halo) == idle; }));
  EXPECT_TRUE(WaitFor([&] { return dock.ToolTip() == nullptr; }));
}

TEST_F(Buttons, AClickStartsTheProgramWithTheStoredArguments) {
  ShownDock dock(installation);
  const std::wstring fixed = installation.RecorderCommand(L"fixed 1"), user = installation.RecorderCommand(L"user 0");
  Click(dock.MainButton(1));
  EXPECT_EQ(Texts{fixed}, installation.WaitForCommandLines(1));

  Click(dock.UserButton(0));
  EXPECT_EQ((Texts{fixed, user}), installation.WaitForCommandLines(2));
}

TEST_F(Buttons, APressThatIsReleasedElsewhereStartsNothing) {
  ShownDock dock(installation);
  MoveCursor(dock.MainButton(1));
  PressLeftButton();
  MoveCursor(farAway);
  ReleaseLeftButton();
  EXPECT_TRUE(HoldsFor([&] { return installation.RecordedCommandLines().empty(); }, std::chrono::milliseconds(700)));
  EXPECT_TRUE(dock.IsRunning());
}

TEST_F(Buttons, AnXmlButtonOpensItsFlyoutBelowTheBarAndAClickElsewhereClosesIt) {
  MakeFlyoutButton(3);
  ShownDock dock(installation);

  const HWND flyout = OpenPopup(dock, dock.MainButton(0));

  EXPECT_TRUE(StandsAt(flyout, FlyoutBelow(dock, 4)));
  SaveShot("flyout-top");

  const OtherWindow other({600, 500, 900, 700});
  Click({700, 600});
  EXPECT_TRUE(dock.WaitForNoPopup());
}

TEST_F(Buttons, AtTheBottomEdgeTheFlyoutOpensAboveTheBar) {
  MakeFlyoutButton(3);
  SetDockValue(L"DockPosition", L"Bottom");
  ShownDock dock(installation);
  ASSERT_EQ(::GetSystemMetrics(SM_CYSCREEN) - Scaled(77), dock.BarRect().top);

  const HWND flyout = OpenPopup(dock, dock.MainButton(0));

  EXPECT_TRUE(StandsAt(flyout, FlyoutAbove(dock, 4)));
  SaveShot("flyout-bottom");
}

TEST_F(Buttons, AnEntryOfTheFlyoutHidesItAndStartsItsProgram) {
  MakeFlyoutButton(2);
  ShownDock dock(installation);
  OpenPopup(dock, dock.MainButton(0));

  EXPECT_TRUE(ChooseRow(dock, 1));

  EXPECT_EQ(Texts{installation.RecorderCommand(L"entry 1")}, installation.WaitForCommandLines(1));
}

TEST_F(Buttons, ATargetThatVanishedWhileItsPictureStaysMakesAButtonThatStartsNothing) {
  installation.WriteStub(L"enu_us", userDocument, 0,
                         {.head = L"Gone", .actionType = L"exe", .actionParams = L"C:\\gone\\gone.exe", .position = 0});
  ShownDock dock(installation);
  Click(dock.UserButton(0));
  EXPECT_TRUE(HoldsFor([&] { return dock.IsRunning() && dock.Popups().empty(); }, std::chrono::milliseconds(700)));
}

} // namespace
} // namespace lumenor::e2e
