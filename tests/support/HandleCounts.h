#pragma once
// The platform objects of the process, counted by walking the handle values: the platform's own counters return 0 on
// the test platform. Take the difference over a repeated action.

#include "system/Windows.h"

namespace lumenor::tests {

/// GDI objects of this process; 0.1 ms.
int CountGdiObjects();

/// GDI objects of another process, which has to be open for querying and for reading its memory; 0 when it can't be
/// read.
int CountGdiObjects(HANDLE process);

/// Windows of this process, children included; 0.3 s.
int CountWindows();

/// Kernel handles of this process; 40 ms.
int CountKernelHandles();

} // namespace lumenor::tests
