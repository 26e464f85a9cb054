#pragma once
// The index at which a drop on a row of buttons inserts: plain arithmetic. Stateless; any thread.

#include <cstddef>
#include <vector>

namespace lumenor {

/// The extent of a button on its row: its left end and the first pixel to the right of it.
struct ButtonSpan {
  long left;
  long right;
};

/// The insertion index of a drop at `x` among `buttons`, which are sorted from left to right: that of the gap at `x`;
/// over a button that of the gap before it or behind it, depending on the half; over the button with the index
/// `dragged`, that index. `dragged` may be past the end.
std::size_t InsertionIndex(long x, const std::vector<ButtonSpan> &buttons, std::size_t dragged);

} // namespace lumenor
