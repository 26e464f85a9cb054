#pragma once
// Placing a child across its parent's axis, by its alignment. User-interface thread.

#include "toolkit/UIElement.h"

namespace lumenor {

/// Sets Left, then Width of `child` by its HorizontalAlignment. The room is what is left of `available` after
/// `offset` and the child's margins; it may be below zero, and a stretched child then gets a negative width. Centre
/// narrows the room by the left margin, but doesn't move by it.
void ArrangeHorizontally(UIElement &child, long offset, long available);

/// The same across the vertical axis: Top, then Height, by VerticalAlignment.
void ArrangeVertically(UIElement &child, long offset, long available);

} // namespace lumenor
