#include "support/LogCapture.h"

#include "system/Log.h"

namespace lumenor::tests {

LogCapture::LogCapture(const TestFolders &folders, std::int32_t level)
    : folder(folders.CommonFolder() + L"\\Logs"), former(LogLevel) {
  MakeFolders(folder);
  LogLevel = level;
}

LogCapture::~LogCapture() { LogLevel = former; }

std::vector<std::string> LogCapture::Lines() const {
  const std::string text = ReadBytes(CurrentLog());
  std::vector<std::string> lines;
  for (std::size_t begin = 0, end; (end = text.find("\r\n", begin)) != std::string::npos; begin = end + 2) {
    const std::string line = text.substr(begin, end - begin);
    lines.push_back(line.substr(line.find('\t') + 1));
  }
  return lines;
}

void LogCapture::Clear() const { ::DeleteFileW(CurrentLog().c_str()); }

} // namespace lumenor::tests
