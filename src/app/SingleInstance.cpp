#include "app/SingleInstance.h"

#include "system/Processes.h"

namespace lumenor {

namespace {

/// The security of an event that every user of the machine may open. If the platform fails to make it, the event gets
/// none, and only a second start of the same user finds it.
class OpenToAll {
public:
  OpenToAll() {
    described = ::InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) &&
                ::SetSecurityDescriptorDacl(&descriptor, TRUE, nullptr, FALSE) &&
                ::SetSecurityDescriptorGroup(&descriptor, nullptr, FALSE) &&
                ::SetSecurityDescriptorSacl(&descriptor, FALSE, nullptr, FALSE);
  }

  SECURITY_ATTRIBUTES *Get() { return described ? &attributes : nullptr; }

private:
  SECURITY_DESCRIPTOR descriptor{};
  SECURITY_ATTRIBUTES attributes{sizeof(SECURITY_ATTRIBUTES), &descriptor, TRUE};
  bool described = false;
};

} // namespace

bool SingleInstance::Join(UINT activateMessage) {
  if (const KernelHandle running(::OpenEventW(SYNCHRONIZE, FALSE, instanceGuardEventName)); running) {
    if (!IsDockProcessRunning())
      ::PostMessageW(HWND_BROADCAST, activateMessage, 0, 0);
    return false;
  }
  return CreateGuardEvent();
}

bool SingleInstance::CreateGuardEvent() {
  OpenToAll security;
  KernelHandle event(::CreateEventW(security.Get(), TRUE, FALSE, instanceGuardEventName));
  const DWORD error = ::GetLastError();
  if (event && error == ERROR_ALREADY_EXISTS)
    return false;
  instanceGuardEvent = std::move(event);
  return true;
}

} // namespace lumenor
