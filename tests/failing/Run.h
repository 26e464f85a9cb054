#pragma once
// Runs of the whole dock in this process, from its entry function to its exit code.

#include <optional>
#include <string>
#include <vector>

#include "failing/Calls.h"
#include "failing/Scenarios.h"

namespace lumenor::failing {

/// How a run ended.
struct Ending {
  std::string raised; // what left the entry function
  int exitCode = 0;
  bool wasBarless = false;      // the process lived on without a bar
  bool wasStuck = false;        // the bar didn't go when it was closed
  bool isThrough = false;       // every step was taken
  std::vector<std::string> bar; // its windows when the steps began, where it was seen
};

/// What is to fail; nothing is counted without one.
struct Target {
  Kind kind;
  std::uint64_t number; // 0: only count
};

/// The dock with the steps of a scenario, closed in the end.
Ending RunScenario(const World &world, const Scenario &scenario, std::optional<Target> target);

/// The dock, started and closed.
Ending RunPlain(const World &world);

} // namespace lumenor::failing
