#pragma once
// The report of a start that failed: of a cycle, or of what is ahead of the first one.

namespace lumenor {

/// Reports the failure to the event log and to the log, with the place of the failed call where that is known. To be
/// called in a `catch` block.
void ReportFailedStart() noexcept;

} // namespace lumenor
