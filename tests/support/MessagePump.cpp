#include "support/MessagePump.h"

#include "system/WindowException.h"
#include "system/Windows.h"

namespace lumenor::tests {

void PumpMessages() {
  MSG message;
  while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
    RethrowWindowException();
  }
}

bool PumpUntil(const std::function<bool()> &condition, std::chrono::milliseconds limit) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  for (;;) {
    PumpMessages();
    if (condition())
      return true;
    if (std::chrono::steady_clock::now() >= deadline)
      return false;
    ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
  }
}

} // namespace lumenor::tests
