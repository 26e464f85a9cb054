// What a screen reader finds: every control of every window, by its role and its name.

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "e2e/Accessible.h"
#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/Installation.h"
#include "e2e/ResetDialog.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

namespace lumenor::e2e {
namespace {

using Controls = std::vector<std::wstring>;

/// For comparisons whose failures print every control, with the letters that the test platform prints.
std::string Lines(const Controls &controls) {
  std::string lines;
  for (const std::wstring &control : controls)
    lines += tests::Utf8(control) + '\n';
  return lines;
}

class AccessibleNames : public ::testing::Test {
protected:
  AccessibleNames() { installation.UseFactoryContent(); }

  const Installation installation;
};

TEST_F(AccessibleNames, OfTheBarAreLabelsOrTips) {
  const ShownDock dock(installation);
  const Controls bar = {L"button Files",
                        L"button Places",
                        L"button System",
                        L"button scroll",
                        L"button Web",
                        L"button Mail",
                        L"button Notepad",
                        L"button Map",
                        L"button Player",
                        L"button scroll",
                        L"field Search",
                        L"button Choose where to search",
                        L"button Search",
                        L"button Reset the bar",
                        L"button Suggestions for you and this computer",
                        L"button The bar is at the top: click to move it to the bottom",
                        L"button Close"};
  const RECT place = dock.BarRect();
  EXPECT_EQ(Lines(ControlsOf(dock.Bar(), true)), Lines(bar))
      << "of a bar from " << place.left << " to " << place.right << ", whose row begins at "
      << RectOf(::GetParent(dock.Control(2000))).left;

  Click(dock.PositionButton());
  EXPECT_TRUE(WaitFor([&] {
    const Controls moved = ControlsOf(dock.Bar(), true);
    return std::count(moved.begin(), moved.end(), L"button The bar is at the bottom: click to move it to the top") == 1;
  })) << "the name of the button that moves it stayed";
}

TEST_F(AccessibleNames, OfTheListsAreThoseOfTheirRows) {
  installation.WriteDocument(
      forYouList,
      {{.head = L"Holidays", .toolTip = L"Plan them"}, {.toolTip = L"Only a tip"}, {.head = L"Bed & breakfast"}});
  const ShownDock dock(installation);
  const auto controlsBehind = [&](POINT button) {
    const Controls controls = ControlsOf(OpenPopup(dock, button));
    Click(dock.Rest());
    EXPECT_TRUE(dock.WaitForNoPopup());
    return Lines(controls);
  };
  EXPECT_EQ(controlsBehind(dock.MainButton(1)),
            Lines({L"button This PC", L"button Documents", L"button Downloads", L"button Pictures", L"button Music",
                   L"button Videos", L"button Recycle Bin"}));
  EXPECT_EQ(
      controlsBehind(dock.MainButton(2)),
      Lines({L"button Health and security", L"button Action Center", L"button Control Panel", L"button Task Manager",
             L"button System Information", L"button Command Prompt", L"button About Windows"}));
  EXPECT_EQ(controlsBehind(dock.ForYouButton()),
            Lines({L"button Holidays", L"button Only a tip", L"button Bed & breakfast"}));
  EXPECT_EQ(controlsBehind(dock.SearchProviderButton()),
            Lines({L"button Wikipedia", L"button Wiktionary", L"button OpenStreetMap", L"button Internet Archive",
                   L"button Help and support"}));
}

TEST_F(AccessibleNames, OfTheResetDialogAreItsLabels) {
  const ShownDock dock(installation);
  EXPECT_EQ(Lines(ControlsOf(OpenResetDialog(dock))), Lines({L"button Reset", L"button Cancel"}));
}

TEST_F(AccessibleNames, OfTheWelcomeScreenAreItsLabelsAndWhetherTheyAreTicked) {
  RemoveDockValue(L"ShowWelcomePage");
  const ShownDock dock(installation);
  EXPECT_EQ(Lines(ControlsOf(AwaitPopup(dock))),
            Lines({L"button Watch the video tour", L"ticked check box Keep the bar up to date automatically",
                   L"button Close", L"ticked check box Show the bar when I sign in"}));
}

} // namespace
} // namespace lumenor::e2e
