#pragma once
// The resources of a process, counted from outside.

#include "system/Windows.h"

namespace lumenor::e2e {

/// The threads of the process now.
int ThreadCount(DWORD processId);

/// The handles that the process has open now; files, threads, keys, events and the like.
int HandleCount(DWORD processId);

/// The private memory of the process now, in MB; 0 when the platform refuses to tell.
double PrivateMegabytes(DWORD processId);

/// What of the process is in the machine's memory now, in MB; 0 when the platform refuses to tell.
double WorkingSetMegabytes(DWORD processId);

/// The GDI objects of the process now; 0 when the platform refuses to tell.
int GdiObjectCount(DWORD processId);

/// The windows of the process now, hidden ones and children too.
int WindowCount(DWORD processId);

} // namespace lumenor::e2e
