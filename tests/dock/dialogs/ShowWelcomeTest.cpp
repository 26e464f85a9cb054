// When the dock shows its welcome screen, and what it does meanwhile and afterwards.

#include <gtest/gtest.h>

#include "dock/bar/BarFixture.h"
#include "dock/Rectangles.h"
#include "support/Desk.h"

namespace lumenor {

namespace {

/// What the dialog looked like while it was open; it is ended at once.
struct SeenWelcome {
  int count = 0;
  RECT place{};
  bool keptAwake = false;
  HWND owner = nullptr;
  CMainDlg *dock = nullptr;
};

SeenWelcome seen;

void CALLBACK EndWelcomeWhenOpen(HWND, UINT, UINT_PTR, DWORD) {
  const HWND window = ::FindWindowW(nullptr, L"Welcome to Lumenor Dock");
  if (!::IsWindowVisible(window))
    return;
  ++seen.count;
  ::GetWindowRect(window, &seen.place);
  seen.keptAwake = seen.dock->IsKeptAwake();
  seen.owner = ::GetWindow(window, GW_OWNER);
  ::EndDialog(window, 0);
}

class ShowWelcome : public BarFixture {
protected:
  /// Builds the dock, dispatches what waits, and ends each welcome screen that comes up.
  void StartAndPump() {
    dock = std::make_unique<CMainDlg>();
    seen = {.dock = dock.get()};
    const UINT_PTR timer = ::SetTimer(nullptr, 0, 20, &EndWelcomeWhenOpen);
    dock->Create(nullptr);
    desk::PumpAll();
    ::KillTimer(nullptr, timer);
  }
};

TEST_F(ShowWelcome, HappensAtTheFirstStart) {
  registry.DeleteValue(L"ShowWelcomePage");
  StartAndPump();
  EXPECT_EQ(1, seen.count);
  EXPECT_EQ(Rect(616, 77, 664, 125), seen.place); // of the default picture
  EXPECT_EQ(dock->handle, seen.owner);
  EXPECT_EQ(L"0", registry.Text(L"ShowWelcomePage"));
}

TEST_F(ShowWelcome, DoesNotHappenAgain) {
  StartAndPump();
  EXPECT_EQ(0, seen.count);
}

TEST_F(ShowWelcome, KeepsTheBarAwakeForAsLongAsItStands) {
  registry.SetText(L"ShowWelcomePage", L"1");
  StartAndPump();
  EXPECT_TRUE(seen.keptAwake);
  EXPECT_FALSE(dock->IsKeptAwake());
}

TEST_F(ShowWelcome, StandsBelowTheTopOfTheScreenForABarAtTheBottomToo) {
  registry.SetText(L"ShowWelcomePage", L"1");
  registry.SetText(L"DockPosition", L"Bottom");
  StartAndPump();
  EXPECT_EQ(Rect(616, 77, 664, 125), seen.place);
}

TEST_F(ShowWelcome, ByItsMessageGivesZeroAndClearsTheMark) {
  StartAndPump();
  registry.SetText(L"ShowWelcomePage", L"1");
  const UINT_PTR timer = ::SetTimer(nullptr, 0, 20, &EndWelcomeWhenOpen);
  EXPECT_EQ(0, ::SendMessageW(dock->handle, 1028, 0, 0));
  ::KillTimer(nullptr, timer);
  EXPECT_EQ(1, seen.count);
  EXPECT_EQ(L"0", registry.Text(L"ShowWelcomePage"));
}

} // namespace

} // namespace lumenor
