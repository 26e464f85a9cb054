// The end of the user's session while the dock is in the middle of something: it answers at once, what the user made is
// saved, and the next start shows it.

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/DragProgram.h"
#include "e2e/Input.h"
#include "e2e/Payloads.h"
#include "e2e/ResetDialog.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

namespace lumenor::e2e {
namespace {

constexpr POINT farAway = {640, 700};
constexpr UINT answerLimitMs = 20'000;
constexpr UINT_PTR trackingTimer = 8;
constexpr int buttons = 3;

/// The dock's answer; nothing when it gives none in time.
std::optional<DWORD_PTR> Answer(HWND window, UINT message, WPARAM wParam) {
  DWORD_PTR answer = 0;
  if (::SendMessageTimeoutW(window, message, wParam, static_cast<LPARAM>(ENDSESSION_LOGOFF), SMTO_NORMAL, answerLimitMs,
                            &answer) == 0)
    return std::nullopt;
  return answer;
}

/// A collector that is at work until this is gone.
class SlowCollector {
public:
  explicit SlowCollector(const Installation &installation)
      : installation(installation), end(::CreateEventW(nullptr, TRUE, FALSE, eventName)) {
    installation.InstallCollector();
    ::SetEnvironmentVariableW(L"LUMENOR_RECORDER_WAIT", eventName);
  }
  ~SlowCollector() {
    ::SetEnvironmentVariableW(L"LUMENOR_RECORDER_WAIT", nullptr);
    ::SetEvent(end.Get());
  }
  SlowCollector(const SlowCollector &) = delete;
  SlowCollector &operator=(const SlowCollector &) = delete;

  bool HasStarted() const { return installation.RecordedStarts().size() == 1; }

private:
  static constexpr wchar_t eventName[] = L"LumenorSlowCollector";

  const Installation &installation;
  const KernelHandle end;
};

class SessionEnd : public ::testing::Test {
protected:
  SessionEnd() {
    installation.WriteUsualStubs();
    installation.OptIn();
    std::vector<Entry> entries;
    for (int i = 0; i < buttons; ++i)
      entries.push_back(installation.RecorderEntry(Head(i), L"mine", i));
    installation.WriteDocument(userDocument, entries);
    MoveCursor(farAway);
  }
  ~SessionEnd() override { ReleaseLeftButton(); }

  static std::wstring Head(int index) { return L"Mine " + std::to_wstring(index); }

  std::string Document() const { return ReadBytes(installation.DocumentPath(userDocument)); }
  std::string Payload() const { return Masked(ReadBytes(OpenPayload(installation))); }

  /// Asks and informs every window of the dock, as the platform does.
  static void EndSessionOf(const DockProcess &dock) {
    std::vector<HWND> windows = dock.Popups();
    windows.push_back(dock.Bar());
    for (const HWND window : windows)
      EXPECT_EQ(1U, Answer(window, WM_QUERYENDSESSION, 0));
    for (const HWND window : windows)
      EXPECT_EQ(1U, Answer(window, WM_ENDSESSION, TRUE));
  }

  /// The document as the session's end has saved it, with all buttons in their order; before that it has no backups.
  void ExpectSaved() const {
    const std::string document = Document();
    EXPECT_EQ(buttons, CountOf(document, "<ActionParamsBackup"));
    std::size_t last = 0;
    for (int i = 0; i < buttons; ++i) {
      const std::size_t place = document.find("<Head>" + tests::Utf8(Head(i)) + "</Head>");
      ASSERT_NE(std::string::npos, place) << i;
      EXPECT_LE(last, place);
      last = place;
    }
  }

  /// The platform ends what is left of the session's processes.
  void ExpectAllAtTheNextStart(const DockProcess &ended) {
    EXPECT_TRUE(ended.IsRunning());
    ended.Kill();
    ReleaseLeftButton();
    const ShownDock dock(installation);
    EXPECT_NE(nullptr, dock.Control(2000 + buttons - 1));
  }

