#pragma once
// The guard around every named message handler. Only for the thread that owns the windows.

#include <utility>

#include "system/WindowException.h"

namespace lumenor {

/// Reports "caught an unhandled exception in " and the handler's name to the event log; for Guarded.
void ReportUnhandledException(const wchar_t *handlerName) noexcept;

/// Runs `body`. When it raises, or a window that it called into kept an exception, reports that with the handler's name
/// and returns false; the caller then destroys its window. What was kept before stays kept for whoever it belongs to.
/// Raises nothing itself.
template <typename Body> bool Guarded(const wchar_t *handlerName, Body &&body) noexcept {
  const WindowExceptionScope ownFailures;
  try {
    std::forward<Body>(body)();
    RethrowWindowException();
    return true;
  } catch (...) {
    ForgetWindowException(); // what a nested window kept failed with this handler; it is reported once
    ReportUnhandledException(handlerName);
    return false;
  }
}

} // namespace lumenor
