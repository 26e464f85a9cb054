// The edge of the screen: the toggle, the registry value, a changed display.

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/ResetDialog.h"
#include "e2e/Screen.h"
#include "e2e/TaskBar.h"
#include "support/DisplayMode.h"

namespace lumenor::e2e {
namespace {

constexpr LONG topEdge = 1;
constexpr LONG bottomEdge = 1024 - 77;

class Edge : public ::testing::Test {
protected:
  Edge() { installation.WriteUsualStubs(); }
  ~Edge() override { tests::ChangeDisplay(nullptr); }

  bool BarComesTo(const DockProcess &dock, LONG top) {
    return WaitFor([&] { return dock.BarRect().top == top; });
  }

  const Installation installation;
};

TEST_F(Edge, ThePositionButtonMovesTheBarDownAndUpAgain) {
  ShownDock dock(installation);
  ASSERT_EQ(topEdge, dock.BarRect().top);

  Click(dock.PositionButton());
  EXPECT_TRUE(BarComesTo(dock, bottomEdge));
  EXPECT_EQ(L"Bottom", DockValue(L"DockPosition"));
  CaptureSettled(dock.BarRect());
  SaveShot("edge-bottom");

  Click(dock.PositionButton());
  EXPECT_TRUE(BarComesTo(dock, topEdge));
  EXPECT_EQ(L"Top", DockValue(L"DockPosition"));
}

TEST_F(Edge, AnotherProgramThatWritesTheValueMovesTheBar) {
  ShownDock dock(installation);
  SetDockValue(L"DockPosition", L"Bottom");
  EXPECT_TRUE(BarComesTo(dock, bottomEdge));
  SetDockValue(L"DockPosition", L"Top");
  EXPECT_TRUE(BarComesTo(dock, topEdge));
}

TEST_F(Edge, AValueOfLeftStartsAtTheTopAndALaterChangeToItMovesToTheBottom) {
  SetDockValue(L"DockPosition", L"Left");
  ShownDock dock(installation);
  ASSERT_EQ(topEdge, dock.BarRect().top);
  SetDockValue(L"DockPosition", L"Right");
  EXPECT_TRUE(BarComesTo(dock, bottomEdge));
}

TEST_F(Edge, AnotherValueInTheKeyMovesNothing) {
  ShownDock dock(installation);
  SetDockValue(L"SomethingElse", L"Bottom");
  EXPECT_TRUE(HoldsFor([&] { return dock.BarRect().top == topEdge; }, std::chrono::milliseconds(700)));
}

TEST_F(Edge, ASmallerDisplayPlacesTheBarAnew) {
  ShownDock dock(installation);
  MoveCursor({500, 400}); // the server of the test platform doesn't survive a cursor that the new display lacks
  ASSERT_EQ(DISP_CHANGE_SUCCESSFUL, tests::MakeDisplaySmall());

  EXPECT_TRUE(WaitFor([&] { return StandsAt(dock.Bar(), {512 - 347, 1, 512 + 347, 78}); }));
  CaptureSettled(dock.BarRect());
  SaveShot("edge-1024");

  const HWND dialog = OpenResetDialog(dock);
  EXPECT_TRUE(StandsAt(dialog, {512 - 200, 77, 512 + 200, 249})) << "in the middle of the new display";
}

TEST_F(Edge, TheBarStandsUnderATaskBarAtTheTop) {
  constexpr RECT taskBarArea = {0, 0, 1280, 40};
  const TaskBar taskBar(taskBarArea);
  ShownDock dock(installation);
  EXPECT_TRUE(StandsAt(dock.Bar(), {190, 40, 1090, 117}));
  SaveShot("edge-task-bar");

  Click(dock.PositionButton());
  EXPECT_TRUE(BarComesTo(dock, bottomEdge));
  Click(dock.PositionButton());
  EXPECT_TRUE(BarComesTo(dock, taskBarArea.bottom));
}

// Run where the work area ends 40 above the screen's end.
TEST(SmallWorkArea, ABarAtTheBottomStandsOnItsEnd) {
  RECT workArea = {};
  ASSERT_TRUE(::SystemParametersInfoW(SPI_GETWORKAREA, 0, &workArea, 0));
  ASSERT_EQ(984, workArea.bottom);
  const Installation installation;
  installation.WriteUsualStubs();
  SetDockValue(L"DockPosition", L"Bottom");
  ShownDock dock(installation);
  const auto stands = [&] { return StandsAt(dock.Bar(), {190, 984 - 77, 1090, 984}); };
  EXPECT_TRUE(stands());
  SaveShot("edge-work-area");

  Click(dock.PositionButton());
  EXPECT_TRUE(WaitFor([&] { return dock.BarRect().top == topEdge; }));
  Click(dock.PositionButton());
  EXPECT_TRUE(WaitFor(stands));
  tests::ChangeDisplay(nullptr); // which has the bar placed anew
  EXPECT_TRUE(HoldsFor(stands, std::chrono::milliseconds(500)));
}

} // namespace
} // namespace lumenor::e2e
