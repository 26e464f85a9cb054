#pragma once
// A program that a benchmark starts and ends.

#include "system/Windows.h"

#include <string>

#include "system/Handles.h"

namespace lumenor::bench {

class Started {
public:
  /// Raises HResultError when the program can't be started.
  explicit Started(const std::wstring &commandLine);

  /// Ends the program if it still runs.
  ~Started();
  Started(const Started &) = delete;
  Started &operator=(const Started &) = delete;

  /// The most memory that the process had for itself so far, in MB.
  double PeakPrivateMegabytes() const;

private:
  KernelHandle process;
};

} // namespace lumenor::bench