  const Installation installation;
};

TEST_F(SessionEnd, WhileTheResetDialogAsksSavesAll) {
  ShownDock dock(installation);
  OpenResetDialog(dock);
  EndSessionOf(dock);
  ExpectSaved();
  EXPECT_EQ(PayloadText({WindowElement(1, "Open"), WindowElement(2, "Close")}), Payload());
  ExpectAllAtTheNextStart(dock);
}

TEST_F(SessionEnd, WhileTheWelcomeScreenIsOpenSavesAll) {
  SetDockValue(L"ShowWelcomePage", L"1");
  ShownDock dock(installation);
  AwaitPopup(dock);
  EndSessionOf(dock);
  ExpectSaved();
  EXPECT_EQ(L"0", DockValue(L"ShowWelcomePage")) << "it doesn't come again";
  ExpectAllAtTheNextStart(dock);
}

TEST_F(SessionEnd, WhileAButtonIsDraggedSavesItWithTheOthers) {
  ShownDock dock(installation);
  const POINT grip = dock.UserButton(1);
  MoveCursor(grip);
  PressLeftButton();
  MoveCursor({grip.x + 6, grip.y});
  MoveCursor(farAway);
  ASSERT_TRUE(WaitFor([&] { return !::IsWindowVisible(dock.Control(2001)); })) << "it is being dragged";
  EndSessionOf(dock);
  ExpectSaved();
  ExpectAllAtTheNextStart(dock);
}

TEST_F(SessionEnd, WhileAFileIsDraggedOverTheRowSavesAll) {
  const DragProgram other({installation.WriteAside(L"New.txt", "a file")});
  ASSERT_TRUE(other.IsUp());
  ShownDock dock(installation);
  const RECT button = RectOf(dock.Control(2001));
  const auto between = [&] { return Capture({button.left - 6, button.top, button.left + 3, button.bottom}); };
  const Picture before = between();
  other.Grab();
  MoveCursor({button.left + 15, (button.top + button.bottom) / 2});
  ASSERT_TRUE(WaitFor([&] { return between().Differences(before) > 20; })) << "the marker shows";
  EndSessionOf(dock);
  ExpectSaved();
  ExpectAllAtTheNextStart(dock);
}

TEST_F(SessionEnd, WhileACollectorIsAtWorkOnAPayloadWritesTheNextOne) {
  const SlowCollector collector(installation);
  SetTrackingValue(L"NextTransferTime", L"1/2/2020 3:4:5");
  ShownDock dock(installation);
  ::PostMessageW(dock.Bar(), WM_TIMER, trackingTimer, 0);
  ASSERT_TRUE(WaitFor([&] { return collector.HasStarted(); }));
  EndSessionOf(dock);
  ExpectSaved();
  EXPECT_EQ(1U, ClosedPayloads(installation).size());
  EXPECT_EQ(PayloadText({WindowElement(2, "Close")}), Payload());
  ExpectAllAtTheNextStart(dock);
}

TEST_F(SessionEnd, ThatHandsOverAPayloadDoesNotWaitForTheCollector) {
  const SlowCollector collector(installation);
  const std::string former = "<element name=\"" + std::string(51200, 'x') + "\"/>"; // what earlier runs have collected
  ::CreateDirectoryW(PayloadFolder(installation).c_str(), nullptr);
  WriteBytes(OpenPayload(installation), "<payload>" + former + "</payload>");
  ShownDock dock(installation);
  EndSessionOf(dock);
  ExpectSaved();
  EXPECT_EQ(1U, ClosedPayloads(installation).size());
  EXPECT_FALSE(Exists(OpenPayload(installation)));
  EXPECT_TRUE(WaitFor([&] { return collector.HasStarted(); }));
  ExpectAllAtTheNextStart(dock);
}

} // namespace
} // namespace lumenor::e2e
