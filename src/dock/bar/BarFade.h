#pragma once
// The fade of the bar: it dims some seconds after the cursor has left, with two of its buttons hidden, and comes back
// with the cursor. A member of the dock, whose timer steps it. User-interface thread.

#include <memory>
#include <optional>

#include "dock/bar/Bar.h"
#include "system/ScopeExit.h"
#include "toolkit/Animation.h"
#include "toolkit/drawing/Window.h"
#include "toolkit/Event.h"
#include "toolkit/Property.h"

namespace lumenor {

class BarFade {
public:
  /// Fades the opacity of `window`, between 190 and 255, while the row of `bar` stands still. Both are borrowed.
  BarFade(Window &window, const Bar &bar);

  /// One step of the timer, every 200 ms. Raises HResultError where the animation can't be started.
  void Step();

  /// True while something keeps the bar from dimming: an open flyout, or what asked for KeepAwake.
  bool IsKeptAwake() const { return keepAwake; }

  /// Keeps the bar from dimming until the result goes out of scope.
  auto KeepAwake() {
    keepAwake = true;
    return ScopeExit([this] { keepAwake = false; });
  }

  /// Hears of the flyouts that keep the bar awake while they are shown. Lives as long as this object.
  EventListener<PropertyChangeEventArgs<Visibility>> *FlyoutListener() const { return flyoutListener.get(); }

private:
  void Step(bool isCursorOnBar, bool mayDim);
  bool IsStuck();
  bool FadeTo(unsigned char goal);
  void OnFlyoutVisibilityChanged(PropertyChangeEventArgs<Visibility> *args);

  Window &window;
  const Bar &bar;
  bool keepAwake = false;
  ByteAnimation fadeAnimation;
  int idleTicks = 0;                     // steps without the cursor
  std::optional<unsigned char> fadeGoal; // of the fade that is under way; empty when none is
  unsigned char opacityBefore = 0;       // at the last step
  ListenerPtr<PropertyChangeEventArgs<Visibility>> flyoutListener;
};

} // namespace lumenor
