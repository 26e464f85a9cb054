#include "toolkit/DockPanel.h"

#include <algorithm>

#include "toolkit/Arrangement.h"

namespace lumenor {

/// What the passes of one layout have left of the panel, and the largest size they met across the docked edges.
struct DockPanel::Room {
  long width, height;
  long top = 0, bottom = height;
  long left = 0, right = width;
  long largestWidth = 0, largestHeight = 0;

  void MeetWidth(const UIElement &child) {
    const lumenor::Margin margin = child.Margin.Get();
    largestWidth = std::max(largestWidth, margin.left + child.DesiredWidth.Get() + margin.right);
  }
  void MeetHeight(const UIElement &child) {
    const lumenor::Margin margin = child.Margin.Get();
    largestHeight = std::max(largestHeight, margin.top + child.DesiredHeight.Get() + margin.bottom);
  }
};

namespace {

/// Raises a count for as long as it lives.
class RaisedCount {
public:
  explicit RaisedCount(int &count) : count(count) { ++count; }
  ~RaisedCount() {
    if (count > 0)
      --count;
  }
  RaisedCount(const RaisedCount &) = delete;
  RaisedCount &operator=(const RaisedCount &) = delete;

private:
  int &count;
};

} // namespace

template <typename Change> void DockPanel::ChangeChildren(Change change) {
  {
    const RaisedCount suspended(layoutSuspendCount);
    change();
  }
  Layout();
}

void DockPanel::AddChild(UIElement *child) {
  ChangeChildren([&] {
    AppendDockFor(child);
    PanelWindow::AddChild(child);
  });
}

void DockPanel::InsertChild(UIElement *child, std::size_t index) {
  ChangeChildren([&] {
    AppendDockFor(child);
    PanelWindow::InsertChild(child, index);
  });
}

/// The entry goes to the end whatever place the child gets: docks belong to places, not to children.
void DockPanel::AppendDockFor(UIElement *child) {
  if (child != nullptr)
    docks.resize(children.size() + 1, Dock::Fill);
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
  Room room{Width.Get(), Height.Get()};
  LayOutTop(room);
  LayOutBottom(room);
  LayOutLeft(room);
  LayOutRight(room);
  LayOutFill(room);
  DesiredWidth.Set(room.largestWidth - room.right + room.left + room.width);
  DesiredHeight.Set(room.largestHeight - room.bottom + room.top + room.height);
}

template <typename Place> void DockPanel::ForEachDocked(Dock dock, Place place) {
  for (UIElement *child : children)
    if (child->Visibility.Get() != lumenor::Visibility::Collapsed && GetDock(child) == dock)
      place(*child, child->Margin.Get());
}

void DockPanel::LayOutTop(Room &room) {
  ForEachDocked(Dock::Top, [&](UIElement &child, const lumenor::Margin &margin) {
    ArrangeHorizontally(child, 0, room.width);
    child.Top.Set(margin.top + room.top);
    child.Height.Set(child.DesiredHeight.Get());
    room.top += margin.bottom + margin.top + child.DesiredHeight.Get();
    room.MeetWidth(child);
  });
}

void DockPanel::LayOutBottom(Room &room) {
  ForEachDocked(Dock::Bottom, [&](UIElement &child, const lumenor::Margin &margin) {
    ArrangeHorizontally(child, 0, room.width);
    room.bottom -= margin.bottom + margin.top + child.DesiredHeight.Get();
    child.Top.Set(margin.top + room.bottom);
    child.Height.Set(child.DesiredHeight.Get());
    room.MeetWidth(child);
  });
}

void DockPanel::LayOutLeft(Room &room) {
  ForEachDocked(Dock::Left, [&](UIElement &child, const lumenor::Margin &margin) {
    ArrangeVertically(child, room.top, room.bottom);
    child.Left.Set(room.left + margin.left);
    child.Width.Set(child.DesiredWidth.Get());
    room.left += margin.left + margin.right + child.DesiredWidth.Get();
    room.MeetHeight(child);
  });
}

void DockPanel::LayOutRight(Room &room) {
  ForEachDocked(Dock::Right, [&](UIElement &child, const lumenor::Margin &margin) {
    ArrangeVertically(child, room.top, room.bottom);
    room.right -= margin.left + margin.right + child.DesiredWidth.Get();
    child.Left.Set(margin.left + room.right);
    child.Width.Set(child.DesiredWidth.Get());
    room.MeetHeight(child);
  });
}

void DockPanel::LayOutFill(Room &room) {
  ForEachDocked(Dock::Fill, [&](UIElement &child, const lumenor::Margin &margin) {
    child.Left.Set(margin.left + room.left);
    child.Width.Set(room.right - margin.right - margin.left - room.left);
    child.Top.Set(margin.top + room.top);
    child.Height.Set(room.bottom - margin.bottom - margin.top - room.top);
    room.MeetWidth(child);
    room.MeetHeight(child);
  });
}

} // namespace lumenor
