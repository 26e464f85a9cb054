// The row of user buttons, longer than its viewport, and its two arrows.

#include <algorithm>
#include <utility>

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/Screen.h"

namespace lumenor::e2e {
namespace {

constexpr LONG buttonPitch = 77 + 4;
constexpr LONG viewportWidth =
    900 - 3 * 77 - 2 - 204 - 2; // beside three fixed buttons, two splitters and the fixed end
constexpr LONG step = 77;
constexpr LONG rightmost = viewportWidth - 30 * buttonPitch; // where a row of thirty stands at its right end

class Scroll : public ::testing::Test {
protected:
  Scroll() {
    installation.WriteUsualStubs();
    std::vector<Entry> entries;
    for (int i = 0; i < 30; ++i)
      entries.push_back(
          installation.RecorderEntry(L"Number " + std::to_wstring(i), L"number " + std::to_wstring(i), i));
    installation.WriteDocument(userDocument, entries);
  }

  /// A click somewhere else on the arrow than the one before: two on one spot are a double click.
  void ClickArrow(HWND arrow) {
    const POINT middle = Center(RectOf(arrow));
    spot = spot == 10 ? -10 : 10;
    ClickAtOnce({middle.x, middle.y + spot});
  }

  bool RowComesTo(const DockProcess &dock, LONG left) {
    return WaitFor([&] { return dock.RowLeft() == left; });
  }

  /// Where the row stands once it hasn't moved for longer than a slide takes.
  static LONG WhereTheRowRests(const DockProcess &dock) {
    LONG place = dock.RowLeft();
    const auto isMoving = [&] {
      const LONG now = dock.RowLeft();
      return std::exchange(place, now) != now;
    };
    EXPECT_TRUE(WaitFor([&] { return HoldsFor([&] { return !isMoving(); }, std::chrono::milliseconds(700)); }));
    return place;
  }

  const Installation installation;
  LONG spot = 10;
};

TEST_F(Scroll, ThirtyButtonsGoToBothEndsAndBackByTheArrows) {
  ShownDock dock(installation);
  EXPECT_EQ(0, dock.RowLeft());
  EXPECT_EQ(nullptr, dock.LeftArrow());

  LONG place = 0;
  while (dock.RightArrow() != nullptr && place > rightmost) {
    place = std::max(place - step, rightmost);
    ClickArrow(dock.RightArrow());
    ASSERT_TRUE(RowComesTo(dock, place)) << "at " << dock.RowLeft() << " instead of " << place;
    ASSERT_TRUE(WaitFor([&] { return dock.LeftArrow() != nullptr; }));
  }
  EXPECT_EQ(rightmost, place);
  EXPECT_TRUE(WaitFor([&] { return dock.RightArrow() == nullptr; }));
  SaveShot("scrolled");

  Click(dock.UserButton(29));
  EXPECT_EQ(1U, installation.WaitForCommandLines(1).size());

  while (dock.LeftArrow() != nullptr && place < 0) {
    place = std::min(place + step, 0L);
    ClickArrow(dock.LeftArrow());
    ASSERT_TRUE(RowComesTo(dock, place)) << "at " << dock.RowLeft() << " instead of " << place;
  }
  EXPECT_EQ(0, place);
  EXPECT_TRUE(WaitFor([&] { return dock.LeftArrow() == nullptr && dock.RightArrow() != nullptr; }));
}

TEST_F(Scroll, TheScreenShowsTheRowWhereItsWindowsStand) {
  ShownDock dock(installation);
  const RECT first = RectOf(dock.Control(2001)),
             icon = {first.left + 22, first.top + 16, first.right - 23, first.bottom - 29};
  const Picture before = CaptureSettled(icon);

  ClickArrow(dock.RightArrow());
  ASSERT_TRUE(RowComesTo(dock, -step));

  // The same picture, a step to the left.
  EXPECT_TRUE(WaitFor([&] { return Capture({icon.left - step, icon.top, icon.right - step, icon.bottom}) == before; }));
}

// On a busy machine a slide may be over before the click that was meant to come during it, or be seen at its end only.
// Then there were two slides, one after the other, which is as far as two clicks can move the row, and the test tries
// again.
TEST_F(Scroll, AClickDuringTheSlideStartsFromWhereTheRowIs) {
  ShownDock dock(installation);
  const HWND arrow = dock.RightArrow();
  ASSERT_NE(nullptr, arrow);

  bool wasInTime = false;
  for (int round = 0; round < 10 && !wasInTime; ++round) {
    const LONG start = dock.RowLeft();
    ClickArrow(arrow);
    ASSERT_TRUE(WaitFor([&] { return dock.RowLeft() < start; }));
    ClickArrow(arrow);
    ASSERT_TRUE(WaitFor([&] { return dock.RowLeft() < start - step; })) << "at " << dock.RowLeft();
    const LONG end = WhereTheRowRests(dock);
    ASSERT_GE(end, start - 2 * step);
    wasInTime = end > start - 2 * step;
  }
  EXPECT_TRUE(wasInTime) << "no click came during a slide";
}

TEST_F(Scroll, ARowThatFitsHasNoArrows) {
  installation.WriteDocument(userDocument, {{.head = L"One", .actionType = L"exe", .actionParams = L"x"}});
  ShownDock dock(installation);
  EXPECT_EQ(0, dock.RowLeft());
  EXPECT_EQ(nullptr, dock.LeftArrow());
  EXPECT_EQ(nullptr, dock.RightArrow());
}

} // namespace
} // namespace lumenor::e2e
