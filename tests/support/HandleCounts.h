#pragma once
// The platform objects of the process, counted by walking the handle values: the platform's own counters return 0 on
// the test platform. Take the difference over a repeated action.

namespace lumenor::tests {

/// GDI objects of this process; 0.1 ms.
int CountGdiObjects();

/// Windows of this process, children included; 0.3 s.
int CountWindows();

/// Kernel handles of this process; 40 ms.
int CountKernelHandles();

} // namespace lumenor::tests
