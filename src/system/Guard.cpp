#include "system/Guard.h"

#include <string>

#include "system/EventLog.h"

namespace lumenor {

void ReportUnhandledException(const wchar_t *handlerName) noexcept {
  try {
    ReportEventLogError(std::wstring(L"caught an unhandled exception in ") + handlerName);
  } catch (...) {
    // No memory is left for the text: the handler's failure still ends its window, unreported.
  }
}

} // namespace lumenor
