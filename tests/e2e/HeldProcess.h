#pragma once
// Suspends another process, to look at it in the middle of its work.

#include <vector>

#include "system/Handles.h"

namespace lumenor::e2e {

class HeldProcess {
public:
  /// Suspends every thread that the process has, for as long as this lives.
  explicit HeldProcess(DWORD processId);
  ~HeldProcess();
  HeldProcess(const HeldProcess &) = delete;
  HeldProcess &operator=(const HeldProcess &) = delete;

private:
  std::vector<KernelHandle> threads;
};

} // namespace lumenor::e2e
