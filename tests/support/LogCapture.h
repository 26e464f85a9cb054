#pragma once
// The rolling log in a test: it sets the process-wide level for as long as it lives, and reads the lines.

#include <cstdint>
#include <string>
#include <vector>

#include "support/TestFolders.h"

namespace lumenor::tests {

class LogCapture {
public:
  /// Sets LogLevel to `level` (3 writes every kind) and makes the log's folder below `folders`.
  explicit LogCapture(const TestFolders &folders, std::int32_t level = 3);

  /// Puts the former level back.
  ~LogCapture();
  LogCapture(const LogCapture &) = delete;
  LogCapture &operator=(const LogCapture &) = delete;

  /// The lines of the current log so far without time stamp and line end, such as "INFO: Dock Startup".
  std::vector<std::string> Lines() const;

  /// The same of the rolled logs, oldest first, and of the current one.
  std::vector<std::string> AllLines() const;

  /// Deletes the current log, so that Lines() starts anew.
  void Clear() const;

  std::wstring Folder() const { return folder; }
  std::wstring CurrentLog() const { return folder + L"\\RollingDock.log"; }

private:
  std::wstring folder;
  std::int32_t former;
};

} // namespace lumenor::tests
