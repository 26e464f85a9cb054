#pragma once
// Disks that fail during a write: as long as one of these lives, the program's own writes of files fail.

#include "support/ImportSlot.h"

extern "C" decltype(&::WriteFile) __imp_WriteFile;
extern "C" decltype(&::FlushFileBuffers) __imp_FlushFileBuffers;

namespace lumenor::tests {

/// Takes `takenBytes` of each write and is full then.
class FullDisk {
public:
  explicit FullDisk(DWORD takenBytes = 0) {
    taken = takenBytes;
    platformWrite = slot.Former();
  }

private:
  static BOOL WINAPI Write(HANDLE file, LPCVOID bytes, DWORD size, LPDWORD written, LPOVERLAPPED overlapped) {
    if (size <= taken)
      return platformWrite(file, bytes, size, written, overlapped);
    platformWrite(file, bytes, taken, written, overlapped);
    ::SetLastError(ERROR_DISK_FULL);
    return FALSE;
  }

  static inline DWORD taken = 0;
  static inline decltype(&::WriteFile) platformWrite = nullptr;

  const ImportSlot<decltype(__imp_WriteFile)> slot{&__imp_WriteFile, &Write};
};

/// Takes half of each write and calls it a success.
class HalfDisk {
public:
  HalfDisk() { platformWrite = slot.Former(); }

private:
  static BOOL WINAPI Write(HANDLE file, LPCVOID bytes, DWORD size, LPDWORD written, LPOVERLAPPED overlapped) {
    return platformWrite(file, bytes, size / 2, written, overlapped);
  }

  static inline decltype(&::WriteFile) platformWrite = nullptr;

  const ImportSlot<decltype(__imp_WriteFile)> slot{&__imp_WriteFile, &Write};
};

/// Takes every write and fails to flush it to the disk.
class LossyDisk {
private:
  static BOOL WINAPI Flush(HANDLE) {
    ::SetLastError(ERROR_IO_DEVICE);
    return FALSE;
  }

  const ImportSlot<decltype(__imp_FlushFileBuffers)> slot{&__imp_FlushFileBuffers, &Flush};
};

} // namespace lumenor::tests
