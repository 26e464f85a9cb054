#pragma once
// Elements for the tests of the tree: plain ones that tell what was done to them, and a top-level one with a real
// window.

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "toolkit/Control.h"
#include "toolkit/UIElement.h"

namespace lumenor::tests {

/// An element's rectangle in its parent, pixels.
struct Box {
  long left, top, width, height;
  bool operator==(const Box &) const = default;
};

std::ostream &operator<<(std::ostream &stream, const Box &box);

Box BoxOf(const UIElement &element);

/// Where `window` stands in its parent's client area.
Box BoxOf(HWND window);

/// The child windows of `parent` from the top one down.
std::vector<HWND> ChildWindows(HWND parent);

/// A plain element that remembers what was done to it.
class Leaf : public UIElement {
public:
  /// Asks for this size.
  explicit Leaf(long desiredWidth = 0, long desiredHeight = 0);

  void Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) override;
  bool IsDirty() override { return dirty; }
  void Invalidate() override;
  void Update() override { calls.push_back("Update"); }
  void OnAttached() override;
  void OnDetached() override;

  /// "Update", "OnAttached", "OnDetached", "Invalidate"; attached or detached "without parent" if there was none.
  std::vector<std::string> calls;

  /// The rectangles it was painted into.
  std::vector<D2D1_RECT_F> paints;

  using UIElement::dirty;
};

/// A top-level element: a popup window, 400 by 300 pixels, that counts the invalidations that climb to it.
class TopLevel : public Leaf {
public:
  TopLevel();
  ~TopLevel() override;

  HWND GetHandle() override { return window; }

private:
  HWND window;
};

/// Writes down every change of a property of an element, as "Left 0 -> 5".
class GeometryLog {
public:
  explicit GeometryLog(UIElement &element);

  std::vector<std::string> changes;

private:
  void OnChange(PropertyChangeEventArgs<long> *args);

  UIElement &element;
  std::shared_ptr<TypedEventListener<GeometryLog, PropertyChangeEventArgs<long>>> listener;
};

} // namespace lumenor::tests
