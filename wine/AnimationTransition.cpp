#include "AnimationTransition.h"

#include <algorithm>
#include <utility>

#include "AnimationErrors.h"

namespace lumenor::services {

AnimationTransition::AnimationTransition(double duration, Shape shape) : duration(duration), shape(std::move(shape)) {}

double AnimationTransition::ValueAt(double initial, double seconds) const {
  return shape(initialValue.value_or(initial), std::clamp(seconds, 0.0, duration));
}

bool AnimationTransition::Use() { return !std::exchange(used, true); }

HRESULT STDMETHODCALLTYPE AnimationTransition::SetInitialValue(double value) noexcept {
  if (used)
    return objectSealed;
  initialValue = value;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE AnimationTransition::SetInitialVelocity(double) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE AnimationTransition::IsDurationKnown() noexcept { return S_OK; }

HRESULT STDMETHODCALLTYPE AnimationTransition::GetDuration(double *result) noexcept {
  return HandOut(duration, result);
}

} // namespace lumenor::services
