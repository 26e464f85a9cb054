#pragma once
// Reads the dock's log as it grows.

#include <string>
#include <vector>

namespace lumenor::soak {

class LogWatch {
public:
  explicit LogWatch(const std::wstring &folder) : folder(folder) {}

  /// The lines of the levels ERROR and FATAL that were written since the last call. At most one file is full meanwhile.
  std::vector<std::string> NewErrors();

private:
  std::wstring folder;
  std::size_t read = 0; // bytes of the current file
};

} // namespace lumenor::soak
