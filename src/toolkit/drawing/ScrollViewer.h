#pragma once
// A child window that shows a horizontal strip, its one child, in an area that may be narrower: two arrow buttons at
// the ends of the area, each shown while a part of the strip is hidden on its side, slide the strip. Held in a shared
// pointer by the owner of the screen; the strip is borrowed. User-interface thread.

#include <memory>
#include <optional>

#include "toolkit/Animation.h"
#include "toolkit/drawing/Button.h"
#include "toolkit/PanelWindow.h"
#include "toolkit/SingleChildContainer.h"

namespace lumenor {

class ScrollViewer : public WindowedElement<ScrollViewer, SingleChildContainer, PanelTraits> {
public:
  /// `renderTarget` is what the arrow buttons are drawn on.
  explicit ScrollViewer(RenderTargetPtr renderTarget);

  /// Paints the strip, and above it the arrow buttons that show; nothing in an area without width or height.
  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;

  /// Replaces the strip and follows its desired width; a slide of the former one ends. `newChild` must not be
  /// null.
  void SetChild(UIElement *newChild) override;

  /// Gives the strip the width it asks for and the viewer's height, and keeps its ends at or outside the viewer's.
  void Layout() override;

  void OnWidthChanged() override { FitToSize(); }
  void OnHeightChanged() override { FitToSize(); }

  /// Whether a slide is under way. One that is long past its time, because another animation gets the timer's ticks,
  /// doesn't count.
  bool IsSliding() const;

  /// Moves the strip to the end of an unfinished slide. To be called before another animation takes the timer's ticks.
  void EndSlide();

  BOOL ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result, DWORD = 0) override {
    return ProcessPanelMessage(*this, message, wParam, lParam, result);
  }

protected:
  /// Makes the window and in it the arrow buttons. Raises HResultError when a picture of theirs can't be made.
  void MakeWindow(HWND parentWindow) override;

  std::shared_ptr<Button> leftButton, rightButton; // null as long as there is no window

private:
  void UnfollowChild();
  std::shared_ptr<Button> MakeArrowButton(const wchar_t *imagePath, void (ScrollViewer::*onClick)());
  void FitToSize();
  void PlaceButtons();
  void UpdateButtons();
  void Slide(long distance);
  long InsideLimits(long left) const;

  void OnChildLeftChanged(PropertyChangeEventArgs<long> *args);
  void OnLeftClick();
  void OnRightClick();

  RenderTargetPtr renderTarget;
  LongAnimation animation;
  std::optional<long> slideEnd; // where the strip's Left goes; empty when no slide is under way
  ULONGLONG slideDeadline = 0;  // in ticks of GetTickCount64
  ListenerPtr<PropertyChangeEventArgs<long>> childDesiredWidthListener, childLeftListener;
  ListenerPtr<PropertyChangeEventArgs<lumenor::Visibility>> childVisibilityListener;
};

} // namespace lumenor
