// Hovering, clicking, and the flyout of an "xml" button.

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/OtherWindow.h"
#include "e2e/Screen.h"

namespace lumenor::e2e {
namespace {

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
      installation.WriteStub(L"xx_xx", flyoutDocument, i,
                             {.head = L"Entry " + std::to_wstring(i),
                              .actionType = L"exe",
                              .actionParams = L"\"" + installation.Recorder() + L"\" entry " + std::to_wstring(i),
                              .position = i});
  }

  const Installation installation;
};

TEST_F(Buttons, HoverShowsTheHaloAndTheToolTipAndLeavingTakesThemAway) {
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
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
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  Click(dock.MainButton(1));
  ASSERT_TRUE(WaitFor([&] { return installation.RecordedCommandLines().size() == 1; }));
  EXPECT_EQ(L"\"" + installation.Recorder() + L"\" fixed 1", installation.RecordedCommandLines()[0]);

  Click(dock.UserButton(0));
  ASSERT_TRUE(WaitFor([&] { return installation.RecordedCommandLines().size() == 2; }));
  EXPECT_EQ(L"\"" + installation.Recorder() + L"\" user 0", installation.RecordedCommandLines()[1]);
}

TEST_F(Buttons, APressThatIsReleasedElsewhereStartsNothing) {
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  MoveCursor(dock.MainButton(1));
  PressLeftButton();
  MoveCursor(farAway);
  ReleaseLeftButton();
  EXPECT_TRUE(HoldsFor([&] { return installation.RecordedCommandLines().empty(); }, std::chrono::milliseconds(700)));
  EXPECT_TRUE(dock.IsRunning());
}

TEST_F(Buttons, AnXmlButtonOpensItsFlyoutBelowTheBarAndAClickElsewhereClosesIt) {
  MakeFlyoutButton(3);
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());

  Click(dock.MainButton(0));

  const HWND popup = dock.WaitForPopup();
  ASSERT_NE(nullptr, popup);
  const RECT flyout = RectOf(popup);
  const RECT expected = {190, 80, 430, 80 + 4 * 40};
  EXPECT_TRUE(::EqualRect(&expected, &flyout))
      << flyout.left << ' ' << flyout.top << ' ' << flyout.right << ' ' << flyout.bottom;
  SaveShot("flyout-top");

  const OtherWindow other({600, 500, 900, 700});
  Click({700, 600});
  EXPECT_TRUE(WaitFor([&] { return dock.Popups().empty(); }));
}

TEST_F(Buttons, AtTheBottomEdgeTheFlyoutOpensAboveTheBar) {
  MakeFlyoutButton(3);
  SetDockValue(L"DockPosition", L"Bottom");
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  ASSERT_EQ(1024 - 77, dock.BarRect().top);

  Click(dock.MainButton(0));

  const HWND popup = dock.WaitForPopup();
  ASSERT_NE(nullptr, popup);
  const RECT flyout = RectOf(popup);
  const RECT expected = {190, 1024 - 77 - 2 - 160, 430, 1024 - 77 - 2};
  EXPECT_TRUE(::EqualRect(&expected, &flyout))
      << flyout.left << ' ' << flyout.top << ' ' << flyout.right << ' ' << flyout.bottom;
  SaveShot("flyout-bottom");
}

TEST_F(Buttons, AnEntryOfTheFlyoutHidesItAndStartsItsProgram) {
  MakeFlyoutButton(2);
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  Click(dock.MainButton(0));
  const HWND popup = dock.WaitForPopup();
  ASSERT_NE(nullptr, popup);
  const RECT flyout = RectOf(popup);

  Click({flyout.left + 100, flyout.top + 40 + 40 + 20});

  EXPECT_TRUE(WaitFor([&] { return dock.Popups().empty(); }));
  ASSERT_TRUE(WaitFor([&] { return installation.RecordedCommandLines().size() == 1; }));
  EXPECT_EQ(L"\"" + installation.Recorder() + L"\" entry 1", installation.RecordedCommandLines()[0]);
}

TEST_F(Buttons, ATargetThatVanishedWhileItsPictureStaysMakesAButtonThatStartsNothing) {
  installation.WriteStub(L"enu_us", userDocument, 0,
                         {.head = L"Gone", .actionType = L"exe", .actionParams = L"C:\\gone\\gone.exe", .position = 0});
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  Click(dock.UserButton(0));
  EXPECT_TRUE(HoldsFor([&] { return dock.IsRunning() && dock.Popups().empty(); }, std::chrono::milliseconds(700)));
}

} // namespace
} // namespace lumenor::e2e
