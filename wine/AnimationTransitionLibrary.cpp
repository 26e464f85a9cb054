#include "AnimationTransitionLibrary.h"

#include <cmath>
#include <utility>

#include "AnimationTransition.h"

namespace lumenor::services {

namespace {

bool IsDuration(double seconds) { return std::isfinite(seconds) && seconds >= 0; }

bool IsShare(double ratio) { return ratio >= 0 && ratio <= 1; }

/// Hands out a new transition; refuses a number that is no duration or no value.
HRESULT Make(bool isValid, double duration, AnimationTransition::Shape shape, IUIAnimationTransition **transition) {
  if (transition == nullptr)
    return E_POINTER;
  *transition = nullptr;
  if (!isValid || !IsDuration(duration))
    return E_INVALIDARG;
  return HandOut(MakeComObject<AnimationTransition>(duration, std::move(shape)), transition);
}

HRESULT Refuse(IUIAnimationTransition **transition) {
  if (transition == nullptr)
    return E_POINTER;
  *transition = nullptr;
  return E_NOTIMPL;
}

/// Starts from rest, accelerates for the first share of the time and decelerates to rest in the last one.
struct SpeedUpAndDown {
  double duration, finalValue, acceleration, deceleration;

  double operator()(double initial, double seconds) const {
    if (seconds >= duration)
      return finalValue;
    const double topSpeed = (finalValue - initial) / (duration * (1 - acceleration / 2 - deceleration / 2));
    const double speedUp = acceleration * duration;
    const double slowDown = deceleration * duration;
    if (seconds < speedUp)
      return initial + topSpeed * seconds * seconds / (2 * speedUp);
    const double left = duration - seconds;
    if (left < slowDown)
      return finalValue - topSpeed * left * left / (2 * slowDown);
    return initial + topSpeed * (seconds - speedUp / 2);
  }
};

} // namespace

HRESULT STDMETHODCALLTYPE AnimationTransitionLibrary::CreateInstantaneousTransition(
    double finalValue, IUIAnimationTransition **transition) noexcept {
  return Make(
      std::isfinite(finalValue), 0, [finalValue](double, double) { return finalValue; }, transition);
}

HRESULT STDMETHODCALLTYPE
AnimationTransitionLibrary::CreateConstantTransition(double duration, IUIAnimationTransition **transition) noexcept {
  return Make(
      true, duration, [](double initial, double) { return initial; }, transition);
}

HRESULT STDMETHODCALLTYPE AnimationTransitionLibrary::CreateDiscreteTransition(
    double delay, double finalValue, double hold, IUIAnimationTransition **transition) noexcept {
  return Make(
      IsDuration(delay) && IsDuration(hold) && std::isfinite(finalValue), delay + hold,
      [=](double initial, double seconds) { return seconds < delay ? initial : finalValue; }, transition);
}

HRESULT STDMETHODCALLTYPE AnimationTransitionLibrary::CreateLinearTransition(
    double duration, double finalValue, IUIAnimationTransition **transition) noexcept {
  return Make(std::isfinite(finalValue), duration, SpeedUpAndDown{duration, finalValue, 0, 0}, transition);
}

HRESULT STDMETHODCALLTYPE AnimationTransitionLibrary::CreateAccelerateDecelerateTransition(
    double duration, double finalValue, double accelerationRatio, double decelerationRatio,
    IUIAnimationTransition **transition) noexcept {
  const bool isValid = std::isfinite(finalValue) && IsShare(accelerationRatio) && IsShare(decelerationRatio) &&
                       accelerationRatio + decelerationRatio <= 1;
  return Make(isValid, duration, SpeedUpAndDown{duration, finalValue, accelerationRatio, decelerationRatio},
              transition);
}

HRESULT STDMETHODCALLTYPE AnimationTransitionLibrary::CreateLinearTransitionFromSpeed(
    double, double, IUIAnimationTransition **transition) noexcept {
  return Refuse(transition);
}

HRESULT STDMETHODCALLTYPE AnimationTransitionLibrary::CreateSinusoidalTransitionFromVelocity(
    double, double, IUIAnimationTransition **transition) noexcept {
  return Refuse(transition);
}

HRESULT STDMETHODCALLTYPE AnimationTransitionLibrary::CreateSinusoidalTransitionFromRange(
    double, double, double, double, UI_ANIMATION_SLOPE, IUIAnimationTransition **transition) noexcept {
  return Refuse(transition);
}

HRESULT STDMETHODCALLTYPE
AnimationTransitionLibrary::CreateReversalTransition(double, IUIAnimationTransition **transition) noexcept {
  return Refuse(transition);
}

HRESULT STDMETHODCALLTYPE AnimationTransitionLibrary::CreateCubicTransition(
    double, double, double, IUIAnimationTransition **transition) noexcept {
  return Refuse(transition);
}

HRESULT STDMETHODCALLTYPE
AnimationTransitionLibrary::CreateSmoothStopTransition(double, double, IUIAnimationTransition **transition) noexcept {
  return Refuse(transition);
}

HRESULT STDMETHODCALLTYPE AnimationTransitionLibrary::CreateParabolicTransitionFromAcceleration(
    double, double, double, IUIAnimationTransition **transition) noexcept {
  return Refuse(transition);
}

} // namespace lumenor::services
