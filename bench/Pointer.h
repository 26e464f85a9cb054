#pragma once
// The benchmarks of the mouse: what a sweep along the bar, a hover and a click that opens a list cost.

#include "e2e/Installation.h"

namespace lumenor::bench {

/// Moves the real cursor over a bar in this process and over one in a process of its own. Expects the dock's folder as
/// the current one.
void BenchPointer(const e2e::Installation &installation);

} // namespace lumenor::bench
