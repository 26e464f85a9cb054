#pragma once
// A program that is let alone or used from outside, and what the host counts of it meanwhile.

#include <set>
#include <string>

#include "Started.h"

namespace lumenor::bench {

/// A program whose processor time and sleeps the host counts.
class WatchedProgram {
public:
  /// Starts the program; `hostName` is what the name of its process begins with on the host.
  WatchedProgram(const std::wstring &commandLine, const std::string &hostName);

  /// Counts from now on.
  void Begin();

  /// Milliseconds that its threads have run, in steps of ten, as the host counts them.
  double ProcessorSinceBegin() const;

  /// How often its first thread has gone to sleep of its own accord.
  double SleepsSinceBegin() const;

private:
  std::set<std::wstring> others;
  Started program;
  std::wstring host;
  double processorBefore = 0;
  double sleepsBefore = 0;
};

} // namespace lumenor::bench
