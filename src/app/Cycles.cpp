#include "app/Cycles.h"

#include "app/JumpListPlatform.h"
#include "dock/bar/MainDlg.h"
#include "dock/DockMessages.h"
#include "system/EventLog.h"
#include "system/Log.h"
#include "system/WindowException.h"
#include "system/Windows.h"

namespace lumenor {

namespace {

/// How long a cycle that failed keeps the next one waiting: what fails (a task bar that is being started anew, say)
/// may take its time, and until then the log isn't to be flooded. A cycle that ends sooner than that, as one does whose
/// pictures can't be drawn, keeps the next one waiting for the rest.
constexpr DWORD cyclePauseMs = 1000;

/// Runs until WM_QUIT. A window handler keeps its failures to itself; what comes out here ends the cycle.
void RunMessageLoop(CMainDlg &dock, MSG &message) {
  messageLoopRunning = 1;
  while (::GetMessageW(&message, nullptr, 0, 0) != 0) {
    if (!::IsDialogMessageW(dock.GetHandle(), &message)) {
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
    }
    RethrowWindowException();
  }
}

void RunCycle(MSG &message) {
  ForgetWindowException(); // what failed while the last cycle ended is no failure of this one
  PublishJumpList();
  LogInfo("MainDlg creation");
  CMainDlg dock;
  dock.Create(nullptr);
  RethrowWindowException();
  LogInfo("Dock Startup complete");
  RunMessageLoop(dock, message);
}

/// False when the cycle failed; whatever it was, it is reported in the same words.
bool TryCycle(MSG &message) {
  try {
    RunCycle(message);
    return true;
  } catch (...) {
    ReportEventLogError(L"Failed to initialize Lumenor");
    LogFatal("Failed to initialize Lumenor");
    return false;
  }
}

void WaitUntil(ULONGLONG time) {
  if (const ULONGLONG now = ::GetTickCount64(); now < time)
    ::Sleep(static_cast<DWORD>(time - now));
}

} // namespace

int RunCycles() {
  // The message outlives the cycles on purpose: a cycle that fails leaves it as it stands, so that a failure after a
  // reset finds the reset's code again and tries once more, for as long as the failure lasts.
  MSG message{};
  do {
    const ULONGLONG start = ::GetTickCount64();
    const bool succeeded = TryCycle(message);
    if (message.wParam == RestartQuitCode)
      WaitUntil((succeeded ? start : ::GetTickCount64()) + cyclePauseMs);
  } while (message.wParam == RestartQuitCode);
  return static_cast<int>(message.wParam);
}

} // namespace lumenor
