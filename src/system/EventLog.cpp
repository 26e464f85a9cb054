#include "system/EventLog.h"

#include "system/Handles.h"
#include "system/Log.h"

namespace lumenor {

namespace {

constexpr wchar_t eventSource[] = L"LumenorPanel";
constexpr DWORD errorEventId = 100; // of every report

// Never closed, on purpose: failures are reported up to the process's very end, which closes it.
HANDLE eventLog = nullptr;

using EventSource = Owner<NullHandleTraits<HANDLE, &::DeregisterEventSource>>;

bool Report(HANDLE log, const std::wstring &text) {
  LPCWSTR strings[] = {text.c_str()};
  return ::ReportEventW(log, EVENTLOG_ERROR_TYPE, 0, errorEventId, nullptr, 1, 0, strings, nullptr) != FALSE;
}

/// By a handle of its own: one that OpenEventLogW gave is for reading, and most platforms take no report by it.
bool ReportAsSource(const std::wstring &text) {
  const EventSource source(::RegisterEventSourceW(nullptr, eventSource));
  return source && Report(source.Get(), text);
}

} // namespace

void OpenDockEventLog() { eventLog = ::OpenEventLogW(nullptr, eventSource); }

void ReportEventLogError(const std::wstring &text) {
  if (eventLog == nullptr || !(Report(eventLog, text) || ReportAsSource(text)))
    LogError("EventLog: Could not report: %S", text.c_str());
}

} // namespace lumenor
