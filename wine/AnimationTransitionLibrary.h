#pragma once
// Makes transitions: constant, instantaneous, linear, and accelerate-decelerate. Those that depend on the variable's
// velocity are refused with E_NOTIMPL.

#include <uianimation.h>

#include "ServiceObject.h"

namespace lumenor::services {

class AnimationTransitionLibrary : public ServiceObject<AnimationTransitionLibrary, IUIAnimationTransitionLibrary> {
public:
  HRESULT STDMETHODCALLTYPE CreateInstantaneousTransition(double finalValue,
                                                          IUIAnimationTransition **transition) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateConstantTransition(double duration,
                                                     IUIAnimationTransition **transition) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateDiscreteTransition(double delay, double finalValue, double hold,
                                                     IUIAnimationTransition **transition) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateLinearTransition(double duration, double finalValue,
                                                   IUIAnimationTransition **transition) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateLinearTransitionFromSpeed(double speed, double finalValue,
                                                            IUIAnimationTransition **transition) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateSinusoidalTransitionFromVelocity(
      double duration, double period, IUIAnimationTransition **transition) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateSinusoidalTransitionFromRange(double duration, double minimumValue,
                                                                double maximumValue, double period,
                                                                UI_ANIMATION_SLOPE slope,
                                                                IUIAnimationTransition **transition) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateAccelerateDecelerateTransition(double duration, double finalValue,
                                                                 double accelerationRatio, double decelerationRatio,
                                                                 IUIAnimationTransition **transition) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateReversalTransition(double duration,
                                                     IUIAnimationTransition **transition) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateCubicTransition(double duration, double finalValue, double finalVelocity,
                                                  IUIAnimationTransition **transition) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateSmoothStopTransition(double maximumDuration, double finalValue,
                                                       IUIAnimationTransition **transition) noexcept override;
  HRESULT STDMETHODCALLTYPE
  CreateParabolicTransitionFromAcceleration(double finalValue, double finalVelocity, double acceleration,
                                            IUIAnimationTransition **transition) noexcept override;
};

} // namespace lumenor::services
