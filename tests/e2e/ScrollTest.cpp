// The row of user buttons, longer than its room, and its two arrows.

#include <algorithm>

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/Screen.h"

namespace lumenor::e2e {
namespace {

constexpr LONG buttonPitch = 77 + 4;
constexpr LONG roomWidth = 900 - 3 * 77 - 2 - 204 - 2; // beside three fixed buttons, two splitters and the fixed end
constexpr LONG step = 77;
constexpr LONG rightmost = roomWidth - 30 * buttonPitch; // where a row of thirty stands at its right end

class Scroll : public ::testing::Test {
protected:
  Scroll() {
    installation.WriteUsualStubs();
    std::vector<Entry> entries;
    for (int i = 0; i < 30; ++i)
      entries.push_back({.head = L"Number " + std::to_wstring(i),
                         .actionType = L"exe",
                         .actionParams = L"\"" + installation.Recorder() + L"\" number " + std::to_wstring(i),
                         .position = i});
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

  const Installation installation;
  LONG spot = 10;
};

TEST_F(Scroll, ThirtyButtonsGoToBothEndsAndBackByTheArrows) {
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
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
  EXPECT_TRUE(WaitFor([&] { return installation.RecordedCommandLines().size() == 1; }));

  while (dock.LeftArrow() != nullptr && place < 0) {
    place = std::min(place + step, 0L);
    ClickArrow(dock.LeftArrow());
    ASSERT_TRUE(RowComesTo(dock, place)) << "at " << dock.RowLeft() << " instead of " << place;
  }
  EXPECT_EQ(0, place);
  EXPECT_TRUE(WaitFor([&] { return dock.LeftArrow() == nullptr && dock.RightArrow() != nullptr; }));
}

TEST_F(Scroll, TheScreenShowsTheRowWhereItsWindowsStand) {
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  const RECT first = RectOf(dock.Control(2001)),
             icon = {first.left + 22, first.top + 16, first.right - 23, first.bottom - 29};
  const Picture before = CaptureSettled(icon);

  ClickArrow(dock.RightArrow());
  ASSERT_TRUE(RowComesTo(dock, -step));

  // The same picture, a step to the left.
  EXPECT_TRUE(WaitFor([&] { return Capture({icon.left - step, icon.top, icon.right - step, icon.bottom}) == before; }));
}

TEST_F(Scroll, AClickDuringTheSlideStartsFromWhereTheRowIs) {
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  const HWND arrow = dock.RightArrow();
  ASSERT_NE(nullptr, arrow);

  ClickArrow(arrow);
  ASSERT_TRUE(WaitFor([&] { return dock.RowLeft() < 0; }));
  ClickArrow(arrow);

  LONG before = 1;
  ASSERT_TRUE(WaitFor([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(500)); // a slide takes 300
    return std::exchange(before, dock.RowLeft()) == dock.RowLeft();
  }));
  EXPECT_LT(dock.RowLeft(), -step);
  EXPECT_GT(dock.RowLeft(), -2 * step);
}

TEST_F(Scroll, ARowThatFitsHasNoArrows) {
  installation.WriteDocument(userDocument, {{.head = L"One", .actionType = L"exe", .actionParams = L"x"}});
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  EXPECT_EQ(0, dock.RowLeft());
  EXPECT_EQ(nullptr, dock.LeftArrow());
  EXPECT_EQ(nullptr, dock.RightArrow());
}

} // namespace
} // namespace lumenor::e2e
