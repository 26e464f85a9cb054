#include "toolkit/AllocationCount.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t taken = 0;
std::size_t given = 0;

} // namespace

void *operator new(std::size_t size) {
  ++taken;
  if (void *block = std::malloc(size == 0 ? 1 : size))
    return block;
  throw std::bad_alloc();
}

void operator delete(void *block) noexcept {
  given += block != nullptr;
  std::free(block);
}

void operator delete(void *block, std::size_t) noexcept { ::operator delete(block); }

namespace lumenor::tests {

std::size_t AllocationCount() { return taken; }

std::ptrdiff_t LivingAllocations() { return static_cast<std::ptrdiff_t>(taken) - static_cast<std::ptrdiff_t>(given); }

} // namespace lumenor::tests
