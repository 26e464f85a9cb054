#pragma once
// Checks a shortcut's file before the platform reads it: when the list of items in it is cut off, the platform reads
// uninitialised memory, and sometimes crashes. Stateless; any thread.

namespace lumenor::services {

/// Whether the file has a list of items that isn't whole. False for a file that can't be read, whose failure the
/// platform reports itself.
bool HasBrokenItemList(const wchar_t *path);

} // namespace lumenor::services
