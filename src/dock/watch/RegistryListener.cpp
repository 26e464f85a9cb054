#include "dock/watch/RegistryListener.h"

#include <memory>
#include <string>
#include <utility>

#include "dock/DockMessages.h"
#include "dock/Placement.h"
#include "system/Guard.h"
#include "system/Product.h"
#include "system/Registry.h"

namespace lumenor {

namespace {

constexpr DWORD startLimitMs = 1000; // the bar comes up also when the thread can't tell that it listens
constexpr DWORD endingLimitMs = 1000;

/// What the thread is handed; it owns and frees it.
struct RegistryListenerContext {
  KernelHandle event;
  HWND window;
  UINT topMessage;
  UINT bottomMessage;
  HANDLE sleeping; // borrowed from the starter, until the thread has ended
};

/// Asks for the next change. A notification is good for one only.
void AskForChange(HKEY key, HANDLE event) {
  ::RegNotifyChangeKeyValue(key, FALSE, REG_NOTIFY_CHANGE_LAST_SET, event, TRUE);
}

void PostIfMoved(const RegistryListenerContext &context, std::wstring &last) {
  std::wstring current = GetDockPosition();
  if (current == last)
    return;
  last = std::move(current);
  ::PostMessageW(context.window, last == topPosition ? context.topMessage : context.bottomMessage, 0, 0);
}

/// False when the wait ended otherwise than by the event.
bool SleepUntilChange(const RegistryListenerContext &context) {
  ::SetEvent(context.sleeping);
  const DWORD woken = ::WaitForSingleObject(context.event.Get(), INFINITE);
  ::ResetEvent(context.sleeping);
  return woken == WAIT_OBJECT_0;
}

/// The thread's exit code: E_FAIL when the key can't be opened, 0 when the wait ended otherwise than by the event.
DWORD Listen(const RegistryListenerContext &context) {
  const RegistryKey key = OpenRegistryKey(product::dockKey, KEY_READ);
  if (!key)
    return static_cast<DWORD>(E_FAIL);
  // The value is read behind each asking, never ahead of it: a change between the two wakes the thread once more.
  AskForChange(key.Get(), context.event.Get());
  std::wstring last = GetDockPosition();
  while (SleepUntilChange(context)) {
    AskForChange(key.Get(), context.event.Get());
    PostIfMoved(context, last);
  }
  return 0;
}

DWORD WINAPI RegistryListenerThread(void *context) {
  const std::unique_ptr<RegistryListenerContext> owned(static_cast<RegistryListenerContext *>(context));
  try {
    return Listen(*owned);
  } catch (...) {
    ReportUnhandledException(L"RegistryListenerThread"); // not by a guard: that one belongs to the windows' thread
    return static_cast<DWORD>(E_FAIL);
  }
}

/// Waits until the thread sleeps or has ended, for `limitMs` at most. True when it sleeps.
bool WaitForSleep(HANDLE thread, HANDLE sleeping, DWORD limitMs) {
  const HANDLE either[] = {sleeping, thread};
  return ::WaitForMultipleObjects(2, either, FALSE, limitMs) == WAIT_OBJECT_0;
}

/// Suspends the thread. True when it was asleep; otherwise it is resumed.
bool FreezeInSleep(HANDLE thread, HANDLE sleeping) {
  ::SuspendThread(thread);
  CONTEXT context = {};
  context.ContextFlags = CONTEXT_CONTROL;
  ::GetThreadContext(thread, &context); // the thread is suspended only once this returns
  if (::WaitForSingleObject(sleeping, 0) == WAIT_OBJECT_0)
    return true;
  ::ResumeThread(thread);
  return false;
}

} // namespace

KernelHandle StartRegistryListener(KernelHandle event, HWND window, HANDLE sleeping) {
  auto context = std::make_unique<RegistryListenerContext>(
      RegistryListenerContext{std::move(event), window, DockAtTopMessage, DockAtBottomMessage, sleeping});
  KernelHandle thread(::CreateThread(nullptr, 0, RegistryListenerThread, context.get(), 0, nullptr));
  if (!thread)
    return thread;
  context.release();
  WaitForSleep(thread.Get(), sleeping, startLimitMs);
  return thread;
}

// A thread that is killed while it starts, or while it holds the heap's lock, leaves the process with a lock that
// nobody gives back.
void EndRegistryListener(HANDLE thread, HANDLE sleeping) {
  const ULONGLONG deadline = ::GetTickCount64() + endingLimitMs;
  while (::GetTickCount64() < deadline && WaitForSleep(thread, sleeping, endingLimitMs))
    if (FreezeInSleep(thread, sleeping))
      break;
  ::TerminateThread(thread, 0);
}

void RegistryThread::Start(HWND window) {
  KernelHandle event(::CreateEventW(nullptr, FALSE, FALSE, registryListenerEventName));
  sleeping.Reset(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
  thread = StartRegistryListener(std::move(event), window, sleeping.Get());
}

void RegistryThread::End() {
  if (thread)
    EndRegistryListener(thread.Get(), sleeping.Get());
}

} // namespace lumenor
