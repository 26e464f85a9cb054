#pragma once
// The thread that watches the registry value of the dock's edge and tells the dock's window by a posted message. One
// runs per life of the main window, which kills it in its sleep.

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

/// The name of the auto-reset event on which the thread sleeps.
constexpr wchar_t registryListenerEventName[] = L"PCDOCK_REGISTRY_LISTENER";

/// Starts the thread on `event` for the dock's `window` and returns the thread's handle, empty when there is none to be
/// had. `sleeping` is a manual-reset event that is set while the thread sleeps; it outlives the thread. Comes back when
/// the thread has read the present value and its watch stands, or when it has ended: from then on no change is missed.
/// Waits a second for that at most.
KernelHandle StartRegistryListener(KernelHandle event, HWND window, HANDLE sleeping);

/// Kills the thread with TerminateThread, in its sleep, where it holds no lock; one that doesn't come back to its sleep
/// within a second, anywhere. Its key, its event and its context stay as they are.
void EndRegistryListener(HANDLE thread, HANDLE sleeping);

/// The listener of one main window: the thread with the events that belong to it. A member of the dock.
class RegistryThread {
public:
  /// Starts the listener for the dock's `window`.
  void Start(HWND window);

  /// Ends the listener, if one was started. It sleeps in a wait that nothing else ends: its event belongs to the
  /// registry's notification and has a name that the next cycle's thread shares, so signalling it can't mean an end.
  void End();

private:
  KernelHandle sleeping; // an event, set while the thread sleeps
  KernelHandle thread;
};

} // namespace lumenor
