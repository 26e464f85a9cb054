#pragma once
// A control with one child that fills it. The child is borrowed. User-interface thread.

#include "toolkit/Control.h"

namespace lumenor {

class SingleChildContainer : public Control {
public:
  SingleChildContainer();

  void Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) override;
  bool IsDirty() override;

  /// Null before the first SetChild.
  virtual UIElement *GetChild() { return child; }

  /// Replaces the child. `newChild` must not be null and must outlive its stay here.
  virtual void SetChild(UIElement *newChild);

  /// Gives the child the container's width and height; its place, margin and alignment aren't looked at.
  virtual void Layout();

  virtual void OnWidthChanged() { Layout(); }
  virtual void OnHeightChanged() { Layout(); }

protected:
  UIElement *child = nullptr;
};

} // namespace lumenor
