#pragma once
// A control with an ordered list of children, and the wiring that lays them out again whenever what a child asks
// for or the container's own rectangle changes. The children are borrowed. User-interface thread.
//
// BeginUpdate and EndUpdate around bulk changes hold the layout back until the outermost EndUpdate, which runs it once.

#include <cstddef>
#include <memory>
#include <vector>

#include "toolkit/Control.h"

namespace lumenor {

class Container : public Control {
public:
  Container();

  /// Paints the visible children in list order, so that a later one lies on top; nothing of its own.
  void Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) override;
  bool IsDirty() override;

  /// Lays the children out: the end of a group of changes.
  void Update() override { Layout(); }

  /// Appends `child`, attaches it and lays out. Null is ignored. The child must outlive its stay here.
  void AddChild(UIElement *child) { InsertChild(child, children.size()); }

  /// Detaches `child` and lays out; an element that isn't here only costs the layout.
  virtual void RemoveChild(UIElement *child);

  /// Inserts `child` before `index`, or appends it when there is no such index. Null is ignored.
  virtual void InsertChild(UIElement *child, std::size_t index);

  /// Takes the child at `from` out and puts it in at `to`, counted without it, or at the end when there is no such
  /// index, and lays out; windows and listeners aren't touched. Returns where the child stands now; when there is
  /// nothing at `from`, the count of children, and nothing happens.
  virtual std::size_t MoveChild(std::size_t from, std::size_t to);

  /// A copy of the list.
  virtual std::vector<UIElement *> GetChildren() { return children; }

  /// Places the children; nothing in this class.
  virtual void Layout() {}

  /// The first index of `child`; -1 when it isn't here.
  virtual int IndexOfChild(UIElement *child);

  virtual void OnLeftChanged() { Layout(); }
  virtual void OnTopChanged() { Layout(); }
  virtual void OnWidthChanged() { Layout(); }
  virtual void OnHeightChanged() { Layout(); }
  virtual void OnChildDesiredWidthChanged() { Layout(); }
  virtual void OnChildDesiredHeightChanged() { Layout(); }
  virtual void OnChildVisibilityChanged() { Layout(); }

protected:
  /// True while a group of changes or an operation of several steps holds the layout back.
  bool IsLayoutSuspended() const { return layoutSuspendCount > 0 || IsUpdating(); }

  std::vector<UIElement *> children;

  /// Held above 0 by operations that run one layout for several steps.
  int layoutSuspendCount = 0;

private:
  ListenerPtr<PropertyChangeEventArgs<long>> childDesiredWidthListener, childDesiredHeightListener;
  ListenerPtr<PropertyChangeEventArgs<lumenor::Visibility>> childVisibilityListener;
};

} // namespace lumenor
