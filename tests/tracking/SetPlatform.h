#pragma once
// What the tests of tracking set of the platform: the clock, new identifiers, and what is started with the Shell. One
// of each at a time.

#include <string>
#include <vector>

#include "support/ImportSlot.h"

#include <rpc.h>
#include <shellapi.h>

extern "C" {
extern decltype(&::GetSystemTime) __imp_GetSystemTime;
extern decltype(&::GetLocalTime) __imp_GetLocalTime;
extern decltype(&::UuidCreate) __imp_UuidCreate;
extern decltype(&::ShellExecuteW) __imp_ShellExecuteW;
}

namespace lumenor {

/// A moment; the day of the week is left at zero.
inline SYSTEMTIME Moment(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second, WORD milliseconds = 0) {
  return {year, month, 0, day, hour, minute, second, milliseconds};
}

/// A clock that stops at what the test sets: at first 3/5/2024 6:07:08 UTC, which is 8:07:08 here.
class SetClock {
public:
  SetClock() {
    utc = Moment(2024, 3, 5, 6, 7, 8);
    local = Moment(2024, 3, 5, 8, 7, 8);
  }
  void SetUtc(const SYSTEMTIME &time) const { utc = time; }
  void SetLocal(const SYSTEMTIME &time) const { local = time; }

private:
  static void WINAPI GiveUtc(SYSTEMTIME *time) { *time = utc; }
  static void WINAPI GiveLocal(SYSTEMTIME *time) { *time = local; }

  inline static SYSTEMTIME utc, local;
  const tests::ImportSlot<decltype(&::GetSystemTime)> systemSlot{&__imp_GetSystemTime, GiveUtc};
  const tests::ImportSlot<decltype(&::GetLocalTime)> localSlot{&__imp_GetLocalTime, GiveLocal};
};

/// New identifiers are 00000001-0203-0405-0607-08090a0b0c0d, 00000002-0203-... and so on; or there are none.
class SetIdentifiers {
public:
  SetIdentifiers() {
    count = 0;
    status = RPC_S_OK;
  }
  void SetStatus(RPC_STATUS result) const { status = result; }

  /// Continues as if `given` identifiers had been made.
  void SetCount(unsigned long given) const { count = given; }

private:
  static RPC_STATUS RPC_ENTRY Create(UUID *uuid) {
    if (status == RPC_S_OK || status == RPC_S_UUID_LOCAL_ONLY)
      *uuid = {++count, 0x0203, 0x0405, {6, 7, 8, 9, 10, 11, 12, 13}};
    return status;
  }

  inline static unsigned long count;
  inline static RPC_STATUS status;
  const tests::ImportSlot<decltype(&::UuidCreate)> slot{&__imp_UuidCreate, Create};
};

/// One call of ShellExecuteW.
struct ShellStart {
  bool hasWindow;
  std::wstring verb, program, arguments, folder;
  int show;
  bool operator==(const ShellStart &) const = default;
};

/// Notes what the Shell is asked to start; nothing starts.
class NotedStarts {
public:
  NotedStarts() { starts.clear(); }
  const std::vector<ShellStart> &All() const { return starts; }

private:
  static HINSTANCE WINAPI Note(HWND window, LPCWSTR verb, LPCWSTR program, LPCWSTR arguments, LPCWSTR folder,
                               INT show) {
    starts.push_back({window != nullptr, verb, program, arguments, folder, show});
    return nullptr; // a failed start
  }

  inline static std::vector<ShellStart> starts;
  const tests::ImportSlot<decltype(&::ShellExecuteW)> slot{&__imp_ShellExecuteW, Note};
};

} // namespace lumenor
