#include "e2e/UserSteps.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "e2e/Input.h"
#include "e2e/Screen.h"

namespace lumenor::e2e {

namespace {

constexpr int rowHeight = 40;
constexpr int flyoutWidth = 240;
constexpr int firstRowId = 3000;
constexpr LONG gapToTheBar = 2; // at every density

} // namespace

HWND AwaitPopup(const DockProcess &dock) {
  const HWND popup = dock.WaitForPopup();
  if (popup == nullptr)
    throw std::runtime_error("no flyout and no dialog has come");
  return popup;
}

HWND OpenPopup(const DockProcess &dock, POINT button) {
  Click(button);
  return AwaitPopup(dock);
}

HWND OpenForYou(const DockProcess &dock) { return OpenPopup(dock, dock.ForYouButton()); }

HWND OpenSearchProviders(const DockProcess &dock) { return OpenPopup(dock, dock.SearchProviderButton()); }

RECT FlyoutAt(LONG left, LONG top, int rows) {
  return {left, top, left + Scaled(flyoutWidth), top + rows * Scaled(rowHeight)};
}

RECT FlyoutBelow(const DockProcess &dock, int rows) {
  const RECT bar = dock.BarRect();
  return FlyoutAt(bar.left, bar.bottom + gapToTheBar, rows);
}

RECT FlyoutAbove(const DockProcess &dock, int rows) {
  const RECT bar = dock.BarRect();
  return FlyoutAt(bar.left, bar.top - gapToTheBar - rows * Scaled(rowHeight), rows);
}

void ClickRow(const DockProcess &dock, int row) {
  Click(Center(RectOf(DescendantOf(dock.Popups().at(0), firstRowId + row))));
}

bool ChooseRow(const DockProcess &dock, int row) {
  ClickRow(dock, row);
  return dock.WaitForNoPopup();
}

void ChooseProvider(const DockProcess &dock, int row) {
  OpenSearchProviders(dock);
  ASSERT_TRUE(ChooseRow(dock, row));
  MoveCursor(dock.Rest());
}

void EnterText(const DockProcess &dock, const std::wstring &text) {
  Click(dock.FieldPoint());
  TypeText(text);
  ASSERT_TRUE(WaitFor([&] { return dock.FieldText() == text; }));
}

std::optional<DWORD> CloseByButton(const DockProcess &dock) {
  Click(dock.CloseButton());
  return dock.WaitForExit();
}

} // namespace lumenor::e2e
