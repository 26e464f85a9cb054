#include "system/EventLog.h"

#include "system/Windows.h"

namespace lumenor {

namespace {

constexpr wchar_t eventSource[] = L"LumenorPanel";
constexpr DWORD errorEventId = 100; // of every report

// Never closed, on purpose: failures are reported up to the process's very end, which closes it.
HANDLE eventLog = nullptr;

} // namespace

void OpenDockEventLog() { eventLog = ::OpenEventLogW(nullptr, eventSource); }

void ReportEventLogError(const std::wstring &text) {
  if (eventLog == nullptr)
    return;
  LPCWSTR strings[] = {text.c_str()};
  ::ReportEventW(eventLog, EVENTLOG_ERROR_TYPE, 0, errorEventId, nullptr, 1, 0, strings, nullptr);
}

} // namespace lumenor
