#pragma once
// The module of the program: whose resources are loaded and whose window classes are registered.

#include "system/Windows.h"

namespace lumenor {

/// The handle that the entry function is given too; taken here, so that it stands for the whole life of the process and
/// in programs with another entry function as well.
inline const HINSTANCE instanceHandle = ::GetModuleHandleW(nullptr);

} // namespace lumenor
