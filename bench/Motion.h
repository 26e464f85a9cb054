#pragma once
// The benchmarks of what moves: the fade, the slide of the row, a drag over it, typing, and what a bar at rest costs.

#include <string>

#include "e2e/Installation.h"

namespace lumenor::bench {

/// Draws the bar in this process and counts what it puts on the screen. Expects the dock's folder as the current one.
void BenchMotion(const e2e::Installation &installation);

/// Lets the dock and the floor sit side by side for half a minute; `floorCommandLine` starts the floor.
void BenchRest(const e2e::Installation &installation, const std::wstring &floorCommandLine);

} // namespace lumenor::bench
