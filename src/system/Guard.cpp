#include "system/Guard.h"

#include <string>

#include "system/EventLog.h"
#include "system/HResultError.h"
#include "system/Log.h"

namespace lumenor {

void ReportUnhandledException(const wchar_t *handlerName) noexcept {
  try {
    ReportEventLogError(std::wstring(L"caught an unhandled exception in ") + handlerName);
    LogFailedCall(handlerName);
  } catch (...) {
    // No memory is left for the text: the failure still destroys the handler's window, unreported.
  }
}

void LogFailedCall(const wchar_t *failure) try { throw; } catch (const HResultError &error) {
  LogError("%S: a call failed with 0x%x at %s:%u", failure, error.Result(), error.File(), error.Line());
} catch (...) {
}

} // namespace lumenor
