#include "system/FolderWatcher.h"

#include <array>
#include <memory>
#include <string>
#include <utility>

#include "system/Guard.h"
#include "system/Log.h"
#include "system/Paths.h"

namespace lumenor {

namespace {

constexpr wchar_t watchedFolder[] = L"%appdata%\\Tarnwick\\Lumenor";

/// These threads add up over the life of the process and need little, so each reserves little of the address space.
constexpr SIZE_T stackReserveBytes = 128 * 1024;

ChangeHandle OpenWatch() {
  return ChangeHandle(
      ::FindFirstChangeNotificationW(ExpandPath(watchedFolder).c_str(), FALSE, FILE_NOTIFY_CHANGE_LAST_WRITE));
}

/// One change from the watch to the message; false when the folder can't be watched. The handle is good for one change
/// only, and what is written while the window handles the message isn't seen by this thread: that is all there is
/// against a writer that comes back quickly.
bool TellOfNextChange(FolderWatchContext &context) {
  const ChangeHandle change = OpenWatch();
  if (!change)
    return false; // its value is also the one that stands for the process itself, whose end the wait would wait for
  if (const HANDLE watching = std::exchange(context.watching, nullptr); watching != nullptr)
    ::SetEvent(watching);
  if (::WaitForSingleObject(change.Get(), INFINITE) != WAIT_OBJECT_0)
    return false;
  ::SendMessageW(context.window, context.message, 0, 0);
  return true;
}

} // namespace

/// Goes on with a window that no longer exists: the sending then fails at once, and nothing else is done. Nobody ends
/// these threads, the process takes them along. So their number grows by one with every Watch: wanted, since a thread
/// can't be ended safely while it waits for the window's answer, and the answer is cheap.
DWORD WINAPI FolderWatchThread(void *context) {
  const std::unique_ptr<FolderWatchContext> owned(static_cast<FolderWatchContext *>(context));
  try {
    while (TellOfNextChange(*owned)) {
    }
  } catch (...) {
    ReportUnhandledException(L"FolderWatchThread"); // not by a guard: that one belongs to the windows' thread
  }
  return 0;
}

KernelHandle StartFolderWatch(HWND window, UINT message) {
  const KernelHandle watching(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
  auto context = std::make_unique<FolderWatchContext>(FolderWatchContext{window, message, watching.Get()});
  KernelHandle thread(::CreateThread(nullptr, stackReserveBytes, FolderWatchThread, context.get(),
                                     STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
  if (!thread) {
    LogError("FolderWatcher: can't start a thread, error %u", static_cast<unsigned>(::GetLastError()));
    return thread;
  }
  context.release();
  const std::array<HANDLE, 2> either = {watching.Get(), thread.Get()};
  ::WaitForMultipleObjects(static_cast<DWORD>(either.size()), either.data(), FALSE, INFINITE);
  return thread;
}

} // namespace lumenor
