#pragma once
// A look at a shortcut's file before the platform reads it: where the list of items in it breaks off, the platform
// walks on through memory that nobody has written, and crashes now and then. Stateless; any thread.

namespace lumenor::services {

/// Whether the file has a list of items that isn't whole. A file that can't be read hasn't one: what is wrong with that
/// the platform finds out itself.
bool HasBrokenItemList(const wchar_t *path);

} // namespace lumenor::services
