#pragma once
// The benchmarks of what the dock counts of its use: what it adds to a click, and what the writing of a batch costs.

#include "e2e/Installation.h"

namespace lumenor::bench {

/// Clicks on a bar in this process as a user who agreed to be counted. Expects the dock's folder as the current one.
void BenchTracking(const e2e::Installation &installation);

} // namespace lumenor::bench
