#pragma once
// The jump list that an application has published, as the services of the test platform keep it: a file of UTF-8 text
// for each application id, below %APPDATA%. wine/JumpListFile.h describes the format.

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace lumenor::tests {

/// A task of a jump list, with what its link was given.
struct JumpTask {
  std::wstring title;
  std::wstring path;
  std::wstring arguments;
  std::wstring workingFolder;
  std::wstring description;
  std::wstring icon;
  int iconIndex = 0;

  bool operator==(const JumpTask &) const = default;
};

/// Lets a failed comparison show the task.
void PrintTo(const JumpTask &task, std::ostream *stream);

/// Where the list of the application is kept, whether or not there is one.
std::wstring JumpListPath(const std::wstring &applicationId);

/// The tasks of the list that the application has published, in their order, without separators; nothing when it has
/// published none.
std::optional<std::vector<JumpTask>> ReadJumpList(const std::wstring &applicationId);

} // namespace lumenor::tests
