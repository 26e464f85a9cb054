#pragma once
// What may come of a failed call, and what may not.

#include <string>
#include <vector>

#include "failing/Run.h"

namespace lumenor::failing {

/// What a run left behind it, looked at before the next one.
struct Traces {
  Ending ending;
  Texts reports;
  std::vector<std::string> lines; // about failures, in the log
  Texts heads;
  int records = 0;         // of the dock's use
  bool hasRefused = false; // a drop, as the user sees
};

/// What a run is measured by: those in which nothing failed.
struct Measure {
  std::vector<std::string> bar;       // when the steps begin
  std::vector<std::string> barBefore; // of the next start, with the buttons that were there
  std::vector<std::string> barAfter;  // and with those that the scenario makes
  std::vector<std::string> lines;     // about failures that the log has all the same
  Holdings growth;                    // of a run with the scenario and a plain one: what is left behind on purpose
};

/// What is wrong with a run in which a call failed; nothing when it went as a failure has to.
std::vector<std::string> JudgeRun(const Scenario &scenario, const Traces &traces);

/// What is wrong with the start after that, where nothing failed.
std::vector<std::string> JudgeNextStart(const Scenario &scenario, const Measure &measure, const Traces &failed,
                                        const Traces &next);

/// What was left behind beyond the measure, in words; empty when nothing was.
std::string DescribeGrowth(const Measure &measure, const Holdings &before, const Holdings &after);

std::string Join(const Texts &texts);

} // namespace lumenor::failing
