#include "support/HandleCounts.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include <winternl.h>

namespace lumenor::tests {

namespace {

/// One entry of the process's table of GDI objects, as the test platform lays it out.
struct GdiEntry {
  std::uint64_t object;
  std::uint32_t owner;
  std::uint16_t unique;
  std::uint8_t type;
  std::uint8_t flags;
  std::uint64_t user;
};

constexpr std::ptrdiff_t gdiTableInProcessBlock = 0xf8;
constexpr int gdiEntryCount = 16384;

int CountUsed(const GdiEntry *table) {
  int count = 0;
  for (int i = 0; i < gdiEntryCount; ++i)
    count += table[i].type != 0;
  return count;
}

/// Where the block of another process is; null when the platform doesn't tell.
const std::byte *ProcessBlock(HANDLE process) {
  using Query = decltype(&::NtQueryInformationProcess);
  const auto query = reinterpret_cast<Query>(
      reinterpret_cast<void *>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "NtQueryInformationProcess")));
  PROCESS_BASIC_INFORMATION information = {};
  if (query(process, ProcessBasicInformation, &information, sizeof information, nullptr) != 0)
    return nullptr;
  return reinterpret_cast<const std::byte *>(information.PebBaseAddress);
}

} // namespace

int CountGdiObjects() {
  const auto *block = reinterpret_cast<const std::byte *>(::NtCurrentTeb()->ProcessEnvironmentBlock);
  return CountUsed(*reinterpret_cast<GdiEntry *const *>(block + gdiTableInProcessBlock));
}

int CountGdiObjects(HANDLE process) {
  const std::byte *const block = ProcessBlock(process);
  const GdiEntry *table = nullptr;
  std::vector<GdiEntry> copy(gdiEntryCount);
  if (block == nullptr ||
      !::ReadProcessMemory(process, block + gdiTableInProcessBlock, &table, sizeof table, nullptr) ||
      !::ReadProcessMemory(process, table, copy.data(), copy.size() * sizeof(GdiEntry), nullptr))
    return 0;
  return CountUsed(copy.data());
}

int CountWindows() {
  const DWORD self = ::GetCurrentProcessId();
  int count = 0;
  for (std::uintptr_t value = 0x20; value < 0xfff0; value += 2) {
    const auto window = reinterpret_cast<HWND>(value);
    DWORD owner = 0;
    count += ::IsWindow(window) && ::GetWindowThreadProcessId(window, &owner) != 0 && owner == self;
  }
  return count;
}

int CountKernelHandles() {
  int count = 0;
  for (std::uintptr_t value = 4; value < 0x4000; value += 4) {
    DWORD flags = 0;
    count += ::GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != 0;
  }
  return count;
}

} // namespace lumenor::tests
