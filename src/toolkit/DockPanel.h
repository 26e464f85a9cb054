#pragma once
// A panel that docks its children to its edges. Top and bottom ones take the whole width, left and right ones what
// stays between them, the rest fills what is left. User-interface thread.

#include <vector>

#include "toolkit/PanelWindow.h"

namespace lumenor {

class DockPanel : public PanelWindow<DockPanel> {
public:
  void AddChild(UIElement *child) override;
  void RemoveChild(UIElement *child) override;
  void InsertChild(UIElement *child, std::size_t index) override;

  /// Places every child that isn't collapsed and publishes what the docked ones take up plus the largest of the others.
  void Layout() override;

  /// Docks `child` from the next layout on, which the caller runs; a stranger is ignored. A child that joins is set to
  /// Fill. Docks belong to places in the list: they don't follow a child that is moved, or one behind an insertion.
  void SetDock(UIElement *child, Dock dock);

  /// The dock of `child`; Fill for a stranger.
  Dock GetDock(UIElement *child);

private:
  struct Room; // what the passes of one layout have left

  void AppendDockFor(UIElement *child);
  void LayOutTop(Room &room);
  void LayOutBottom(Room &room);
  void LayOutLeft(Room &room);
  void LayOutRight(Room &room);
  void LayOutFill(Room &room);
  template <typename Place> void ForEachDocked(Dock dock, Place place);
  template <typename Change> void ChangeChildren(Change change);

  std::vector<Dock> docks; // parallel to children
};

} // namespace lumenor
