#include "system/FolderWatcher.h"

#include <array>
#include <memory>
#include <utility>

#include "system/Guard.h"
#include "system/Log.h"
#include "system/Paths.h"

namespace lumenor {

namespace {

/// The threads need little, so each reserves little of the address space.
constexpr SIZE_T stackReserveBytes = 128 * 1024;

ChangeHandle OpenWatch(const std::wstring &folder) {
  return ChangeHandle(::FindFirstChangeNotificationW(ExpandPath(folder).c_str(), FALSE, FILE_NOTIFY_CHANGE_LAST_WRITE));
}

/// False also for a window of another program, which may have got the handle of a destroyed one.
bool IsOwnWindow(HWND window) {
  DWORD process = 0;
  ::GetWindowThreadProcessId(window, &process);
  return process == ::GetCurrentProcessId();
}

/// False when the thread is to end instead, also when the wait fails.
bool WaitForChange(HANDLE ending, HANDLE change) {
  const std::array<HANDLE, 2> either = {ending, change}; // the end comes first when both are set
  return ::WaitForMultipleObjects(static_cast<DWORD>(either.size()), either.data(), FALSE, INFINITE) ==
         WAIT_OBJECT_0 + 1;
}

bool IsToEnd(const FolderWatchContext &context) {
  return ::WaitForSingleObject(context.ending.Get(), 0) != WAIT_TIMEOUT;
}

/// Each handle is for one change only, and this thread doesn't see what is written while the window handles the
/// message: that is the only protection from a writer that writes often.
void TellOfChanges(FolderWatchContext &context) {
  ChangeHandle change = std::move(context.firstChange);
  while (change && WaitForChange(context.ending.Get(), change.Get()) && IsOwnWindow(context.window)) {
    ::SendMessageW(context.window, context.message, 0, 0);
    change.Reset();
    if (IsToEnd(context))
      return; // a newer watch was opened before the window read again
    change = OpenWatch(context.folder);
  }
}

/// Two handles of one event, so that neither the starter nor the thread has to outlive the other. Both empty after a
/// failure.
std::pair<EndingEvent, KernelHandle> MakeEndingEvent() {
  EndingEvent ending(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
  KernelHandle ofThread;
  const HANDLE process = ::GetCurrentProcess();
  if (!ending || !::DuplicateHandle(process, ending.Get(), process, ofThread.Put(), SYNCHRONIZE, FALSE, 0))
    return {};
  return {std::move(ending), std::move(ofThread)};
}

KernelHandle StartThread(std::unique_ptr<FolderWatchContext> context) {
  KernelHandle thread(::CreateThread(nullptr, stackReserveBytes, FolderWatchThread, context.get(),
                                     STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
  if (thread)
    context.release(); // the thread owns it now
  return thread;
}

FolderWatch LogNoThread() {
  LogError("FolderWatcher: can't start a thread, error %u", static_cast<unsigned>(::GetLastError()));
  return {};
}

} // namespace

DWORD WINAPI FolderWatchThread(void *context) {
  const std::unique_ptr<FolderWatchContext> owned(static_cast<FolderWatchContext *>(context));
  try {
    TellOfChanges(*owned);
  } catch (...) {
    ReportUnhandledException(L"FolderWatchThread"); // a guard is for the windows' thread only
  }
  return 0;
}

FolderWatch StartFolderWatch(const std::wstring &folder, HWND window, UINT message) {
  // INVALID_HANDLE_VALUE is also the handle of this process, whose end a wait would wait for.
  ChangeHandle change = OpenWatch(folder);
  if (!change)
    return {};
  auto [ending, endingOfThread] = MakeEndingEvent();
  if (!endingOfThread)
    return LogNoThread();
  KernelHandle thread = StartThread(std::make_unique<FolderWatchContext>(
      FolderWatchContext{folder, window, message, std::move(change), std::move(endingOfThread)}));
  if (!thread)
    return LogNoThread();
  return {std::move(thread), std::move(ending)};
}

} // namespace lumenor
