#pragma once
// What a process of the platform holds, counted from outside.

#include "system/Windows.h"

namespace lumenor::e2e {

/// The threads of the process now.
int ThreadCount(DWORD processId);

/// The handles that the process has open now; files, threads, keys, events and the like.
int HandleCount(DWORD processId);

/// The memory that the process has for itself now, in MB; 0 when it can't be asked.
double PrivateMegabytes(DWORD processId);

} // namespace lumenor::e2e
