#pragma once
// The jump list at the start of a cycle, on the one platform that gets it. User-interface thread, with COM initialised.

namespace lumenor {

/// Whether the platform's version is exactly 6.1; a later one gets no jump list.
bool IsJumpListPlatform();

/// Whether the process has the ID of the dock's jump list.
inline bool hasApplicationId = false;

/// Gives the process that ID unless it has it, and publishes the list; on another platform it does neither. Raises
/// HResultError.
void PublishJumpList();

} // namespace lumenor
