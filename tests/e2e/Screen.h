#pragma once
// What the user sees, and waiting for it to change.

#include <chrono>
#include <string>
#include <thread>

#include "support/ScreenPicture.h"
#include "system/Windows.h"

namespace lumenor::e2e {

using tests::Capture;
using tests::Picture;

/// Writes the whole screen as <name>.bmp into the folder that LUMENOR_SHOTS names; does nothing when it names none.
void SaveShot(const std::string &name);

/// Asks `condition` again and again until it holds or `limit` has passed; returns whether it held.
template <typename Condition>
bool WaitFor(Condition &&condition, std::chrono::milliseconds limit = std::chrono::seconds(60)) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end)
      return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

/// Whether `condition` holds at every look during `span`: for what must not happen.
template <typename Condition> bool HoldsFor(Condition &&condition, std::chrono::milliseconds span) {
  return !WaitFor([&] { return !condition(); }, span);
}

/// Waits until `area` shows the same picture at two looks a while apart, and returns it.
Picture CaptureSettled(const RECT &area);

inline POINT Center(const RECT &r) { return {(r.left + r.right) / 2, (r.top + r.bottom) / 2}; }

} // namespace lumenor::e2e
