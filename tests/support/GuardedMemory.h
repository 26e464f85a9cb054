#pragma once
// A heap for test programs that ends the program at the first access beyond a block or to one that was given back.
// Every block ends at a page that can't be touched, the pages of a block that was given back can't be touched any more,
// and no address is given out twice.
//
// It takes the place of malloc, calloc, realloc and free, and so of operator new, in the sources that the program is
// linked from; the platform's libraries keep their own heaps. Any thread may use it.

#include <cstddef>

namespace lumenor::tests {

/// From here on blocks come from pages of their own. Those taken before stay what they are.
void GuardMemory();

/// How many blocks the guarded heap has given out so far; 0 as long as it isn't in use.
std::size_t GuardedBlockCount();

/// The environment variable that makes every test program call GuardMemory ahead of its tests, and look for damage in
/// the platform's heaps after each of them.
inline constexpr wchar_t guardVariable[] = L"LUMENOR_GUARD_MEMORY";

} // namespace lumenor::tests
