#include "toolkit/Arrangement.h"

#include <algorithm>

namespace lumenor {

void ArrangeHorizontally(UIElement &child, long offset, long available) {
  const Margin margin = child.Margin.Get();
  const long room = available - margin.right - margin.left - offset;
  const long width = std::min(child.DesiredWidth.Get(), room);
  switch (child.HorizontalAlignment.Get()) {
  case HorizontalAlignment::Stretch:
    child.Left.Set(margin.left + offset);
    child.Width.Set(room);
    break;
  case HorizontalAlignment::Left:
    child.Left.Set(margin.left + offset);
    child.Width.Set(width);
    break;
  case HorizontalAlignment::Center:
    child.Left.Set(offset + (room - width) / 2);
    child.Width.Set(width);
    break;
  case HorizontalAlignment::Right:
    child.Left.Set(available - width - margin.right);
    child.Width.Set(width);
    break;
  }
}

void ArrangeVertically(UIElement &child, long offset, long available) {
  const Margin margin = child.Margin.Get();
  const long room = available - margin.bottom - margin.top - offset;
  const long height = std::min(child.DesiredHeight.Get(), room);
  switch (child.VerticalAlignment.Get()) {
  case VerticalAlignment::Stretch:
    child.Top.Set(margin.top + offset);
    child.Height.Set(room);
    break;
  case VerticalAlignment::Top:
    child.Top.Set(margin.top + offset);
    child.Height.Set(height);
    break;
  case VerticalAlignment::Center:
    child.Top.Set(offset + (room - height) / 2);
    child.Height.Set(height);
    break;
  case VerticalAlignment::Bottom:
    child.Top.Set(available - height - margin.bottom);
    child.Height.Set(height);
    break;
  }
}

} // namespace lumenor
