#pragma once
// The jump list at the start of a cycle, on the one platform that gets it. User-interface thread, with COM initialised.

namespace lumenor {

/// Whether the platform's version is exactly 6.1; a later one gets no jump list.
bool IsJumpListPlatform();

/// Whether the process has the id that the shell knows the dock's jump list by.
inline bool hasApplicationId = false;

/// Gives the process that id unless it has it, and publishes the list; on another platform neither. Raises
/// HResultError.
void PublishJumpList();

} // namespace lumenor
