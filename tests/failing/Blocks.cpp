#include "failing/Blocks.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <map>
#include <string>

#include "failing/ProductCode.h"
#include "system/Windows.h"

namespace lumenor::failing {

namespace {

std::atomic<std::int64_t> live = 0;

/// Where a block was given. The table isn't made of blocks itself.
struct Traced {
  void *block;
  std::array<void *, 16> stack;
};

constexpr std::size_t mostTraced = 1 << 16;
std::array<Traced, mostTraced> traced;
std::atomic<bool> isTracing = false;
SRWLOCK lock = SRWLOCK_INIT;

std::size_t PlaceOf(const void *block) { return (reinterpret_cast<std::uintptr_t>(block) >> 4) % mostTraced; }

std::string Describe(const Traced &entry) {
  std::string text;
  for (void *const place : entry.stack)
    if (place != nullptr && IsProductCode(place))
      text += "\n    in " + DescribeCode(place);
  return text;
}

} // namespace

std::int64_t LiveBlocks() { return live; }

void TraceBlocks() { isTracing = true; }

void PrintTracedBlocks() {
  isTracing = false;
  std::map<std::string, int> counts;
  for (Traced &entry : traced)
    if (entry.block != nullptr) {
      entry.block = nullptr;
      ++counts[Describe(entry)];
    }
  for (const auto &[text, count] : counts)
    std::printf("%d blocks%s\n", count, text.c_str());
}

void BlockGiven(void *block) {
  ++live;
  if (!isTracing)
    return;
  Traced entry = {block, {}};
  ::CaptureStackBackTrace(2, static_cast<DWORD>(entry.stack.size()), entry.stack.data(), nullptr);
  ::AcquireSRWLockExclusive(&lock);
  for (std::size_t i = PlaceOf(block), tries = 0; tries < mostTraced; i = (i + 1) % mostTraced, ++tries)
    if (traced[i].block == nullptr) {
      traced[i] = entry;
      break;
    }
  ::ReleaseSRWLockExclusive(&lock);
}

// Entries may stand behind a place that has become free, so the search goes on for a while.
void BlockTaken(void *block) {
  --live;
  if (!isTracing)
    return;
  ::AcquireSRWLockExclusive(&lock);
  for (std::size_t i = PlaceOf(block), tries = 0; tries < mostTraced / 16; i = (i + 1) % mostTraced, ++tries)
    if (traced[i].block == block) {
      traced[i].block = nullptr;
      break;
    }
  ::ReleaseSRWLockExclusive(&lock);
}

} // namespace lumenor::failing
