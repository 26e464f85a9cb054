#pragma once
// Placing elements along one axis and across the other. User-interface thread.

#include "toolkit/UIElement.h"

namespace lumenor {

/// What a layout reads and sets of an element in one direction, in pixels.
class Axis {
public:
  /// The horizontal axis runs to the right, the vertical one down.
  explicit Axis(Orientation orientation) : isHorizontal(orientation == Orientation::Horizontal) {}

  /// The other axis.
  Axis Across() const { return Axis(isHorizontal ? Orientation::Vertical : Orientation::Horizontal); }

  Property<long> &Position(UIElement &element) const { return isHorizontal ? element.Left : element.Top; }
  Property<long> &Size(UIElement &element) const { return isHorizontal ? element.Width : element.Height; }
  Property<long> &DesiredSize(UIElement &element) const {
    return isHorizontal ? element.DesiredWidth : element.DesiredHeight;
  }

  /// The margin ahead of the element and the one behind it.
  long MarginBefore(const UIElement &element) const {
    return isHorizontal ? element.Margin.Get().left : element.Margin.Get().top;
  }
  long MarginAfter(const UIElement &element) const {
    return isHorizontal ? element.Margin.Get().right : element.Margin.Get().bottom;
  }

  /// What the element asks for with its margins.
  long DesiredExtent(UIElement &element) const {
    return MarginBefore(element) + DesiredSize(element).Get() + MarginAfter(element);
  }

  /// Sets position, then size.
  void Place(UIElement &element, long position, long size) const;

  /// Sets position, then size of `child` by its alignment. The room is what is left of `available` after `offset` and
  /// the child's margins; it may be below zero, and a stretched child then gets a negative size. Center narrows the
  /// room by the margin before the child, but doesn't move by it.
  void Arrange(UIElement &child, long offset, long available) const;

private:
  lumenor::HorizontalAlignment AlignmentOf(const UIElement &element) const;

  bool isHorizontal;
};

/// Axis::Arrange by HorizontalAlignment: sets Left, then Width.
void ArrangeHorizontally(UIElement &child, long offset, long available);

/// Axis::Arrange by VerticalAlignment: sets Top, then Height.
void ArrangeVertically(UIElement &child, long offset, long available);

} // namespace lumenor
