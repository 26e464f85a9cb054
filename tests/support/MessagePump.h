#pragma once
// The message loop of a test: it dispatches as the program's loop does, until a condition holds or a deadline passes.

#include <chrono>
#include <functional>

namespace lumenor::tests {

/// Dispatches every message that waits; raises what a window procedure kept.
void PumpMessages();

/// Pumps until `condition` holds, at most for `limit`; returns whether it held.
bool PumpUntil(const std::function<bool()> &condition, std::chrono::milliseconds limit = std::chrono::seconds(60));

} // namespace lumenor::tests
