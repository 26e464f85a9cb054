#pragma once
// The benchmarks of how the dock's work grows: with the stubs of a document, the user's buttons, the rows of lists.

#include "e2e/Installation.h"

namespace lumenor::bench {

/// Rebuilds a document in this process, from 100 stubs and from 1,000.
void BenchStubs(const e2e::Installation &installation);

/// Resets and starts docks with more and more content, as processes. Installs the dock anew for each.
void BenchGrowth();

} // namespace lumenor::bench
