#include "app/FailedStart.h"

#include "system/EventLog.h"
#include "system/Guard.h"
#include "system/Log.h"

namespace lumenor {

namespace {

constexpr wchar_t failureText[] = L"Failed to initialize Lumenor";

} // namespace

void ReportFailedStart() noexcept {
  try {
    ReportEventLogError(failureText);
    LogFatal("%S", failureText);
    LogFailedCall(failureText);
  } catch (...) {
    // No memory is left for the text: the start has failed all the same, unreported.
  }
}

} // namespace lumenor
