#pragma once
// Processor time, for tests that ask whether something is cheap: unlike the clock it doesn't depend on how busy the
// machine is.

#include "system/Windows.h"

namespace lumenor::tests {

/// What all threads of this process have used so far, in milliseconds.
inline ULONGLONG ProcessorMs() {
  FILETIME created = {}, ended = {}, kernel = {}, user = {};
  ::GetProcessTimes(::GetCurrentProcess(), &created, &ended, &kernel, &user);
  const auto units = [](const FILETIME &time) {
    return ULARGE_INTEGER{{time.dwLowDateTime, time.dwHighDateTime}}.QuadPart;
  };
  constexpr ULONGLONG unitsPerMs = 10'000; // of 100 nanoseconds
  return (units(kernel) + units(user)) / unitsPerMs;
}

} // namespace lumenor::tests
