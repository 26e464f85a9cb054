#pragma once
// A child window that shows a horizontal strip, its one child, through a room that may be narrower: two arrow buttons
// at the room's ends, which show as long as there is something to come on their side, slide the strip. Held in a shared
// pointer by whoever composes the screen; the strip is borrowed. User-interface thread.

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

  /// Paints the strip, and above it the arrow buttons that show; nothing in a room without width or height.
  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;

  /// Replaces the strip and follows its wishes from now on; a slide of the former one ends. `newChild` must not be
  /// null.
  void SetChild(UIElement *newChild) override;

  /// Gives the strip the width it asks for and the viewer's height, and keeps its ends at or outside the room's.
  void Layout() override;

  void OnWidthChanged() override;
  void OnHeightChanged() override;

  /// Whether a slide is under way. One that hasn't come to its end long after its time, since another animation has
  /// taken its ticks, isn't any more.
  bool IsSliding() const;

  /// Puts the strip where a slide leads that hasn't come to its end; for who is about to take its ticks.
  void EndSlide();

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId = 0) override;

protected:
  /// Makes the window and in it the arrow buttons. Raises HResultError when a picture of theirs can't be made.
  void MakeWindow(HWND parentWindow) override;

  std::shared_ptr<Button> leftButton, rightButton; // null as long as there is no window

private:
  void UnfollowChild();
  std::shared_ptr<Button> MakeArrowButton(const wchar_t *imagePath, EventListener<ButtonEventArgs> *clickListener);
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
  ListenerPtr<ButtonEventArgs> leftClickListener, rightClickListener;
};

} // namespace lumenor
