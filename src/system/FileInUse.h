#pragma once
// Retries for files that another program has open. A virus scanner, an indexer or a backup holds a file for a moment,
// and an operation that fails meanwhile succeeds a little later. Any thread; it sleeps between the tries.

#include "system/Windows.h"

namespace lumenor {

/// For how long a file may be in use before an operation counts as failed.
inline constexpr DWORD fileInUseLimitMs = 250;
inline constexpr DWORD fileInUseStepMs = 50;

/// Whether the error says that another program has the file open.
constexpr bool IsFileInUse(DWORD error) noexcept {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

/// The same of a file that is to be replaced by another one, which the platform refuses with more errors.
constexpr bool IsReplacedFileInUse(DWORD error) noexcept {
  return IsFileInUse(error) || error == ERROR_ACCESS_DENIED || error == ERROR_USER_MAPPED_FILE;
}

/// Calls `attempt`, which returns true for a success and otherwise sets the last error, until it succeeds, fails with
/// an error that `isInUse` doesn't accept, or the file has been in use for too long. Returns whether it succeeded; the
/// last error is that of the last try.
template <typename Attempt> bool TryWhileInUse(Attempt &&attempt, bool (*isInUse)(DWORD) noexcept = &IsFileInUse) {
  for (DWORD waitedMs = 0; !attempt(); waitedMs += fileInUseStepMs) {
    if (waitedMs == fileInUseLimitMs || !isInUse(::GetLastError()))
      return false;
    ::Sleep(fileInUseStepMs);
  }
  return true;
}

} // namespace lumenor
