#pragma once
// The program's module, which the resources are loaded from and the window classes are registered with.

#include "system/Windows.h"

namespace lumenor {

/// The handle that the entry function gets too; queried here, so that it is valid for the whole life of the process and
/// in programs with another entry function as well.
inline const HINSTANCE instanceHandle = ::GetModuleHandleW(nullptr);

} // namespace lumenor
