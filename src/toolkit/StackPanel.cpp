#include "toolkit/StackPanel.h"

#include "toolkit/Arrangement.h"

namespace lumenor {

StackPanel::StackPanel() { subscriptions.Add(this, &StackPanel::Layout, Orientation.changed); }

void StackPanel::Layout() {
  if (IsLayoutSuspended())
    return;
  const WindowMoveHold hold;
  const Axis axis(Orientation.Get());
  const Axis across = axis.Across();
  long offset = 0;
  for (UIElement *child : children) {
    if (child->Visibility.Get() == lumenor::Visibility::Collapsed)
      continue;
    const long before = axis.MarginBefore(*child);
    const long after = axis.MarginAfter(*child);
    axis.Place(*child, before + offset, axis.DesiredSize(*child).Get());
    across.Arrange(*child, 0, across.Size(*this).Get());
    offset += axis.Size(*child).Get() + after + before;
  }
  axis.DesiredSize(*this).Set(offset);
}

} // namespace lumenor
