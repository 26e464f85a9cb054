#include "system/FileReading.h"

#include "system/FileInUse.h"
#include "system/HResultError.h"

namespace lumenor {

namespace {

constexpr DWORD pieceBytes = 1024;
constexpr DWORD wholeFileBlockBytes = 65536;

} // namespace

FileHandle OpenForReading(const std::wstring &path) {
  return FileHandle(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
}

FileHandle OpenForReadingWhenFree(const std::wstring &path) {
  FileHandle file;
  TryWhileInUse([&] {
    file = OpenForReading(path);
    return static_cast<bool>(file);
  });
  return file;
}

std::string_view ReadPiece(HANDLE file, std::string &buffer) {
  buffer.resize(pieceBytes);
  DWORD read = 0;
  if (!::ReadFile(file, buffer.data(), pieceBytes, &read, nullptr))
    return {};
  return {buffer.data(), read};
}

std::string ReadWholeFile(const std::wstring &path) {
  const FileHandle file = OpenForReadingWhenFree(path);
  ThrowIfFalse(static_cast<bool>(file));
  std::string bytes, block(wholeFileBlockBytes, '\0');
  for (DWORD read = 1; read != 0; bytes.append(block, 0, read))
    ThrowIfFalse(::ReadFile(file.Get(), block.data(), wholeFileBlockBytes, &read, nullptr));
  return bytes;
}

} // namespace lumenor
