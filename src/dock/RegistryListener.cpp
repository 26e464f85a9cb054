#include "dock/RegistryListener.h"

#include <array>
#include <memory>
#include <string>
#include <utility>

#include "dock/DockMessages.h"
#include "dock/Placement.h"
#include "system/Guard.h"

namespace lumenor {

namespace {

/// Asks for the next change. A notification is good for one only.
void AskForChange(HKEY key, HANDLE event) {
  ::RegNotifyChangeKeyValue(key, FALSE, REG_NOTIFY_CHANGE_LAST_SET, event, TRUE);
}

void PostIfMoved(const RegistryListenerContext &context, std::wstring &last) {
  std::wstring current = GetDockPosition();
  if (current == last)
    return;
  last = std::move(current);
  ::PostMessageW(context.window, last == L"Top" ? context.topMessage : context.bottomMessage, 0, 0);
}

DWORD Listen(RegistryListenerContext &context) {
  RegistryKey key;
  if (::RegOpenKeyExW(HKEY_CURRENT_USER, L"SOFTWARE\\Tarnwick\\Lumenor", 0, KEY_READ, key.Put()) != ERROR_SUCCESS)
    return static_cast<DWORD>(E_FAIL);
  // The value is read behind each asking, never ahead of it: a change between the two wakes the thread once more.
  AskForChange(key.Get(), context.event.Get());
  std::wstring last = GetDockPosition();
  if (const HANDLE watching = std::exchange(context.watching, nullptr); watching != nullptr)
    ::SetEvent(watching);
  while (::WaitForSingleObject(context.event.Get(), INFINITE) == WAIT_OBJECT_0) {
    AskForChange(key.Get(), context.event.Get());
    PostIfMoved(context, last);
  }
  return 0;
}

} // namespace

DWORD WINAPI RegistryListenerThread(void *context) {
  const std::unique_ptr<RegistryListenerContext> owned(static_cast<RegistryListenerContext *>(context));
  try {
    return Listen(*owned);
  } catch (...) {
    ReportUnhandledException(L"RegistryListenerThread"); // not by a guard: that one belongs to the windows' thread
    return static_cast<DWORD>(E_FAIL);
  }
}

KernelHandle StartRegistryListener(KernelHandle event, HWND window) {
  // Ending a thread that is still starting, or that holds the heap's lock, would leave the process with a lock that
  // nobody gives back. So the caller gets the handle only when the thread is on its way into its sleep.
  const KernelHandle watching(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
  auto context = std::make_unique<RegistryListenerContext>(
      RegistryListenerContext{std::move(event), window, DockAtTopMessage, DockAtBottomMessage, watching.Get()});
  KernelHandle thread(::CreateThread(nullptr, 0, RegistryListenerThread, context.get(), 0, nullptr));
  if (!thread)
    return thread;
  context.release();
  const std::array<HANDLE, 2> either = {watching.Get(), thread.Get()};
  ::WaitForMultipleObjects(static_cast<DWORD>(either.size()), either.data(), FALSE, INFINITE);
  return thread;
}

} // namespace lumenor
