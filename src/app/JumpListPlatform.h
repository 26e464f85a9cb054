#pragma once
// The jump list at the start of a cycle, on the one platform that gets it. User-interface thread, with COM initialised.

namespace lumenor {

/// Whether the platform's version is exactly 6.1; a later one gets no jump list.
bool IsJumpListPlatform();

/// Gives the process the id that the shell knows the dock's jump list by, and publishes the list; on another platform
/// neither. Raises HResultError.
void PublishJumpList();

} // namespace lumenor
