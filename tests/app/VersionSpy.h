#pragma once
// Answers for the platform's version as long as it lives.

#include "support/ImportSlot.h"
#include "system/Windows.h"

extern "C" decltype(&::GetVersionExW) __imp_GetVersionExW;

namespace lumenor::tests {

class VersionSpy {
public:
  VersionSpy(DWORD major, DWORD minor, BOOL succeeds = TRUE) {
    version = {sizeof version, major, minor, 0, 0, {}};
    result = succeeds;
    size = 0;
  }

  static inline DWORD size; // that the structure was passed with

private:
  static BOOL WINAPI Tell(LPOSVERSIONINFOW told) {
    size = told->dwOSVersionInfoSize;
    *told = version;
    return result;
  }

  static inline OSVERSIONINFOW version;
  static inline BOOL result;

  const ImportSlot<decltype(__imp_GetVersionExW)> slot{&__imp_GetVersionExW, &Tell};
};

} // namespace lumenor::tests
