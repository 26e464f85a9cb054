// What a click on the bar does.

#include "dock/Commands.h"

#include <gtest/gtest.h>

#include "content/Documents.h"
#include "dock/bar/BarFixture.h"
#include "dock/DockMessages.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "support/Desk.h"

namespace lumenor {

namespace {

TEST(FindCommand, KnowsItsSixWords) {
  EXPECT_EQ(Command::Flyout, FindCommand(L"flyout"));
  EXPECT_EQ(Command::ForYou, FindCommand(L"foryou"));
  EXPECT_EQ(Command::ResetConfirmation, FindCommand(L"resetConfirmation"));
  EXPECT_EQ(Command::SearchProvider, FindCommand(L"searchProvider"));
  EXPECT_EQ(Command::Search, FindCommand(L"search"));
  EXPECT_EQ(Command::Close, FindCommand(L"close"));
}

TEST(FindCommand, IsExactAndHeedsTheCase) {
  EXPECT_EQ(std::nullopt, FindCommand(L""));
  EXPECT_EQ(std::nullopt, FindCommand(L"Close"));
  EXPECT_EQ(std::nullopt, FindCommand(L"close "));
  EXPECT_EQ(std::nullopt, FindCommand(L"searchprovider"));
}

constexpr wchar_t resetDialogTitle[] = L"Lumenor Dock Reset";

/// What a modal dialog looked like while it was open; it is ended at once.
struct SeenDialog {
  int count = 0;
  RECT place{};
  bool keptAwake = false;
  CMainDlg *dock = nullptr;
};

SeenDialog seenDialog;

void CALLBACK EndDialogWhenOpen(HWND, UINT, UINT_PTR, DWORD) {
  const HWND dialog = ::FindWindowW(nullptr, resetDialogTitle);
  if (!::IsWindowVisible(dialog))
    return;
  ++seenDialog.count;
  ::GetWindowRect(dialog, &seenDialog.place);
  seenDialog.keptAwake = seenDialog.dock->IsKeptAwake();
  ::EndDialog(dialog, 0);
}

class Click : public BarFixture {
protected:
  /// Builds a bar whose one user button does this.
  DockButton &StartWithButton(const std::wstring &actionType, const std::wstring &actionParams) {
    Element element = PictureElement(L"Button");
    element.ActionType = actionType;
    element.ActionParams = actionParams;
    SaveDocument({element}, userDocument);
    return *Start().GetUserButtons().at(0);
  }

  /// What the platform's notification of a click does, a turn of the message loop later.
  static void Press(Button &button) {
    ::SendMessageW(button.GetHandle(), WM_COMMAND, 0, reinterpret_cast<LPARAM>(button.GetHandle()));
  }

  void PressNewButton(const std::wstring &actionType, const std::wstring &actionParams) {
    Press(StartWithButton(actionType, actionParams));
  }

  /// Presses the reset button and ends the dialog that it opens.
  void PressReset() {
    seenDialog = {.dock = dock.get()};
    const UINT_PTR timer = ::SetTimer(nullptr, 0, 20, &EndDialogWhenOpen);
    Press(BarTree(*dock).resetButton);
    ::KillTimer(nullptr, timer);
  }

  /// Whether a message to close the dock waits.
  bool IsToClose() const {
    MSG message;
    return ::PeekMessageW(&message, dock->handle, WM_CLOSE, WM_CLOSE, PM_REMOVE);
  }

  Launch MainApplication(const wchar_t *arguments) const {
    return {nullptr, L"open", folders.InstallFolder() + L"\\Lumenor.exe", arguments, SW_HIDE};
  }

