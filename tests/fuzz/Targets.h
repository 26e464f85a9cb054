#pragma once
// What reads the inputs: the operations of the product that take what others write.

#include <string>
#include <vector>

#include "fuzz/Random.h"

namespace lumenor::fuzz {

struct Target {
  const char *name;
  std::wstring extension; // of its inputs
  std::string (*make)(Random &random);

  /// Raises std::runtime_error, or lets anything else through, when the product did what it must not.
  void (*take)(const std::string &bytes);
};

/// All targets. The environment's %AppData%, %ProgramData% and %ProgramFiles% are folders of the run, COM is there, and
/// LUMENOR_PRODUCT names the shipped files.
const std::vector<Target> &Targets();

/// The bytes of the input with the number `index` of the run `seed`; target `index % Targets().size()` takes it.
std::string MakeInput(std::uint64_t seed, std::uint64_t index);

} // namespace lumenor::fuzz
