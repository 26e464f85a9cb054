#include "system/EventLog.h"

#include "system/Handles.h"
#include "system/Log.h"

namespace lumenor {

namespace {

constexpr wchar_t eventSource[] = L"LumenorPanel";
constexpr DWORD errorEventId = 100; // of every report

// Never closed, on purpose: failures are reported until the end of the process, which closes it.
HANDLE eventLog = nullptr;

using EventSource = Owner<NullHandleTraits<HANDLE, &::DeregisterEventSource>>;

bool Report(HANDLE log, const std::wstring &text) {
  LPCWSTR strings[] = {text.c_str()};
  return ::ReportEventW(log, EVENTLOG_ERROR_TYPE, 0, errorEventId, nullptr, 1, 0, strings, nullptr) != FALSE;
}

/// With a handle of its own: that of OpenEventLogW is for reading, and most platforms refuse a report with it.
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
