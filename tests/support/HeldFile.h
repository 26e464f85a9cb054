#pragma once
// A file that another program has open for a while. The time is counted in the waits of the program under test, which
// return at once here, so that nothing depends on how busy the machine is.

#include <functional>
#include <string>

#include "support/ImportSlot.h"
#include "system/Handles.h"

extern "C" decltype(&::Sleep) __imp_Sleep;

namespace lumenor::tests {

class HeldFile {
public:
  static constexpr int forEver = 0;

  /// Opens the file for reading and lets others do no more than `share`, until the program waits for the `waits`-th
  /// time.
  explicit HeldFile(const std::wstring &path, int waits = forEver, DWORD share = 0)
      : file(::CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr)) {
    waited = 0;
    waitedMs = 0;
    onWait = [this, waits] {
      if (waited == waits)
        file.Reset();
    };
  }
  ~HeldFile() {
    onWait = [] {};
  }
  HeldFile(const HeldFile &) = delete;
  HeldFile &operator=(const HeldFile &) = delete;

  bool IsHeld() const { return static_cast<bool>(file); }

  /// How long the program has asked to wait so far.
  static DWORD WaitedMs() { return waitedMs; }

private:
  static void WINAPI Wait(DWORD milliseconds) {
    ++waited;
    waitedMs += milliseconds;
    onWait();
  }

  static inline int waited = 0;
  static inline DWORD waitedMs = 0;
  static inline std::function<void()> onWait = [] {};

  FileHandle file;
  const ImportSlot<decltype(__imp_Sleep)> slot{&__imp_Sleep, &Wait};
};

} // namespace lumenor::tests
