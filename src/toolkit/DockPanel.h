#pragma once
// A panel that docks its children to its edges. Top and bottom ones take the whole width, left and right ones what
// stays between them, the rest fills what is left. User-interface thread.

#include <vector>

#include "toolkit/PanelWindow.h"

namespace lumenor {

class DockPanel : public PanelWindow<DockPanel> {
public:
  void RemoveChild(UIElement *child) override;
  void InsertChild(UIElement *child, std::size_t index) override;

  /// Places every child that isn't collapsed and publishes what the docked ones take up plus the largest of the others.
  void Layout() override;

  /// Docks `child` from the next layout on, which the caller runs; an element that isn't a child is ignored.
  /// A new child is set to Fill. Docks belong to places in the list: they don't follow a child that is moved, or one
  /// behind an insertion.
  void SetDock(UIElement *child, Dock dock);

  /// The dock of `child`; Fill for an element that isn't one.
  Dock GetDock(UIElement *child);

private:
  struct Span; // what the passes of one layout have left along an axis

  void LayOutStart(Dock dock, Span &span, Span &across);
  void LayOutEnd(Dock dock, Span &span, Span &across);
  void LayOutFill(Span &width, Span &height);
  template <typename Place> void ForEachDocked(Dock dock, Place place);
  template <typename Change> void ChangeChildren(Change change);

  std::vector<Dock> docks; // parallel to children
};

} // namespace lumenor
