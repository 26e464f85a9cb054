#pragma once
// How often the test program has taken memory with operator new.

#include <cstddef>

namespace lumenor::tests {

std::size_t AllocationCount();

/// Blocks taken and not given back.
std::ptrdiff_t LivingAllocations();

} // namespace lumenor::tests
