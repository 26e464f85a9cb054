#pragma once
// What elements with a child window of their own have in common. The window shows nothing: it is there for the platform
// to find what lies under the cursor, and to be the parent of its children's windows. User-interface thread.

#include <functional>
#include <memory>
#include <vector>

#include "system/Windows.h"
#include "toolkit/Control.h"
#include "toolkit/WindowImpl.h"

namespace lumenor {

/// Moves the element's window, if there is one, to the element's rectangle, on top of its siblings; at the end of a
/// hold where there is one.
void MoveElementWindow(UIElement &element);

/// Holds the moves of all elements' windows back while it lives. Then every window is moved once, to where its element
/// is by then, in the order of the last moves that were asked for: that is how the windows lie over each other. A move
/// is dear, and a layout asks for four of each window. The outermost of nested holds moves.
class WindowMoveHold {
public:
  WindowMoveHold() { ++depth; }
  ~WindowMoveHold();
  WindowMoveHold(const WindowMoveHold &) = delete;
  WindowMoveHold &operator=(const WindowMoveHold &) = delete;

  /// Drops what is held of `element`, which is about to lose its window.
  static void Forget(const UIElement &element) { std::erase(moved, &element); }

private:
  friend void MoveElementWindow(UIElement &element);

  static inline int depth = 0;
  static inline std::vector<UIElement *> moved; // those that were held, each once, by its last move
};

/// The element `Element` with its window of class `T`, which lives from OnAttached to OnDetached, unless
/// the parent has no window.
template <class T, class Element, class Traits> class WindowedElement : public Element,
                                                                        public CWindowImpl<T, CWindow, Traits> {
public:
  ~WindowedElement() override { WindowMoveHold::Forget(*this); }

  HWND GetHandle() override { return this->handle; }

  void OnAttached() override {
    if (this->parent == nullptr || !::IsWindow(this->parent->GetHandle()))
      return;
    // Noted before the window exists: a control takes its rectangle from the window's first WM_SIZE and WM_MOVE.
    const RECT bounds = this->GetBounds();
    MakeWindow(this->parent->GetHandle());
    this->SetBounds(&bounds);
  }

  void OnDetached() override {
    if (::IsWindow(this->handle))
      ::DestroyWindow(this->handle);
  }

protected:
  /// Makes the window under `parentWindow`.
  virtual void MakeWindow(HWND parentWindow) { this->Create(parentWindow); }
};

/// A control whose window and whose rectangle follow each other.
class WindowControl : public Control {
protected:
  WindowControl();

  /// On WM_MOVE and WM_SIZE, which stay unhandled. The coordinates are taken as unsigned: a window at a negative offset
  /// reads a large positive one. Callers keep children at offsets that aren't negative.
  BOOL OnMove(LPARAM position);
  virtual BOOL OnSize(LPARAM size);

  /// RunOnceShown for work on the window: only the work of the last call is done, and none without a window.
  void RunLatestOnceShown(std::function<void()> work);

private:
  void OnGeometryChanged();
  void OnVisibilityChanged(PropertyChangeEventArgs<lumenor::Visibility> *args);

  std::shared_ptr<void> latestRequest; // the last one that waits; others are void
};

} // namespace lumenor
