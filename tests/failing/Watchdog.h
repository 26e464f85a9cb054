#pragma once
// Ends a process whose work stands still, and prints where its main thread is.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

#include "system/Windows.h"

namespace lumenor::failing {

class Watchdog {
public:
  /// Made on the main thread. The work stands still when `progress` doesn't change for so long.
  Watchdog(const std::atomic<std::uint64_t> &progress, std::chrono::seconds longestSilence);
  ~Watchdog();
  Watchdog(const Watchdog &) = delete;
  Watchdog &operator=(const Watchdog &) = delete;

private:
  void Watch(std::chrono::seconds longestSilence) const;

  const std::atomic<std::uint64_t> &progress;
  HANDLE mainThread = nullptr;
  std::atomic<bool> isOver = false;
  std::thread thread;
};

} // namespace lumenor::failing
