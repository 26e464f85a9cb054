#include "app/SingleInstance.h"

#include "system/Text.h"

#include <tlhelp32.h>

namespace lumenor {

namespace {

constexpr wchar_t dockProcessName[] = L"LumenorPanel.exe";

/// Makes the event, which every user of the machine may open. If the platform fails to describe that, the event gets no
/// security, and only a second start of the same user finds it. The last error says whether the event was there before.
KernelHandle CreateGuardEvent() {
  SECURITY_DESCRIPTOR openToAll{};
  SECURITY_ATTRIBUTES attributes{sizeof attributes, &openToAll, TRUE};
  const bool isDescribed = ::InitializeSecurityDescriptor(&openToAll, SECURITY_DESCRIPTOR_REVISION) &&
                           ::SetSecurityDescriptorDacl(&openToAll, TRUE, nullptr, FALSE) &&
                           ::SetSecurityDescriptorGroup(&openToAll, nullptr, FALSE) &&
                           ::SetSecurityDescriptorSacl(&openToAll, FALSE, nullptr, FALSE);
  return KernelHandle(::CreateEventW(isDescribed ? &attributes : nullptr, TRUE, FALSE, instanceGuardEventName));
}

} // namespace

bool IsDockProcessRunning() {
  const FileHandle snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  if (!snapshot)
    return false;
  PROCESSENTRY32W process = {};
  process.dwSize = sizeof process;
  for (BOOL more = ::Process32FirstW(snapshot.Get(), &process); more; more = ::Process32NextW(snapshot.Get(), &process))
    if (EqualsIgnoringCase(process.szExeFile, dockProcessName))
      return true;
  return false;
}

bool SingleInstance::Join(UINT activateMessage) {
  if (const KernelHandle running(::OpenEventW(SYNCHRONIZE, FALSE, instanceGuardEventName)); running) {
    if (!IsDockProcessRunning())
      ::PostMessageW(HWND_BROADCAST, activateMessage, 0, 0);
    return false;
  }
  KernelHandle event = CreateGuardEvent();
  if (event && ::GetLastError() == ERROR_ALREADY_EXISTS)
    return false;
  instanceGuardEvent = std::move(event);
  return true;
}

} // namespace lumenor
