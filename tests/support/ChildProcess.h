#pragma once
// A program that hands work to a second process of itself, which may crash or hang: both see how far the work is, and
// the first starts another one behind the piece that ended it.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>

#include "system/Handles.h"

namespace lumenor::tests {

/// The status of a child that crashed or was ended.
inline constexpr int childCrashStatus = 70;

/// A crash from now on prints a line and ends the process with that status. `describe` puts an address into words.
void EndOnCrash(std::string (*describe)(const void *address) = nullptr);

/// What the processes know of each other, under a name; all zero at first. `Shared` is made of atomic numbers.
template <typename Shared> class SharedMemory {
public:
  explicit SharedMemory(const std::wstring &name)
      : mapping(::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Shared), name.c_str())),
        view(static_cast<Shared *>(::MapViewOfFile(mapping.Get(), FILE_MAP_ALL_ACCESS, 0, 0, sizeof(Shared)))) {}
  ~SharedMemory() { ::UnmapViewOfFile(view); }
  SharedMemory(const SharedMemory &) = delete;
  SharedMemory &operator=(const SharedMemory &) = delete;

  Shared &Get() const { return *view; }

private:
  KernelHandle mapping;
  Shared *view;
};

/// Starts this program again with these words; its process.
KernelHandle StartAgain(const std::wstring &words);

/// Waits for the end of the process and returns its status. One whose `progress` doesn't change for so long is ended,
/// after a line.
DWORD WaitForChild(HANDLE process, const std::atomic<std::uint64_t> &progress, std::chrono::seconds longestSilence);

} // namespace lumenor::tests
