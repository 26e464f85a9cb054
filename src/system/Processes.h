#pragma once
// Questions about the running processes. Stateless; any thread.

namespace lumenor {

/// Whether a process "LumenorPanel.exe" runs, in any case of its letters; false when the processes can't be listed. The
/// installed dock has another name on purpose, so on an ordinary installation this is false.
bool IsDockProcessRunning();

} // namespace lumenor
