#pragma once
// The small value types of layout and painting.

#include <cstdint>

#include "toolkit/Property.h"

namespace lumenor {

/// Red, green, blue and alpha, each from 0 to 1, straight (not premultiplied); laid out as D2D1_COLOR_F.
struct Color {
  float red = 0, green = 0, blue = 0, alpha = 0;
  bool operator==(const Color &) const = default;
};

/// Space kept around an element, in pixels. The order isn't that of RECT.
struct Margin {
  std::int32_t left = 0, right = 0, top = 0, bottom = 0;
  bool operator==(const Margin &) const = default;
};

template <> inline constexpr bool firesOnEverySet<Color> = true;
template <> inline constexpr bool firesOnEverySet<Margin> = true;

/// Only Visible paints; only Collapsed gives up its place in a layout.
enum class Visibility : int { Visible = 0, Hidden = 1, Collapsed = 2 };
enum class HorizontalAlignment : int { Left = 0, Center = 1, Right = 2, Stretch = 3 };
enum class VerticalAlignment : int { Top = 0, Center = 1, Bottom = 2, Stretch = 3 };
enum class Orientation : int { Horizontal = 0, Vertical = 1 };
enum class Dock : int { Top = 0, Bottom = 1, Left = 2, Right = 3, Fill = 4 };

} // namespace lumenor
