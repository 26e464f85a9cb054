#include "e2e/Searching.h"

#include <gtest/gtest.h>

#include "e2e/Input.h"
#include "e2e/Screen.h"

namespace lumenor::e2e {

void EnterText(const DockProcess &dock, const std::wstring &text) {
  Click(dock.FieldPoint());
  TypeText(text);
  ASSERT_TRUE(WaitFor([&] { return dock.FieldText() == text; }));
}

void ChooseProvider(const DockProcess &dock, int row) {
  Click(dock.SearchProviderButton());
  const HWND popup = dock.WaitForPopup();
  ASSERT_NE(nullptr, popup);
  const RECT flyout = RectOf(popup);
  Click({flyout.left + 100, flyout.top + row * 40 + 20});
  ASSERT_TRUE(WaitFor([&] { return dock.Popups().empty(); }));
  MoveCursor(dock.Rest());
}

} // namespace lumenor::e2e
