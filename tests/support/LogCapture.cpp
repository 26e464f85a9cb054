#include "support/LogCapture.h"

#include <algorithm>

#include "system/Log.h"

namespace lumenor::tests {

namespace {

/// When the file was written to last; 0 when it is gone.
std::uint64_t LastWriteOf(const std::wstring &path) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  ::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data);
  return static_cast<std::uint64_t>(data.ftLastWriteTime.dwHighDateTime) << 32 | data.ftLastWriteTime.dwLowDateTime;
}

void AppendLines(const std::wstring &path, std::vector<std::string> &lines) {
  const std::string text = ReadBytes(path);
  for (std::size_t begin = 0, end; (end = text.find("\r\n", begin)) != std::string::npos; begin = end + 2) {
    const std::string line = text.substr(begin, end - begin);
    lines.push_back(line.substr(line.find('\t') + 1));
  }
}

} // namespace

LogCapture::LogCapture(const TestFolders &folders, std::int32_t level)
    : folder(folders.CommonFolder() + L"\\Logs"), former(LogLevel) {
  MakeFolders(folder);
  LogLevel = level;
}

LogCapture::~LogCapture() { LogLevel = former; }

std::vector<std::string> LogCapture::Lines() const {
  std::vector<std::string> lines;
  AppendLines(CurrentLog(), lines);
  return lines;
}

std::vector<std::string> LogCapture::AllLines() const {
  std::vector<std::wstring> paths;
  for (const std::wstring &name : ListFolder(folder))
    paths.push_back(folder + L"\\" + name);
  std::sort(paths.begin(), paths.end(),
            [](const std::wstring &a, const std::wstring &b) { return LastWriteOf(a) < LastWriteOf(b); });
  std::vector<std::string> lines;
  for (const std::wstring &path : paths)
    AppendLines(path, lines);
  return lines;
}

void LogCapture::Clear() const { ::DeleteFileW(CurrentLog().c_str()); }

} // namespace lumenor::tests
