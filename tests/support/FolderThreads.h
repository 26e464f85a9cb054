#pragma once
// The folder threads that start while this lives: how many there are, what they watch, and their end by a wait that
// fails. One at a time.

#include <string>
#include <vector>

#include "support/ImportSlot.h"
#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor::tests {

class FolderThreads {
public:
  FolderThreads();

  /// Ends all the threads.
  ~FolderThreads();
  FolderThreads(const FolderThreads &) = delete;
  FolderThreads &operator=(const FolderThreads &) = delete;

  /// What a thread was started with.
  struct Start {
    SIZE_T stackBytes;
    DWORD flags;
  };

  /// What a watch was asked for.
  struct Watch {
    std::wstring folder;
    BOOL subtree;
    DWORD filter;
    bool operator==(const Watch &) const = default;
  };

  std::vector<Start> Starts() const;

  /// Every watch that was asked for so far, whether the platform gave it or not.
  std::vector<Watch> Watches() const;

  /// How many watches stand now.
  std::size_t StandingWatches() const;

  /// How many of the threads still run.
  std::size_t Alive() const;

  /// Lets the wait of every thread fail and pumps until all have ended; false when one doesn't.
  bool End();

private:
  static HANDLE WINAPI CreateThreadNoted(SECURITY_ATTRIBUTES *security, SIZE_T stackBytes, LPTHREAD_START_ROUTINE start,
                                         void *context, DWORD flags, DWORD *id);
  static HANDLE WINAPI OpenWatchNoted(const wchar_t *folder, BOOL subtree, DWORD filter);
  static BOOL WINAPI CloseWatchNoted(HANDLE watch);
  static DWORD WINAPI WaitUnlessEnded(DWORD count, const HANDLE *handles, BOOL all, DWORD milliseconds);

  static inline FolderThreads *current = nullptr;

  mutable SRWLOCK lock = SRWLOCK_INIT;
  KernelHandle ended;
  std::vector<KernelHandle> threads;
  std::vector<Start> starts;
  std::vector<Watch> watches;
  std::vector<HANDLE> standing;
  ImportSlot<decltype(&::CreateThread)> createThread;
  ImportSlot<decltype(&::FindFirstChangeNotificationW)> openWatch;
  ImportSlot<decltype(&::FindCloseChangeNotification)> closeWatch;
  ImportSlot<decltype(&::WaitForMultipleObjects)> wait;
};

} // namespace lumenor::tests
