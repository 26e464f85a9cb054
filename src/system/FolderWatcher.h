#pragma once
// The threads that watch the folder of the user's content and tell a window by a sent message that something in it was
// written. Any thread may start one; none is ever ended by the program.

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

/// What a thread is handed; it owns and frees it.
struct FolderWatchContext {
  HWND window;
  UINT message;
  HANDLE watching; // borrowed from the starter, who waits for it; null when nobody does
};

/// The thread's entry: `context` is a FolderWatchContext on the heap. Sends the message once for each change that it
/// sees, and ends with 0 when the folder can't be watched.
DWORD WINAPI FolderWatchThread(void *context);

/// Starts a thread that sends `message` to `window` when a file in the user's folder is written, and returns its
/// handle; a handle closed early leaves the thread alone. Empty, with a line in the log, when the platform has no
/// thread to give. Comes back when the watch stands, or the thread has ended: from then on no first change is missed.
KernelHandle StartFolderWatch(HWND window, UINT message);

} // namespace lumenor
