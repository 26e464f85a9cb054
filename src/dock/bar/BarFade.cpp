#include "dock/bar/BarFade.h"

#include <utility>

#include "dock/dragdrop/DragState.h"
#include "system/Windows.h"

namespace lumenor {

namespace {

constexpr unsigned char dimmed = 190;
constexpr unsigned char opaque = 255;

constexpr float fadeSeconds = 0.3F;
constexpr float fadeAcceleration = 0.05F;
constexpr float fadeDeceleration = 0.75F;

/// Steps without the cursor before the bar dims.
constexpr int idleTicksBeforeFade = 21;

} // namespace

BarFade::BarFade(Window &window, const Bar &bar)
    : window(window), bar(bar), flyoutListener(MakeListener(this, &BarFade::OnFlyoutVisibilityChanged)) {
  fadeAnimation.AccelerationRatio.Set(fadeAcceleration);
  fadeAnimation.DecelerationRatio.Set(fadeDeceleration);
  fadeAnimation.Duration.Set(fadeSeconds);
  fadeAnimation.Target.Set(&window.Opacity);
}

void BarFade::OnFlyoutVisibilityChanged(PropertyChangeEventArgs<Visibility> *args) {
  keepAwake = args->newValue == Visibility::Visible;
}

void BarFade::Step() {
  POINT cursor;
  if (!::GetCursorPos(&cursor)) // another desktop has the cursor, such as that of a locked session
    return;
  const RECT place = window.GetBounds();
  Step(::PtInRect(&place, cursor) != FALSE, !dragOutside && !keepAwake);
}

/// `mayDim` is false while something keeps the bar awake.
///
/// The count restarts only when the bar comes back from being dim. A cursor that stays away a little at a time adds
/// up, so that the bar may dim as soon as it leaves again. A fade that got stuck goes on, and under the cursor it turns
/// back; a running one does neither.
void BarFade::Step(bool isCursorOnBar, bool mayDim) {
  const bool isStuck = IsStuck();
  if (isCursorOnBar) {
    const bool isDim = idleTicks != 0 && window.Opacity.Get() == dimmed;
    if ((isDim || isStuck) && FadeTo(opaque))
      idleTicks = 0;
    return;
  }
  if (isStuck)
    FadeTo(*fadeGoal);
  else if (mayDim && idleTicks >= idleTicksBeforeFade && window.Opacity.Get() >= opaque)
    FadeTo(dimmed);
  if (mayDim)
    ++idleTicks;
}

/// Whether the fade has stopped short of its goal. Only the animation that started last gets timer ticks: a slide of
/// the row that begins within a fade stops it.
bool BarFade::IsStuck() {
  const unsigned char now = window.Opacity.Get();
  if (fadeGoal == now)
    fadeGoal.reset();
  return std::exchange(opacityBefore, now) == now && fadeGoal.has_value();
}

/// Begins to fade from where the opacity stands. False while the row slides, which the fade would stop between two
/// buttons: the next step is soon enough.
bool BarFade::FadeTo(unsigned char goal) {
  if (bar.scrollViewer->IsSliding())
    return false;
  bar.scrollViewer->EndSlide(); // of one that got stuck
  fadeAnimation.From.Set(window.Opacity.Get());
  fadeAnimation.To.Set(goal);
  fadeAnimation.Start();
  fadeGoal = goal;
  bar.ShowFadingButtons(goal == opaque ? Visibility::Visible : Visibility::Hidden);
  return true;
}

} // namespace lumenor