  using Launches = std::vector<Launch>;
};

TEST_F(Click, OfTheRealMouseReachesTheCommand) {
  Start();
  const HWND window = dock->handle;
  desk::MoveCursor(desk::MiddleOf(BarTree(*dock).closeButton.GetHandle()));
  desk::PressLeftButton();
  desk::ReleaseLeftButton();
  EXPECT_TRUE(desk::PumpUntil([&] { return !::IsWindow(window); }));
}

TEST_F(Click, OnCloseEndsTheDockAndStartsTheMainApplicationInTheTray) {
  Start();
  Press(BarTree(*dock).closeButton);
  EXPECT_TRUE(IsToClose());
  EXPECT_EQ(Launches{MainApplication(L"view=SYSTRAY")}, shell.Launches());
}

TEST_F(Click, OnCloseStartsNothingOnceTheMainApplicationWasStarted) {
  Start();
  mainApplicationStarted = true;
  Press(BarTree(*dock).closeButton);
  EXPECT_TRUE(IsToClose());
  EXPECT_EQ(Launches{}, shell.Launches());
}

TEST_F(Click, OnADocumentsButtonMayUseAnyCommand) {
  PressNewButton(L"exe", L"close");
  EXPECT_TRUE(IsToClose());
}

TEST_F(Click, HeedsTheCaseOfACommand) {
  PressNewButton(L"url", L"Close");
  EXPECT_FALSE(IsToClose());
  EXPECT_EQ((Launches{{nullptr, L"open", L"Close", L"", SW_SHOW}}), shell.Launches());
}

TEST_F(Click, OnWhatMatchesNoCommandRunsTheAction) {
  PressNewButton(L"exe", L"C:\\windows\\nothing.exe");
  EXPECT_EQ((Launches{{nullptr, L"open", L"C:\\windows\\nothing.exe", L"", SW_SHOW}}), shell.Launches());
}

TEST_F(Click, OnAnotherTypeDoesNothing) {
  PressNewButton(L"somewhere", L"C:\\windows\\nothing.exe");
  EXPECT_EQ(Launches{}, shell.Launches());
  EXPECT_FALSE(IsToClose());
}

TEST_F(Click, OnTheCommandsWithoutAnEffectOfTheirOwnLaunchesNothing) {
  for (const wchar_t *command : {L"flyout", L"foryou", L"searchProvider", L"search"}) {
    PressNewButton(L"url", command);
    EXPECT_EQ(Launches{}, shell.Launches()) << tests::Utf8(command);
    EXPECT_FALSE(IsToClose());
  }
}

TEST_F(Click, WithoutASenderDoesNothing) {
  ButtonEventArgs args;
  StartWithButton(L"url", L"http://nowhere.invalid/").Click.Fire(&args);
  EXPECT_EQ(Launches{}, shell.Launches());
}

TEST_F(Click, OnAnXmlButtonTogglesItsFlyoutUnderIt) {
  SaveDocument(PictureElements(2), L"Flyout.One");
  DockButton &button = StartWithButton(L"xml", L"Flyout.One");
  FlyoutWindow &flyout = *button.GetFlyout();
  Press(button);
  EXPECT_EQ(lumenor::Visibility::Visible, flyout.Visibility.Get());
  RECT place{};
  ::GetWindowRect(flyout.handle, &place);
  // Left of the panel of user buttons 2, of the button 4; under its 73 pixels at the panel's 4; 40 a row, two and the
  // header.
  EXPECT_EQ((std::vector<LONG>{190 + 2 + 4, 1 + 4 + 73 + 2, 190 + 2 + 4 + 240, 1 + 4 + 73 + 2 + 120}),
            (std::vector<LONG>{place.left, place.top, place.right, place.bottom}));
  Press(button);
  EXPECT_EQ(lumenor::Visibility::Hidden, flyout.Visibility.Get());
}

TEST_F(Click, OnAnXmlButtonIsNeverComparedWithTheCommands) {
  DockButton &button = StartWithButton(L"xml", L"close");
  Press(button);
  EXPECT_FALSE(IsToClose());
  EXPECT_EQ(lumenor::Visibility::Visible, button.GetFlyout()->Visibility.Get());
  EXPECT_EQ(Launches{}, shell.Launches());
}

TEST_F(Click, OnResetAsksUnderTheBarAndStaysAwakeMeanwhile) {
  Start();
  PressReset();
  EXPECT_EQ(1, seenDialog.count);
  const RECT expected = {440, 77, 840, 249};
  EXPECT_TRUE(::EqualRect(&expected, &seenDialog.place));
  EXPECT_TRUE(seenDialog.keptAwake);
  EXPECT_FALSE(dock->IsKeptAwake());
  EXPECT_NE(nullptr, dock->handle);
}

TEST_F(Click, OnResetAsksOverABarAtTheBottom) {
  registry.SetText(L"DockPosition", L"Bottom");
  Start();
  PressReset();
  const RECT expected = {440, 775, 840, 947};
  EXPECT_TRUE(::EqualRect(&expected, &seenDialog.place));
}

} // namespace

} // namespace lumenor
