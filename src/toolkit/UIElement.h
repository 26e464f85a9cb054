#pragma once
// The root classes of the element tree. An element has its geometry and what it asks of layout as properties, knows
// its parent and paints itself on request; it has no window of its own unless a derived class makes one. Held in a
// shared pointer by whoever composes the screen; a parent's pointer to it is borrowed. User-interface thread.

#include <functional>
#include <string>

#include "system/Windows.h"

#include <d2d1.h>
#include <wrl/client.h>

#include "toolkit/Event.h"
#include "toolkit/Geometry.h"
#include "toolkit/Property.h"

namespace lumenor {

using RenderTargetPtr = Microsoft::WRL::ComPtr<ID2D1RenderTarget>;

/// Anything that can draw itself.
class Paintable {
public:
  virtual ~Paintable() = default;

  /// Draws into `rect`, the element's absolute rectangle on the root's drawing surface, in pixels.
  virtual void Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) = 0;
};

class UIElement : public Paintable {
public:
  UIElement() = default;
  UIElement(const UIElement &) = delete;
  UIElement &operator=(const UIElement &) = delete;

  /// Where the element stands relative to its parent's rectangle and the size that layout gave it, in pixels.
  Property<long> Left, Top, Width, Height;

  /// The size that the element asks for; its parent's layout reads it.
  Property<long> DesiredWidth, DesiredHeight;

  /// Declared limits of the size; no layout reads them.
  Property<long> MinWidth, MinHeight, MaxWidth{0x7FFFFFFF}, MaxHeight{0x7FFFFFFF};

  /// How a parent places the element across its own width and height.
  Property<lumenor::HorizontalAlignment> HorizontalAlignment{lumenor::HorizontalAlignment::Stretch};
  Property<lumenor::VerticalAlignment> VerticalAlignment{lumenor::VerticalAlignment::Stretch};

  Property<lumenor::Visibility> Visibility{lumenor::Visibility::Visible};

  /// Space that the parent's layout keeps around the element. Every Set fires.
  Property<lumenor::Margin> Margin;

  /// 0 to 255, for the painters that honour it; UIElement doesn't apply it.
  Property<unsigned char> Opacity{255};

  /// A label; no layout reads it.
  Property<std::wstring> Name;

  /// Borrowed; set and cleared by the parent's child operations.
  UIElement *parent = nullptr;

  /// Detaches the element from the parent that it has, if any, and attaches it to `newParent`, unless that is null.
  void SetParent(UIElement *newParent);

  /// The element's own window; null when it has none.
  virtual HWND GetHandle() { return nullptr; }

  /// Whether the element needs a repaint. Nothing clears the flag: the root repaints whenever it is asked to.
  virtual bool IsDirty() { return dirty; }

  /// Asks for a repaint, which each parent passes on up to the root, which draws. Without a parent it only sets the
  /// flag.
  virtual void Invalidate();

  /// Called after a group of property changes.
  virtual void Update() {}

  /// Called right after `parent` was set; classes with a window make it here.
  virtual void OnAttached() {}

  /// Called before `parent` is cleared or replaced; classes with a window destroy it here.
  virtual void OnDetached() {}

  /// This element when its window is a top-level one, otherwise the parent's parent; null without a parent. One step
  /// and no loop, exact only for a tree whose element stands directly under a top-level element's child.
  virtual UIElement *GetRootElement();

  /// The window of GetRootElement(); null when there is none.
  virtual HWND GetRootHandle();

  /// Runs `work` once the first picture of the root is on the screen: after it where the root is still being made, at
  /// once otherwise. `work` may run when this element is gone, and sees to that itself.
  virtual void RunOnceShown(std::function<void()> work);

  /// The rectangle of Left, Top, Width and Height.
  RECT GetBounds() const;

  /// Sets Left, Top, Width and Height from `rectangle`, one after the other, each firing on its own.
  void SetBounds(const RECT *rectangle);

  /// Paints `child`, when it is visible, clipped to its own rectangle; `parentRect` is the absolute rectangle that the
  /// child's Left and Top count from. Null is ignored.
  void PaintChild(RenderTargetPtr renderTarget, UIElement *child, const D2D1_RECT_F *parentRect);

  /// Opens a group of property changes: what follows from them waits for the matching EndUpdate. Nests.
  void BeginUpdate() { ++updateDepth; }

  /// Closes a group; the outermost one, and one that was never opened, calls Update().
  void EndUpdate();

protected:
  /// True inside a group of property changes.
  bool IsUpdating() const { return updateDepth > 0; }

  bool dirty = true;

  /// What the element listens to for as long as it lives.
  Subscriptions subscriptions;

private:
  int updateDepth = 0;
};

} // namespace lumenor
