#pragma once
// The recorder program in a test: installed under any name, it records the command line that it is started with.

#include <string>
#include <vector>

#include "support/TestFolders.h"

namespace lumenor::tests {

/// How a recorder was started.
struct RecordedStart {
  std::wstring commandLine;
  std::wstring folder; // the working folder
};

/// The starts that recorders have noted in the file, in order; none without the file.
std::vector<RecordedStart> ReadRecordedStarts(const std::wstring &path);

class Recorder {
public:
  /// Programs started by this process and its children note into a file below `folders` while this lives.
  explicit Recorder(const TestFolders &folders);

  /// Puts the recorder at `path`, making its folder.
  void InstallAs(const std::wstring &path) const;

  /// The command lines noted so far, in order.
  std::vector<std::wstring> CommandLines() const;

  /// Waits until `count` command lines are noted, a minute at most; returns all that there are by then.
  std::vector<std::wstring> WaitForCommandLines(std::size_t count) const;

private:
  std::wstring notes;
  EnvironmentValue variable;
};

} // namespace lumenor::tests
