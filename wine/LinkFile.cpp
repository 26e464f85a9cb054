#include "LinkFile.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "system/Handles.h"

#include <shlobj.h>

namespace lumenor::services {

namespace {

// The file begins with a header, whose flags tell whether a list of items is next: its size in two bytes, then the
// items, each with its own size in front, the last of them with the size 0.
constexpr std::size_t headerSize = 76, flagsOffset = 20, sizeSize = 2, longestList = 0xFFFF;

/// The bytes that the list may stand in; none where the file can't be read.
std::string ReadBeginning(const wchar_t *path) {
  std::string bytes(headerSize + sizeSize + longestList, '\0');
  constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const FileHandle file(::CreateFileW(path, GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  DWORD size = 0;
  if (!file || !::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &size, nullptr))
    size = 0;
  bytes.resize(size);
  return bytes;
}

/// The two bytes in front; 1, which is no size, where there are fewer.
std::size_t SizeInFront(std::string_view bytes) {
  WORD size = 1;
  if (bytes.size() >= sizeSize)
    std::memcpy(&size, bytes.data(), sizeSize);
  return size;
}

bool AreWhole(std::string_view items) {
  std::size_t size = SizeInFront(items);
  while (size >= sizeSize && size <= items.size()) {
    items.remove_prefix(size);
    size = SizeInFront(items);
  }
  return size == 0;
}

} // namespace

bool HasBrokenItemList(const wchar_t *path) {
  const std::string bytes = ReadBeginning(path);
  if (bytes.size() < headerSize || (bytes[flagsOffset] & SLDF_HAS_ID_LIST) == 0)
    return false;
  const std::string_view list = std::string_view(bytes).substr(headerSize);
  const std::size_t size = SizeInFront(list);
  return size != 0 && !AreWhole(list.substr(std::min(sizeSize, list.size()), size));
}

} // namespace lumenor::services
