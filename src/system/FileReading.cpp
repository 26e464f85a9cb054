#include "system/FileReading.h"

namespace lumenor {

namespace {

constexpr DWORD pieceBytes = 1024;

} // namespace

FileHandle OpenForReading(const std::wstring &path) {
  return FileHandle(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
}

std::string_view ReadPiece(HANDLE file, std::string &buffer) {
  buffer.resize(pieceBytes);
  DWORD read = 0;
  if (!::ReadFile(file, buffer.data(), pieceBytes, &read, nullptr))
    return {};
  return {buffer.data(), read};
}

} // namespace lumenor
