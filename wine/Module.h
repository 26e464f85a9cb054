#pragma once
// The DLL itself: whether it is still in use. Any thread.

#include "system/Windows.h"

namespace lumenor::services {

/// Keeps the DLL loaded as long as it lives: every object holds one, and every lock of a class factory.
class ModuleLock {
public:
  ModuleLock();
  ~ModuleLock();
  ModuleLock(const ModuleLock &) = delete;
  ModuleLock &operator=(const ModuleLock &) = delete;

  /// How many there are.
  static long Count();
};

/// The handle that window classes of the DLL are registered with.
HINSTANCE ModuleInstance();

} // namespace lumenor::services
