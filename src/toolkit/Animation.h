#pragma once
// Smooth changes of a number over time: drives a property from one value to another along the platform's curve of
// acceleration and deceleration. Must not outlive the property; may be started any number of times. User-interface
// thread only.
//
// All animations share one timer, which calls the one that started last; an earlier one stops where it is. Nothing is
// called at the end: the last tick has set the end value.

#include <memory>

#include <uianimation.h>
#include <wrl/client.h>

#include "system/ComObject.h"
#include "system/Windows.h"
#include "toolkit/Event.h"
#include "toolkit/Property.h"

namespace lumenor {

template <typename T> class Animation {
public:
  Animation() = default;
  Animation(const Animation &) = delete;
  Animation &operator=(const Animation &) = delete;

  /// Ends the timer's calls to this animation; what still plays sets nothing any more.
  virtual ~Animation() { *alive = 0; }

  /// Plays from `From` to `To` on `Target`, from now on. Does nothing without a target, or where the two are equal.
  /// Whatever still plays sets nothing any more. Raises HResultError where a service of the platform fails.
  virtual void Start();

  /// Gives the target the value of this moment, rounded by the platform; nothing before a Start. Called at every tick.
  virtual void Update();

  Property<float> From{0.0F};
  Property<float> To{0.0F};

  /// Seconds to hold `From` before moving.
  Property<float> Delay{0.0F};

  /// Seconds of the movement.
  Property<float> Duration{0.0F};

  /// Shares of `Duration`, 1 together at most.
  Property<float> AccelerationRatio{0.0F};
  Property<float> DecelerationRatio{0.0F};

  /// The property to drive, borrowed.
  Property<Property<T> *> Target{nullptr};

private:
  void AddTransitions(IUIAnimationTransitionLibrary &library);

  Microsoft::WRL::ComPtr<IUIAnimationStoryboard> storyboard; // of the last Start
  Microsoft::WRL::ComPtr<IUIAnimationVariable> variable;     // likewise

  // Shared with the handlers at the timer, of which one may outlive this.
  AliveFlag alive = std::make_shared<unsigned char>(static_cast<unsigned char>(1));
};

extern template class Animation<unsigned char>;
extern template class Animation<long>;

/// Drives a property of 8 bits, such as an opacity; of a value beyond them it takes the low 8.
using ByteAnimation = Animation<unsigned char>;

/// Drives a property of whole numbers, such as a place in pixels.
using LongAnimation = Animation<long>;

/// What the timer calls for an animation. Held by the timer alone.
template <typename T> class TimerEventHandler : public ComObject<IUIAnimationTimerEventHandler> {
public:
  /// `animation` is borrowed; once `animationAlive` is 0 it isn't called any more.
  TimerEventHandler(Animation<T> *animation, AliveFlag animationAlive);

  HRESULT STDMETHODCALLTYPE OnPreUpdate() noexcept override { return S_OK; }

  /// Updates the animation. What it raises is kept for the message loop (KeepWindowException).
  HRESULT STDMETHODCALLTYPE OnPostUpdate() noexcept override;
  HRESULT STDMETHODCALLTYPE OnRenderingTooSlow(UINT32 /*framesPerSecond*/) noexcept override { return S_OK; }

private:
  Animation<T> *animation;
  AliveFlag animationAlive;
};

extern template class TimerEventHandler<unsigned char>;
extern template class TimerEventHandler<long>;

} // namespace lumenor
