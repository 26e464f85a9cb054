#pragma once
// Where in a row of buttons something lands that is let go over it: plain arithmetic. Stateless; any thread.

#include <cstddef>
#include <vector>

namespace lumenor {

/// Where a button stands: its left end and the first pixel to the right of it, on the row.
struct ButtonSpan {
  long left;
  long right;
};

/// The index that what is let go at `x` gets among `buttons`, which stand from left to right: that of the gap that it
/// falls into; over a button that of the gap before or behind it, by the half; over the button with the index
/// `dragged`, the button's own. There may be none such.
std::size_t InsertionIndex(long x, const std::vector<ButtonSpan> &buttons, std::size_t dragged);

} // namespace lumenor
