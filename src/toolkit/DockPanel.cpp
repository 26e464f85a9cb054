#include "toolkit/DockPanel.h"

#include <algorithm>

#include "system/ScopeExit.h"
#include "toolkit/Arrangement.h"

namespace lumenor {

/// What the passes of one layout have left of the panel along `axis`, and the most that the children which don't stand
/// one after the other there ask for.
struct DockPanel::Span {
  Axis axis;
  long size;
  long start = 0, end = size;
  long largest = 0;

  void SetDesired(UIElement &panel) const { axis.DesiredSize(panel).Set(largest - end + start + size); }
  void Arrange(UIElement &child) const { axis.Arrange(child, start, end); }
  void Include(UIElement &child) { largest = std::max(largest, axis.DesiredExtent(child)); }
  void Place(UIElement &child, long at) const {
    axis.Place(child, axis.MarginBefore(child) + at, axis.DesiredSize(child).Get());
  }
  void Fill(UIElement &child) const {
    const long position = axis.MarginBefore(child) + start;
    axis.Place(child, position, end - axis.MarginAfter(child) - position);
  }
};

template <typename Change> void DockPanel::ChangeChildren(Change change) {
  {
    const ScopedValue suspended(layoutSuspendCount, layoutSuspendCount + 1);
    change();
  }
  Layout();
}

/// The entry goes to the end whatever place the child gets: docks belong to places, not to children.
void DockPanel::InsertChild(UIElement *child, std::size_t index) {
  ChangeChildren([&] {
    if (child != nullptr)
      docks.resize(children.size() + 1, Dock::Fill);
    PanelWindow::InsertChild(child, index);
  });
}

void DockPanel::RemoveChild(UIElement *child) {
  const int index = IndexOfChild(child);
  if (index < 0)
    return;
  ChangeChildren([&] {
    PanelWindow::RemoveChild(child);
    docks.erase(docks.begin() + index);
  });
}

void DockPanel::SetDock(UIElement *child, Dock dock) {
  if (const int index = IndexOfChild(child); index >= 0)
    docks[static_cast<std::size_t>(index)] = dock;
}

Dock DockPanel::GetDock(UIElement *child) {
  const int index = IndexOfChild(child);
  return index < 0 ? Dock::Fill : docks[static_cast<std::size_t>(index)];
}

void DockPanel::Layout() {
  if (IsLayoutSuspended())
    return;
  const WindowMoveHold hold;
  Span width{Axis(Orientation::Horizontal), Width.Get()};
  Span height{Axis(Orientation::Vertical), Height.Get()};
  LayOutStart(Dock::Top, height, width);
  LayOutEnd(Dock::Bottom, height, width);
  LayOutStart(Dock::Left, width, height);
  LayOutEnd(Dock::Right, width, height);
  LayOutFill(width, height);
  width.SetDesired(*this);
  height.SetDesired(*this);
}

template <typename Place> void DockPanel::ForEachDocked(Dock dock, Place place) {
  for (UIElement *child : children)
    if (child->Visibility.Get() != lumenor::Visibility::Collapsed && GetDock(child) == dock)
      place(*child);
}

void DockPanel::LayOutStart(Dock dock, Span &span, Span &across) {
  ForEachDocked(dock, [&](UIElement &child) {
    across.Arrange(child);
    span.Place(child, span.start);
    span.start += span.axis.DesiredExtent(child);
    across.Include(child);
  });
}

void DockPanel::LayOutEnd(Dock dock, Span &span, Span &across) {
  ForEachDocked(dock, [&](UIElement &child) {
    across.Arrange(child);
    span.end -= span.axis.DesiredExtent(child);
    span.Place(child, span.end);
    across.Include(child);
  });
}

void DockPanel::LayOutFill(Span &width, Span &height) {
  ForEachDocked(Dock::Fill, [&](UIElement &child) {
    width.Fill(child);
    height.Fill(child);
    width.Include(child);
    height.Include(child);
  });
}

} // namespace lumenor
