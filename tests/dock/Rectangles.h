#pragma once
// Lets tests compare and print platform rectangles.

#include <ostream>

#include "system/Windows.h"

inline bool operator==(const RECT &a, const RECT &b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

inline void PrintTo(const RECT &rect, std::ostream *stream) {
  *stream << "{" << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom << "}";
}

namespace lumenor {

inline RECT Rect(LONG left, LONG top, LONG right, LONG bottom) { return {left, top, right, bottom}; }

} // namespace lumenor
