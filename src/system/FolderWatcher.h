#pragma once
// Threads that watch a folder and send a message to a window when a file in it is written. Any thread may start one; it
// ends with the FolderWatch that its start returned.

#include <string>

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

/// Traits of an event that asks a thread to end: closing it sets it.
struct EndingEventTraits {
  using Handle = HANDLE;
  static Handle Empty() noexcept { return nullptr; }
  static void Close(Handle handle) noexcept {
    ::SetEvent(handle);
    ::CloseHandle(handle);
  }
};

using EndingEvent = Owner<EndingEventTraits>;

/// A running watch, or none. Its thread ends when this is destroyed or assigned to: at once while it waits for a
/// change, and after its message while the window handles that. Nothing waits for the thread.
struct FolderWatch {
  KernelHandle thread;
  EndingEvent ending;

  explicit operator bool() const noexcept { return static_cast<bool>(thread); }
};

/// The argument of a thread, which owns it.
struct FolderWatchContext {
  std::wstring folder; // unexpanded
  HWND window;
  UINT message;
  ChangeHandle firstChange; // the watch for the first change, already open
  KernelHandle ending;      // the thread's own handle of its end
};

/// The thread's function: `context` is a FolderWatchContext on the heap. Sends the message once for each change that it
/// sees. Returns 0 when it is asked to end, when the window is gone, and when the folder can't be watched any more.
DWORD WINAPI FolderWatchThread(void *context);

/// Starts a thread that sends `message` to `window` when a file in the unexpanded `folder` is written. The watch is
/// open when this returns: the first change after that isn't missed. Empty when the folder can't be watched and, with a
/// line in the log, when the platform can't start a thread.
FolderWatch StartFolderWatch(const std::wstring &folder, HWND window, UINT message);

} // namespace lumenor
