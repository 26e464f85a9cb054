#pragma once
// The cycles of the process: each builds the dock, runs the message loop and destroys the dock, until one ends with
// another quit code than that of a reset. To be called by the user-interface thread, with COM initialised.

namespace lumenor {

/// 1 from the first message loop of the process on. Nothing in the program reads it: in a dump it shows how far the
/// start had come.
inline int messageLoopRunning = 0;

/// Reports that the start failed, that of a cycle or what is ahead of the first one, to the event log and to the log,
/// with the place of the failed call where that is known. To be called in a `catch` block.
void ReportFailedStart() noexcept;

/// Runs cycles and returns the exit code: that of the last WM_QUIT or, after a failed cycle, the wParam of the last
/// message that was fetched, 0 when there was none. Raises nothing.
int RunCycles();

/// Releases the services of the platform that all cycles share, after the last one and before CoUninitialize: the
/// animations first, which may still play, then the imaging factory.
void ReleaseSharedServices();

} // namespace lumenor
