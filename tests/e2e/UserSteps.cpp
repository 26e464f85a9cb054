#include "e2e/UserSteps.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "e2e/Input.h"
#include "e2e/Screen.h"

namespace lumenor::e2e {

namespace {

constexpr LONG rowHeight = 40;
constexpr LONG withinRow = 100; // from its left end

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

void ClickRow(const DockProcess &dock, int row) {
  const RECT flyout = RectOf(dock.Popups().at(0));
  Click({flyout.left + withinRow, flyout.top + row * rowHeight + rowHeight / 2});
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
