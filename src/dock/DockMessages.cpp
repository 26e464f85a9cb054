#include "dock/DockMessages.h"

#include "system/Log.h"
#include "system/ScopeExit.h"

namespace lumenor {

namespace {

struct SentAddress {
  UINT message = 0;
  WPARAM address = 0;
};

SentAddress sentAddress; // the innermost one of the messages that are being sent

} // namespace

LRESULT SendAddress(HWND window, UINT message, const void *address, LPARAM lParam) {
  const auto wParam = reinterpret_cast<WPARAM>(address);
  const ScopedValue sending(sentAddress, SentAddress{message, wParam});
  return ::SendMessageW(window, message, wParam, lParam);
}

const void *ReceiveAddress(UINT message, WPARAM wParam) {
  if (wParam == 0)
    return nullptr;
  if (sentAddress.message == message && sentAddress.address == wParam)
    return reinterpret_cast<const void *>(wParam);
  LogError("Message %u with an address that the dock didn't send", message);
  return nullptr;
}

} // namespace lumenor
