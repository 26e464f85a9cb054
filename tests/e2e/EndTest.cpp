// Closing, the end of the session, the reset: what is saved, and what is shown afterwards.

#include <memory>

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/HeldProcess.h"
#include "e2e/Input.h"
#include "e2e/ResetDialog.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

namespace lumenor::e2e {
namespace {

class End : public ::testing::Test {
protected:
  End() { installation.WriteUsualStubs(); }

  /// A document of the user's own, unlike what the stubs build.
  void WriteOwnDocument() {
    installation.WriteDocument(
        userDocument,
        {{.head = L"Mine", .actionType = L"exe", .actionParams = installation.Recorder(), .position = 7},
         {.head = L"Gone", .actionType = L"exe", .actionParams = L"C:\\gone\\gone.exe", .image = L"", .position = 8}});
  }

  /// Suspends the dock while it has no bar; null when it doesn't come to that.
  static std::unique_ptr<HeldProcess> HoldBetweenBars(const DockProcess &dock) {
    std::unique_ptr<HeldProcess> held;
    WaitFor([&] {
      if (dock.Bar() == nullptr)
        held = std::make_unique<HeldProcess>(dock.Id());
      if (dock.Bar() != nullptr)
        held.reset(); // the bar came in between
      return held != nullptr;
    });
    return held;
  }

  std::string UserDocument() const { return ReadBytes(installation.DocumentPath(userDocument)); }

  const Installation installation;
};

TEST_F(End, TheCloseButtonSavesTheUsersButtonsAndEndsWithZero) {
  WriteOwnDocument();
  ShownDock dock(installation);
  const std::string before = UserDocument();

  EXPECT_EQ(0U, CloseByButton(dock));
  const std::string after = UserDocument();
  EXPECT_NE(before, after);
  EXPECT_EQ(1, CountOf(after, "<Head>Mine</Head>"));
  EXPECT_EQ(1, CountOf(after, "<Head>Gone</Head>")) << "a record without a button is saved back";
  EXPECT_EQ(2, CountOf(after, "<ActionParamsBackup"));
}

TEST_F(End, ClosingEarlyStartsTheMainApplicationInTheTray) {
  ShownDock dock(installation);
  Click(dock.CloseButton());
  const std::vector<std::wstring> lines = installation.WaitForCommandLines(1);
  ASSERT_EQ(1U, lines.size());
  const std::wstring &line = lines[0];
  EXPECT_NE(std::wstring::npos, line.find(L"Lumenor.exe"));
  EXPECT_TRUE(line.ends_with(L" view=SYSTRAY")) << std::string(line.begin(), line.end());
}

TEST_F(End, TheEndOfTheSessionSavesAndPostsNoQuit) {
  WriteOwnDocument();
  ShownDock dock(installation);
  const HWND bar = dock.Bar();

  EXPECT_EQ(1, ::SendMessageW(bar, WM_QUERYENDSESSION, 0, ENDSESSION_LOGOFF));
  EXPECT_EQ(1, ::SendMessageW(bar, WM_ENDSESSION, TRUE, static_cast<LPARAM>(ENDSESSION_LOGOFF)));

  EXPECT_EQ(2, CountOf(UserDocument(), "<ActionParamsBackup"));
  EXPECT_TRUE(HoldsFor([&] { return dock.IsRunning(); }, std::chrono::milliseconds(500)));
}

TEST_F(End, TheNextStartFindsWhatWasSaved) {
  WriteOwnDocument();
  {
    ShownDock dock(installation);
    ASSERT_EQ(0U, CloseByButton(dock));
  }
  ShownDock dock(installation);
  EXPECT_NE(nullptr, dock.Control(2000));
  EXPECT_EQ(nullptr, dock.Control(2001)) << "no button for the target that is gone";
}

TEST_F(End, ResetAsksRebuildsAndComesBackInTheSameProcess) {
  WriteOwnDocument();
  ShownDock dock(installation);
  const HWND oldBar = dock.Bar();
  const HWND dialog = OpenResetDialog(dock);
  const LONG middle = ::GetSystemMetrics(SM_CXSCREEN) / 2, top = Scaled(77);
  EXPECT_TRUE(StandsAt(dialog, {middle - Scaled(200), top, middle + Scaled(200), top + Scaled(172)}));
  SaveShot("reset-dialog");
  const auto buttons = DialogButtons(dialog);
  ASSERT_EQ(2u, buttons.size());

  Click(Center(buttons[0]));

  ASSERT_TRUE(dock.WaitForNewBar(oldBar));
  EXPECT_TRUE(dock.IsRunning());
  EXPECT_EQ(0, CountOf(UserDocument(), "Mine"));
  EXPECT_EQ(1, CountOf(UserDocument(), "<Head>User 1</Head>"));
  EXPECT_TRUE(WaitFor([&] { return dock.Control(2001) != nullptr; }));
  const DockProcess second(installation);
  EXPECT_EQ(0u, second.WaitForExit()) << "the instance stays guarded over the reset";
}

TEST_F(End, ASecondStartDuringARebuildEndsWithZeroAndLeavesTheFirstAlone) {
  for (int i = 0; i < 300; ++i) // to be read one by one by the rebuild
    installation.WriteStub(L"xx_xx", userDocument, 100 + i,
                           {.head = L"Stub", .actionType = L"exe", .actionParams = installation.Recorder()});
  WriteOwnDocument();
  ShownDock dock(installation);
  const HWND oldBar = dock.Bar();
  const HWND dialog = OpenResetDialog(dock);
  Click(Center(DialogButtons(dialog).at(0)));
  {
    const auto held = HoldBetweenBars(dock);
    ASSERT_NE(nullptr, held);
    const DockProcess second(installation);
    EXPECT_EQ(0u, second.WaitForExit());
    EXPECT_EQ(nullptr, dock.Bar());
    EXPECT_EQ(nullptr, second.Bar());
  }
  ASSERT_TRUE(WaitFor([&] { return dock.Bar() != nullptr; }));
  EXPECT_NE(oldBar, dock.Bar());
  EXPECT_TRUE(dock.IsRunning());
}

TEST_F(End, CancellingTheResetChangesNothing) {
  WriteOwnDocument();
  ShownDock dock(installation);
  const HWND bar = dock.Bar();
  const std::string before = UserDocument();
  const HWND dialog = OpenResetDialog(dock);

  Click(Center(DialogButtons(dialog).at(1)));

  EXPECT_TRUE(dock.WaitForNoPopup());
  EXPECT_EQ(bar, dock.Bar());
  EXPECT_EQ(before, UserDocument());
}

} // namespace
} // namespace lumenor::e2e
