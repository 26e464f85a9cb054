#pragma once
// What the user sees: a copy of the pixels of the screen.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "system/Windows.h"

namespace lumenor::tests {

/// A copy of a part of the screen; pixels are 0x00RRGGBB, rows from the top.
class Picture {
public:
  Picture() = default;
  Picture(int width, int height) : width(width), height(height), pixels(static_cast<std::size_t>(width) * height) {}

  int Width() const { return width; }
  int Height() const { return height; }
  std::uint32_t At(int x, int y) const { return pixels.at(static_cast<std::size_t>(y) * width + x); }
  std::uint32_t *Data() { return pixels.data(); }

  /// The pixels of `area`, which is in this picture's coordinates and lies within it.
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

} // namespace lumenor::tests
