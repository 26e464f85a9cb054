#pragma once
// Threads that watch a folder and send a message to a window when a file in it is written. Any thread may start one; it
// ends with the FolderWatch that its start returned.

#include <string>

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

/// Traits of an event that means an end: whoever owns it raises it by letting it go.
struct EndingEventTraits {
  using Handle = HANDLE;
  static Handle Empty() noexcept { return nullptr; }
  static void Close(Handle handle) noexcept {
    ::SetEvent(handle);
    ::CloseHandle(handle);
  }
};

using EndingEvent = Owner<EndingEventTraits>;

/// A watch under way; empty when there is none. Its thread ends when this goes or is assigned to: at once while it
/// waits for a change, and behind its message while the window handles that. Nobody waits for the thread.
struct FolderWatch {
  KernelHandle thread;
  EndingEvent ending;

  explicit operator bool() const noexcept { return static_cast<bool>(thread); }
};

/// What a thread is handed; it owns and frees it.
struct FolderWatchContext {
  std::wstring folder; // unexpanded
  HWND window;
  UINT message;
  ChangeHandle firstChange; // the watch for the first change, which stands already
  KernelHandle ending;      // the thread's own handle of its end
};

/// The thread's entry: `context` is a FolderWatchContext on the heap. Sends the message once for each change that it
/// sees. Ends with 0 when it is told to, when the window is gone, and when the folder can't be watched any more.
DWORD WINAPI FolderWatchThread(void *context);

/// Starts a thread that sends `message` to `window` when a file in the unexpanded `folder` is written. The watch stands
/// when this returns: no change after that is missed up to the first message. Empty when the folder can't be watched
/// and, with a line in the log, when the platform can't start a thread.
FolderWatch StartFolderWatch(const std::wstring &folder, HWND window, UINT message);

} // namespace lumenor
