#pragma once
// Runs the present test once more in a process of its own, for what is settled when a process starts.

#include <string>
#include <utility>
#include <vector>

#include "system/Handles.h"

namespace lumenor::tests {

struct ChildResult {
  unsigned long exitCode;
  std::string errors; // what it wrote to its standard error
};

/// Whether this process is such a run.
bool IsChildRun();

/// Starts this program for the present test alone, with these environment variables, and waits for its end.
ChildResult RunThisTestAsChild(const std::vector<std::pair<std::wstring, std::wstring>> &environment);

/// Starts this program for the present test alone and goes on; what it writes goes to the file at `outputPath`. Empty
/// when it can't be started.
KernelHandle StartThisTestAsChild(const std::wstring &outputPath);

} // namespace lumenor::tests
