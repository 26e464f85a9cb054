#include "soak/LogWatch.h"

#include "system/Handles.h"

namespace lumenor::soak {
namespace {

constexpr DWORD mostBytes = 1 << 20;

/// The file's bytes; empty when it can't be read. The dock may append to it and rename it meanwhile.
std::string ReadShared(const std::wstring &path) {
  const FileHandle file(::CreateFileW(path.c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0,
                                      nullptr));
  std::string bytes(mostBytes, '\0');
  DWORD count = 0;
  if (!file || !::ReadFile(file.Get(), bytes.data(), mostBytes, &count, nullptr))
    count = 0;
  bytes.resize(count);
  return bytes;
}

/// The file that was full last; empty when there is none.
std::wstring NewestFullFile(const std::wstring &folder) {
  WIN32_FIND_DATAW found = {};
  const FindHandle find(::FindFirstFileW((folder + L"\\RollingDock.*.log").c_str(), &found));
  std::wstring newest;
  FILETIME time = {};
  for (bool more = static_cast<bool>(find); more; more = ::FindNextFileW(find.Get(), &found) != FALSE)
    if (std::wstring(found.cFileName) != L"RollingDock.log" && ::CompareFileTime(&time, &found.ftLastWriteTime) < 0) {
      time = found.ftLastWriteTime;
      newest = folder + L"\\" + found.cFileName;
    }
  return newest;
}

/// Whole lines only; returns where they end.
std::size_t CollectErrors(const std::string &text, std::size_t from, std::vector<std::string> &errors) {
  for (std::size_t end; (end = text.find("\r\n", from)) != std::string::npos; from = end + 2) {
    const std::string line = text.substr(from, end - from);
    if (line.find("ERROR: ") != std::string::npos || line.find("FATAL: ") != std::string::npos)
      errors.push_back(line);
  }
  return from;
}

} // namespace

std::vector<std::string> LogWatch::NewErrors() {
  std::vector<std::string> errors;
  std::string current = ReadShared(folder + L"\\RollingDock.log");
  if (current.size() < read) {
    CollectErrors(ReadShared(NewestFullFile(folder)), read, errors);
    read = 0;
  }
  read = CollectErrors(current, read, errors);
  return errors;
}

} // namespace lumenor::soak
