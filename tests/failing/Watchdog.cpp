#include "failing/Watchdog.h"

#include <array>
#include <cstdio>

#include "failing/ProductCode.h"
#include "support/ChildProcess.h"

namespace lumenor::failing {

namespace {

using Places = std::array<const void *, 100>;

/// Where a suspended thread is, and all that called it.
int TakeStack(HANDLE thread, Places &places) {
  CONTEXT context = {};
  context.ContextFlags = CONTEXT_FULL;
  ::GetThreadContext(thread, &context);
  int count = 0;
  while (context.Rip != 0 && count < static_cast<int>(places.size())) {
    places[static_cast<std::size_t>(count++)] = reinterpret_cast<const void *>(context.Rip);
    DWORD64 base = 0;
    if (auto *const entry = ::RtlLookupFunctionEntry(context.Rip, &base, nullptr); entry != nullptr) {
      void *data = nullptr;
      DWORD64 frame = 0;
      ::RtlVirtualUnwind(UNW_FLAG_NHANDLER, base, context.Rip, entry, &context, &data, &frame, nullptr);
    } else {
      context.Rip = *reinterpret_cast<const DWORD64 *>(context.Rsp);
      context.Rsp += sizeof(DWORD64);
    }
  }
  return count;
}

void PrintStack(HANDLE thread) {
  static Places places;
  ::SuspendThread(thread);
  const int count = TakeStack(thread, places);
  ::ResumeThread(thread); // it may hold the lock of the memory
  for (int i = 0; i < count; ++i)
    if (const void *const place = places[static_cast<std::size_t>(i)]; IsProductCode(place))
      std::printf("    in %s\n", DescribeCode(place).c_str());
}

} // namespace

Watchdog::Watchdog(const std::atomic<std::uint64_t> &progress, std::chrono::seconds longestSilence)
    : progress(progress) {
  const HANDLE process = ::GetCurrentProcess();
  ::DuplicateHandle(process, ::GetCurrentThread(), process, &mainThread, 0, FALSE, DUPLICATE_SAME_ACCESS);
  thread = std::thread([this, longestSilence] { Watch(longestSilence); });
}

Watchdog::~Watchdog() {
  isOver = true;
  thread.join();
  ::CloseHandle(mainThread);
}

void Watchdog::Watch(std::chrono::seconds longestSilence) const {
  using Clock = std::chrono::steady_clock;
  std::uint64_t last = progress;
  for (Clock::time_point moved = Clock::now(); !isOver; std::this_thread::sleep_for(std::chrono::milliseconds(200))) {
    if (progress != last) {
      last = progress;
      moved = Clock::now();
    } else if (Clock::now() - moved > longestSilence) {
      std::printf("hung\n");
      PrintStack(mainThread);
      std::fflush(stdout);
      ::TerminateProcess(::GetCurrentProcess(), tests::childCrashStatus);
    }
  }
}

} // namespace lumenor::failing
