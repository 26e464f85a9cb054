#pragma once
// The methods of the platform's objects that the product calls, and how each of them fails.

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "failing/PlatformCalls.h"

namespace lumenor::failing {

struct Method {
  Failing how; // under the names of interface and method
  IID interfaceId;
  std::size_t slot; // in the table of the interface, counted from QueryInterface as 0
};

/// By interface.
const std::vector<Method> &Methods();

/// A method that isn't made to fail.
struct OtherMethod {
  std::string_view name;
  std::string_view why;
};

std::span<const OtherMethod> OtherMethods();

} // namespace lumenor::failing
