#include "system/ReadableMemory.h"

#include <cstdint>
#include <cwchar>

#include "system/Windows.h"

namespace lumenor {

namespace {

/// How many bytes can be read from `address` on, as far as its region of memory goes.
std::size_t ReadableBytes(const void *address) {
  constexpr DWORD readable = PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READ |
                             PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
  MEMORY_BASIC_INFORMATION region = {};
  if (::VirtualQuery(address, &region, sizeof region) == 0 || region.State != MEM_COMMIT ||
      (region.Protect & readable) == 0 || (region.Protect & PAGE_GUARD) != 0)
    return 0;
  return reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize -
         reinterpret_cast<std::uintptr_t>(address);
}

} // namespace

std::optional<std::wstring> CopyReadableText(const wchar_t *address) {
  if (reinterpret_cast<std::uintptr_t>(address) % alignof(wchar_t) != 0) // no text of ours
    return std::nullopt;
  std::wstring text;
  for (;;) {
    const std::size_t room = ReadableBytes(address) / sizeof(wchar_t);
    if (room == 0)
      return std::nullopt;
    const std::size_t length = ::wcsnlen(address, room);
    text.append(address, length);
    if (length < room)
      return text;
    address += room;
  }
}

} // namespace lumenor
