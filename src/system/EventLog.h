#pragma once
// Reports to the system's event log. The handle belongs to the process and is opened once by the entry function; any
// thread may report after that.

#include <string>

namespace lumenor {

/// Opens the event log of the source "LumenorPanel". When that fails, reports go to the rolling log only.
void OpenDockEventLog();

/// Reports `text` as an error with event id 100. What can't be reported, as while the event log isn't open, gets a line
/// in the rolling log.
void ReportEventLogError(const std::wstring &text);

} // namespace lumenor
