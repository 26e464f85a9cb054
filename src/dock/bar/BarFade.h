#pragma once
// The fade of the bar: it dims some seconds after the cursor has left, with two of its buttons hidden, and comes back
// with the cursor. Owned by the dock, whose timer steps it. User-interface thread.

#include <optional>

#include "toolkit/Animation.h"
#include "toolkit/Property.h"

namespace lumenor {

struct BarElements;

class BarFade {
public:
  /// Fades `opacity`, between 190 and 255, as long as the row of `bar` stands. Both are borrowed.
  BarFade(Property<unsigned char> &opacity, const BarElements &bar);

  /// One step of the timer, every 200 ms. `mayDim` is false as long as something keeps the bar awake. Raises
  /// HResultError where the animation can't be started.
  void Step(bool isCursorOnBar, bool mayDim);

private:
  bool IsStuck();
  bool FadeTo(unsigned char goal);

  Property<unsigned char> &opacity;
  const BarElements &bar;
  ByteAnimation fadeAnimation;
  int idleTicks = 0;                     // steps without the cursor
  std::optional<unsigned char> fadeGoal; // of the fade that is under way; empty when none is
  unsigned char opacityBefore = 0;       // at the last step
};

} // namespace lumenor
