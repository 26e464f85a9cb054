#include "support/FolderThreads.h"

#include <algorithm>

#include "support/MessagePump.h"
#include "system/FolderWatcher.h"

extern "C" {
extern decltype(&::CreateThread) __imp_CreateThread;
extern decltype(&::FindFirstChangeNotificationW) __imp_FindFirstChangeNotificationW;
extern decltype(&::FindCloseChangeNotification) __imp_FindCloseChangeNotification;
extern decltype(&::WaitForMultipleObjects) __imp_WaitForMultipleObjects;
}

namespace lumenor::tests {

namespace {

/// The platform's own lock: the standard library's may itself wait by the function that is exchanged here.
class Locked {
public:
  explicit Locked(SRWLOCK &lock) : lock(lock) { ::AcquireSRWLockExclusive(&lock); }
  ~Locked() { ::ReleaseSRWLockExclusive(&lock); }
  Locked(const Locked &) = delete;
  Locked &operator=(const Locked &) = delete;

private:
  SRWLOCK &lock;
};

KernelHandle Duplicate(HANDLE thread) {
  KernelHandle copy;
  ::DuplicateHandle(::GetCurrentProcess(), thread, ::GetCurrentProcess(), copy.Put(), 0, FALSE, DUPLICATE_SAME_ACCESS);
  return copy;
}

} // namespace

FolderThreads::FolderThreads()
    : ended(::CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      createThread((current = this, &__imp_CreateThread), &CreateThreadNoted),
      openWatch(&__imp_FindFirstChangeNotificationW, &OpenWatchNoted),
      closeWatch(&__imp_FindCloseChangeNotification, &CloseWatchNoted),
      wait(&__imp_WaitForMultipleObjects, &WaitUnlessEnded) {}

FolderThreads::~FolderThreads() { End(); }

std::vector<FolderThreads::Start> FolderThreads::Starts() const {
  const Locked locked(lock);
  return starts;
}

std::vector<FolderThreads::Watch> FolderThreads::Watches() const {
  const Locked locked(lock);
  return watches;
}

std::size_t FolderThreads::StandingWatches() const {
  const Locked locked(lock);
  return standing.size();
}

std::size_t FolderThreads::Alive() const {
  const Locked locked(lock);
  return static_cast<std::size_t>(std::count_if(threads.begin(), threads.end(), [](const KernelHandle &thread) {
    return ::WaitForSingleObject(thread.Get(), 0) == WAIT_TIMEOUT;
  }));
}

bool FolderThreads::End() {
  ::SetEvent(ended.Get());
  return PumpUntil([this] { return Alive() == 0; }); // a thread may wait for the answer of a window of this one
}

HANDLE WINAPI FolderThreads::CreateThreadNoted(SECURITY_ATTRIBUTES *security, SIZE_T stackBytes,
                                               LPTHREAD_START_ROUTINE start, void *context, DWORD flags, DWORD *id) {
  const HANDLE thread = current->createThread.Former()(security, stackBytes, start, context, flags, id);
  if (thread != nullptr && start == &FolderWatchThread) {
    const Locked locked(current->lock);
    current->threads.push_back(Duplicate(thread));
    current->starts.push_back({stackBytes, flags});
  }
  return thread;
}

HANDLE WINAPI FolderThreads::OpenWatchNoted(const wchar_t *folder, BOOL subtree, DWORD filter) {
  const HANDLE watch = current->openWatch.Former()(folder, subtree, filter);
  const Locked locked(current->lock);
  current->watches.push_back({folder, subtree, filter});
  if (watch != INVALID_HANDLE_VALUE)
    current->standing.push_back(watch);
  return watch;
}

BOOL WINAPI FolderThreads::CloseWatchNoted(HANDLE watch) {
  {
    const Locked locked(current->lock);
    std::erase(current->standing, watch);
  }
  return current->closeWatch.Former()(watch);
}

DWORD WINAPI FolderThreads::WaitUnlessEnded(DWORD count, const HANDLE *handles, BOOL all, DWORD milliseconds) {
  std::vector<HANDLE> any(handles, handles + count);
  bool isWatch = false;
  {
    const Locked locked(current->lock);
    isWatch =
        std::find_first_of(any.begin(), any.end(), current->standing.begin(), current->standing.end()) != any.end();
  }
  if (!isWatch)
    return current->wait.Former()(count, handles, all, milliseconds);
  any.push_back(current->ended.Get());
  const DWORD answer = current->wait.Former()(count + 1, any.data(), FALSE, milliseconds);
  return answer == WAIT_OBJECT_0 + count ? WAIT_FAILED : answer;
}

} // namespace lumenor::tests
