#pragma once
// How one variable moves for a while. Belongs to one storyboard at most.

#include <functional>
#include <optional>

#include <uianimation.h>

#include "ServiceObject.h"

namespace lumenor::services {

class AnimationTransition : public ServiceObject<AnimationTransition, IUIAnimationTransition> {
public:
  static constexpr GUID identity{0x2a6f1d0b, 0x93c7, 0x4f55, {0x8e, 0x21, 0x5b, 0x0c, 0x9d, 0x44, 0x7a, 0x13}};

  /// The value at a time in seconds, from 0 up to the duration, at which it is the last one.
  using Shape = std::function<double(double initial, double seconds)>;

  AnimationTransition(double duration, Shape shape);

  double Duration() const { return duration; }

  /// The value after `seconds` of a variable that started at `initial`; from the end on the last value.
  double ValueAt(double initial, double seconds) const;

  /// Makes it part of a storyboard; false when it is part of one already.
  bool Use();

  HRESULT STDMETHODCALLTYPE SetInitialValue(double value) noexcept override;
  HRESULT STDMETHODCALLTYPE SetInitialVelocity(double velocity) noexcept override;
  HRESULT STDMETHODCALLTYPE IsDurationKnown() noexcept override;
  HRESULT STDMETHODCALLTYPE GetDuration(double *result) noexcept override;

private:
  double duration;
  Shape shape;
  std::optional<double> initialValue; // instead of the variable's own
  bool used = false;
};

} // namespace lumenor::services
