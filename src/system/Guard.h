#pragma once
// The guard around every named message handler. Only for the thread that owns the windows.

#include <utility>

#include "system/WindowException.h"

namespace lumenor {

/// Reports "caught an unhandled exception in " and the handler's name to the event log, and the place of the failed
/// call to the log. To be called in a `catch` block.
void ReportUnhandledException(const wchar_t *handlerName) noexcept;

/// Writes `failure` to the log with the HRESULT and the place of the HResultError that is being handled; nothing of any
/// other exception. To be called in a `catch` block.
void LogFailedCall(const wchar_t *failure);

/// Runs `body`. When it raises, or a window that it called kept an exception, reports that with the handler's name and
/// returns false; the caller then destroys its window. An exception that was kept before stays kept for its own
/// handler. Raises nothing.
template <typename Body> bool Guarded(const wchar_t *handlerName, Body &&body) noexcept {
  const WindowExceptionScope ownFailures;
  try {
    std::forward<Body>(body)();
    RethrowWindowException();
    return true;
  } catch (...) {
    ForgetWindowException(); // a nested window's exception is part of this handler's failure, which is reported once
    ReportUnhandledException(handlerName);
    return false;
  }
}

} // namespace lumenor
