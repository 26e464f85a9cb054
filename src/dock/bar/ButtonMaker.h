#pragma once
// Makes the bar's buttons and their painters, wired to the bar's listeners. Owned by the dock, which lends it to the
// parts that hold buttons. User-interface thread.

#include <memory>

#include "content/Element.h"
#include "dock/flyouts/DockButton.h"
#include "toolkit/drawing/ButtonLayout.h"
#include "toolkit/drawing/CheckedButton.h"
#include "toolkit/Event.h"
#include "toolkit/Property.h"

namespace lumenor {

class ButtonMaker {
public:
  /// Both listeners are borrowed and outlive all buttons: `clickListener` hears of every click, `flyoutListener` of
  /// the showing and hiding of every flyout that a button owns.
  ButtonMaker(RenderTargetPtr renderTarget, EventListener<ButtonEventArgs> *clickListener,
              EventListener<PropertyChangeEventArgs<lumenor::Visibility>> *flyoutListener);

  /// The painter of a button for `element`. A picture that can't be decoded is replaced by the default one.
  std::shared_ptr<IButtonPainter> MakePainter(const Element &element, const ButtonLayout &layout) const;

  /// A button for `element`. Raises CommandNotFoundException for an element with neither
  /// a picture nor a target that exists.
  std::shared_ptr<DockButton> MakeButton(const Element &element, const ButtonLayout &layout) const;

  /// The button that moves the bar to the other edge. Checked means a bar at the top, and the picture then offers
  /// the bottom.
  std::shared_ptr<CheckedButton> MakeDockPositionButton() const;

private:
  RenderTargetPtr renderTarget;
  EventListener<ButtonEventArgs> *clickListener;
  EventListener<PropertyChangeEventArgs<lumenor::Visibility>> *flyoutListener;
};

} // namespace lumenor
