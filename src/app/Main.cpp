// The entry function: what belongs to the whole life of the process, from its command line to its exit code.

#include <string>

#include "app/CommandLine.h"
#include "app/Cycles.h"
#include "app/SingleInstance.h"
#include "app/WarmUp.h"
#include "dock/bar/MainDlg.h"
#include "system/EventLog.h"
#include "system/Log.h"
#include "system/Paths.h"
#include "system/ScopeExit.h"
#include "system/Windows.h"
#include "tracking/UsageTracker.h"

namespace {

using namespace lumenor;

enum ExitCode : int { AlreadyRunningExitCode = 0, RefusedExitCode = -1 };

/// The file of this process; empty when the platform doesn't tell.
std::wstring RunningProgram() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(::GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return path;
}

/// The bar names its own pictures relative to the folder of the installed program, which the installer may have put
/// elsewhere than below %programfiles%.
void EnterDockFolder() {
  const std::wstring installed = DockExePath();
  ::SetCurrentDirectoryW(FolderPart(PathExists(installed) ? installed : RunningProgram()).c_str());
}

/// The machine gets its identity in any case; a session begins only with the user's consent.
void StartTracking() {
  usageTracker.LoadAppId();
  usageTracker.ReadOptIn();
  if (!usageTracker.IsEnabled())
    return;
  usageTracker.InitSessionInfo();
  usageTracker.StartSession();
  usageTracker.LoadNextTransferTime();
}

int RunDock() {
  EnterDockFolder();
  SingleInstance instance;
  if (!instance.Join(dockActivateMessage))
    return AlreadyRunningExitCode;
  const WarmUp warmUp;
  OpenDockEventLog();
  StartTracking();
  const int exitCode = RunCycles();
  ReleaseSharedServices();
  return exitCode;
}

int Start(PCWSTR commandLine) {
  EnsureLogFolder();
  LogInfo("Dock Startup");
  if (!CheckCommandLine(commandLine))
    return RefusedExitCode;
  dockActivateMessage = ::RegisterWindowMessageW(dockActivateMessageName);
  if (dockActivateMessage == 0)
    return RefusedExitCode;
  return RunDock();
}

} // namespace

/// Cycles handle their own failures; one ahead of the first cycle ends the process.
int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR commandLine, int) {
  ::CoInitialize(nullptr);
  const ScopeExit leaveCom([] { ::CoUninitialize(); });
  try {
    return Start(commandLine);
  } catch (...) {
    ReportFailedStart();
    return RefusedExitCode;
  }
}
