#pragma once
// The blocks of memory that operator new has given: how many there are, and where those come from that stay.

#include <cstddef>
#include <cstdint>

namespace lumenor::failing {

std::int64_t LiveBlocks();

/// Notes from now on where each block comes from.
void TraceBlocks();

/// Prints the blocks that were given since TraceBlocks and are still there, by where they come from, and forgets them.
void PrintTracedBlocks();

// For operator new and delete.
void BlockGiven(void *block);
void BlockTaken(void *block);

} // namespace lumenor::failing
