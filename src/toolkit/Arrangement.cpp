#include "toolkit/Arrangement.h"

#include <algorithm>

namespace lumenor {

void Axis::Place(UIElement &element, long position, long size) const {
  Position(element).Set(position);
  Size(element).Set(size);
}

/// The vertical alignments have the numbers of the horizontal ones.
HorizontalAlignment Axis::AlignmentOf(const UIElement &element) const {
  return isHorizontal ? element.HorizontalAlignment.Get()
                      : static_cast<HorizontalAlignment>(element.VerticalAlignment.Get());
}

void Axis::Arrange(UIElement &child, long offset, long available) const {
  const long before = MarginBefore(child);
  const long after = MarginAfter(child);
  const long room = available - after - before - offset;
  const long size = std::min(DesiredSize(child).Get(), room);
  switch (AlignmentOf(child)) {
  case HorizontalAlignment::Stretch:
    return Place(child, before + offset, room);
  case HorizontalAlignment::Left:
    return Place(child, before + offset, size);
  case HorizontalAlignment::Center:
    return Place(child, offset + (room - size) / 2, size);
  case HorizontalAlignment::Right:
    return Place(child, available - size - after, size);
  }
}

void ArrangeHorizontally(UIElement &child, long offset, long available) {
  Axis(Orientation::Horizontal).Arrange(child, offset, available);
}

void ArrangeVertically(UIElement &child, long offset, long available) {
  Axis(Orientation::Vertical).Arrange(child, offset, available);
}

} // namespace lumenor
