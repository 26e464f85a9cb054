#pragma once
// The thread that watches the registry value of the dock's edge and tells the dock's window by a posted message. One
// runs per life of the main window, which ends it with TerminateThread while it sleeps.

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

/// The name of the auto-reset event on which the thread sleeps.
constexpr wchar_t registryListenerEventName[] = L"PCDOCK_REGISTRY_LISTENER";

/// What the thread is handed; it owns and frees it.
struct RegistryListenerContext {
  KernelHandle event;
  HWND window;
  UINT topMessage;
  UINT bottomMessage;
  HANDLE watching; // borrowed from the starter, who waits for it; null when nobody does
};

/// The thread's entry: `context` is a RegistryListenerContext on the heap. Returns E_FAIL when the key can't be opened,
/// 0 when the wait ended otherwise than by the event.
DWORD WINAPI RegistryListenerThread(void *context);

/// Starts the thread on `event` for the dock's `window` and returns the thread's handle, empty when there is none to be
/// had. Comes back when the thread has read the present value and its watch stands, or when it has ended: from then on
/// no change is missed, and the thread is safe to terminate.
KernelHandle StartRegistryListener(KernelHandle event, HWND window);

} // namespace lumenor
