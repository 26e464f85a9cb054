#include "app/Cycles.h"

#include "app/JumpListPlatform.h"
#include "dock/bar/MainDlg.h"
#include "dock/DockMessages.h"
#include "system/EventLog.h"
#include "system/Guard.h"
#include "system/Log.h"
#include "system/WindowException.h"
#include "system/Windows.h"
#include "system/Xml.h"
#include "toolkit/AnimationServices.h"
#include "toolkit/drawing/WICHelper.h"
#include "toolkit/drawing/Window.h"

namespace lumenor {

namespace {

constexpr wchar_t failureText[] = L"Failed to initialize Lumenor";

/// The pause after a failed cycle: its cause (a task bar that is being restarted, for example) may last a while, and
/// must not flood the log meanwhile. After a cycle that ends sooner, such as one whose pictures can't be drawn, the
/// next one waits for the rest of it.
constexpr DWORD cyclePauseMs = 1000;

/// Runs until WM_QUIT. Window handlers handle their own failures; any other exception ends the cycle.
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
  ForgetWindowException(); // a failure at the end of the last cycle isn't one of this cycle
  PublishJumpList();
  LogInfo("MainDlg creation");
  CMainDlg dock;
  dock.Create(nullptr);
  RethrowWindowException();
  LogInfo("Dock Startup complete");
  RunMessageLoop(dock, message);
}

/// False when the cycle failed; the report is the same for any failure.
bool TryCycle(MSG &message) {
  try {
    RunCycle(message);
    return true;
  } catch (...) {
    ReportFailedStart();
    Window::ForgetFactory();
    return false;
  }
}

void WaitUntil(ULONGLONG time) {
  if (const ULONGLONG now = ::GetTickCount64(); now < time)
    ::Sleep(static_cast<DWORD>(time - now));
}

} // namespace

void ReportFailedStart() noexcept {
  try {
    ReportEventLogError(failureText);
    LogFatal("%S", failureText);
    LogFailedCall(failureText);
  } catch (...) {
    // No memory is left for the text: the start has failed all the same, unreported.
  }
}

int RunCycles() {
  const Window::FactoryHold fasterResets;
  const XmlParserHold fasterDocuments;
  // The message outlives the cycles on purpose: a failed cycle doesn't change it, so that a failure after a reset finds
  // the reset's code again and starts another cycle, for as long as the failure lasts.
  MSG message{};
  do {
    const ULONGLONG start = ::GetTickCount64();
    const bool succeeded = TryCycle(message);
    if (message.wParam == RestartQuitCode)
      WaitUntil((succeeded ? start : ::GetTickCount64()) + cyclePauseMs);
  } while (message.wParam == RestartQuitCode);
  return static_cast<int>(message.wParam);
}

void ReleaseSharedServices() {
  ShutDownAnimationServices();
  ReleaseImagingFactory();
}

} // namespace lumenor
