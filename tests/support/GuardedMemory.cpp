#include "support/GuardedMemory.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>

#include "system/Windows.h"

// The linker sends the calls of malloc and the others here (--wrap), and gives the C library's the names with "real".
extern "C" {
void *__real_malloc(std::size_t size);
void *__real_calloc(std::size_t count, std::size_t size);
void *__real_realloc(void *block, std::size_t size);
void __real_free(void *block);
void *__wrap_malloc(std::size_t size);
void *__wrap_calloc(std::size_t count, std::size_t size);
void *__wrap_realloc(void *block, std::size_t size);
void __wrap_free(void *block);
}

namespace lumenor::tests {

namespace {

constexpr std::size_t pageSize = 4096;
constexpr std::size_t alignment = 16;
constexpr std::size_t regionSize = std::size_t{64} << 30; // of addresses, without memory
constexpr std::size_t regionLimit = 32;

/// Every block that lives costs the system two mappings, of which a process has some 65,000. What comes beyond this
/// number is taken from the C library.
constexpr std::size_t livingLimit = 24000;

constexpr unsigned char freshByte = 0xCD; // what nobody has set yet
constexpr unsigned char restByte = 0xFD;  // between the end of a block and the page that can't be touched

/// Stands at the beginning of a block's first page.
struct BlockHead {
  std::size_t size;
  std::size_t pageBytes; // without the page behind, which can't be touched
};

std::size_t RoundUp(std::size_t size, std::size_t unit) { return (size + unit - 1) / unit * unit; }

/// Addresses are given out from the beginning of a region to its end, and never again.
class GuardedHeap {
public:
  void *Take(std::size_t size) {
    const std::size_t pageBytes = RoundUp(RoundUp(size, alignment) + sizeof(BlockHead), pageSize);
    if (size > regionSize / 2 || living >= livingLimit)
      return nullptr;
    unsigned char *const pages = NextPages(pageBytes + pageSize);
    if (pages == nullptr || ::VirtualAlloc(pages, pageBytes, MEM_COMMIT, PAGE_READWRITE) == nullptr)
      return nullptr;
    *reinterpret_cast<BlockHead *>(pages) = {size, pageBytes};
    unsigned char *const block = pages + pageBytes - RoundUp(size, alignment);
    std::memset(block, freshByte, size);
    std::memset(block + size, restByte, RoundUp(size, alignment) - size);
    ++living;
    ++given;
    return block;
  }

  void GiveBack(void *block) {
    const BlockHead head = *HeadOf(block);
    const auto *const rest = static_cast<const unsigned char *>(block) + head.size;
    const auto *const end = reinterpret_cast<const unsigned char *>(HeadOf(block)) + head.pageBytes;
    if (std::any_of(rest, end, [](unsigned char value) { return value != restByte; }))
      __builtin_trap(); // something was written behind the block
    ::VirtualFree(HeadOf(block), head.pageBytes, MEM_DECOMMIT);
    --living;
  }

  bool Owns(const void *block) const {
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    for (std::size_t i = 0; i < regionCount; ++i)
      if (address - regions[i] < regionSize)
        return true;
    return false;
  }

  /// The size that `block` was taken with.
  static std::size_t SizeOf(void *block) { return HeadOf(block)->size; }

  std::atomic<bool> isOn = false;
  std::atomic<std::size_t> given = 0;

private:
  /// What is left of the pages lies ahead of the block, and is less than a page beside the head.
  static BlockHead *HeadOf(void *block) {
    return reinterpret_cast<BlockHead *>((reinterpret_cast<std::uintptr_t>(block) - sizeof(BlockHead)) / pageSize *
                                         pageSize);
  }

  unsigned char *NextPages(std::size_t bytes) {
    ::AcquireSRWLockExclusive(&lock);
    if (regionCount == 0 || used + bytes > regionSize)
      AddRegion();
    unsigned char *pages = nullptr;
    if (used + bytes <= regionSize) {
      pages = reinterpret_cast<unsigned char *>(regions[regionCount - 1] + used);
      used += bytes;
    }
    ::ReleaseSRWLockExclusive(&lock);
    return pages;
  }

  void AddRegion() {
    void *const region =
        regionCount == regionLimit ? nullptr : ::VirtualAlloc(nullptr, regionSize, MEM_RESERVE, PAGE_NOACCESS);
    if (region == nullptr)
      return;
    regions[regionCount] = reinterpret_cast<std::uintptr_t>(region);
    used = 0;
    ++regionCount;
  }

  SRWLOCK lock = SRWLOCK_INIT;
  std::uintptr_t regions[regionLimit] = {};
  std::atomic<std::size_t> regionCount = 0;
  std::size_t used = regionSize; // of the last region
  std::atomic<std::size_t> living = 0;
};

constinit GuardedHeap heap;

} // namespace

void GuardMemory() { heap.isOn = true; }

std::size_t GuardedBlockCount() { return heap.given; }

} // namespace lumenor::tests

using lumenor::tests::heap;

void *__wrap_malloc(std::size_t size) {
  void *const block = heap.isOn ? heap.Take(size) : nullptr;
  return block != nullptr ? block : __real_malloc(size);
}

void *__wrap_calloc(std::size_t count, std::size_t size) {
  void *const block = heap.isOn && (size == 0 || count <= SIZE_MAX / size) ? heap.Take(count * size) : nullptr;
  return block != nullptr ? std::memset(block, 0, count * size) : __real_calloc(count, size);
}

void *__wrap_realloc(void *block, std::size_t size) {
  if (block == nullptr)
    return __wrap_malloc(size);
  if (!heap.Owns(block))
    return __real_realloc(block, size);
  if (size == 0) {
    heap.GiveBack(block);
    return nullptr;
  }
  void *const moved = __wrap_malloc(size);
  if (moved != nullptr) {
    std::memcpy(moved, block, std::min(size, heap.SizeOf(block)));
    heap.GiveBack(block);
  }
  return moved;
}

void __wrap_free(void *block) {
  if (heap.Owns(block))
    heap.GiveBack(block);
  else
    __real_free(block);
}
