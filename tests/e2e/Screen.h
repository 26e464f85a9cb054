#pragma once
// What the user sees: pixels of the screen as they stand, and waiting for them to change.

#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "system/Windows.h"

namespace lumenor::e2e {

/// A copy of a part of the screen; pixels are 0x00RRGGBB, rows from the top.
class Picture {
public:
  Picture() = default;
  Picture(int width, int height) : width(width), height(height), pixels(static_cast<std::size_t>(width) * height) {}

  int Width() const { return width; }
  int Height() const { return height; }
  std::uint32_t At(int x, int y) const { return pixels.at(static_cast<std::size_t>(y) * width + x); }
  std::uint32_t *Data() { return pixels.data(); }

  /// The pixels of `area`, in this picture's coordinates, which it lies within.
  Picture Part(const RECT &area) const;

  /// How many pixels differ from `other`'s; a picture of another size differs in all.
  int Differences(const Picture &other) const;

  bool operator==(const Picture &) const = default;

private:
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;
};

/// Copies `area` (screen coordinates) off the screen.
Picture Capture(const RECT &area);

/// Writes the whole screen as <name>.bmp into the folder that LUMENOR_SHOTS names; nothing when it names none.
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

/// True when `condition` holds at every look during `span`: for what must not happen.
template <typename Condition> bool HoldsFor(Condition &&condition, std::chrono::milliseconds span) {
  return !WaitFor([&] { return !condition(); }, span);
}

/// Waits until `area` shows the same picture at two looks a while apart, and returns it.
Picture CaptureSettled(const RECT &area);

inline POINT Center(const RECT &r) { return {(r.left + r.right) / 2, (r.top + r.bottom) / 2}; }

} // namespace lumenor::e2e
