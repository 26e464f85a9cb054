#pragma once
// How each function of the platform fails.

#include <cstdint>
#include <string_view>

#include "system/Windows.h"

namespace lumenor::failing {

/// How a function or a method that fails answers.
struct Failing {
  std::string_view name;
  std::uint64_t answer;
  DWORD lastError; // none when 0

  /// What gives something back does so all the same: else the test itself would leave it behind.
  bool actsAllTheSame;

  /// The arguments of a method by which it gives out objects, null after a failure: the lowest bit stands for the first
  /// one behind the object itself.
  std::uint32_t outPointers = 0;
};

/// How the function fails; null for one that can't.
const Failing *FindFailing(std::string_view name);

/// Why a function of the import table isn't made to fail; empty when nobody has said so.
std::string_view WhyNotFailing(std::string_view name);

} // namespace lumenor::failing
