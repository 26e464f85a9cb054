#include "AnimationVariable.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <utility>

#include "AnimationErrors.h"
#include "AnimationStoryboard.h"
#include "Playlist.h"

namespace lumenor::services {

AnimationVariable::AnimationVariable(std::shared_ptr<const Playlist> owner, double initialValue)
    : owner(std::move(owner)), value(initialValue), previousValue(initialValue) {}

double AnimationVariable::ValueAt(double now) const { return player == nullptr ? value : player->ValueOf(*this, now); }

bool AnimationVariable::Take(double newValue) {
  previousValue = std::exchange(value, newValue);
  return previousValue != value;
}

double AnimationVariable::FinalValue() const { return player == nullptr ? value : player->FinalValueOf(*this); }

double AnimationVariable::Bound(double number) const { return std::min(std::max(number, lowerBound), upperBound); }

int AnimationVariable::Round(double number) const {
  double whole = std::floor(number + 0.5);
  if (rounding == UI_ANIMATION_ROUNDING_FLOOR)
    whole = std::floor(number);
  else if (rounding == UI_ANIMATION_ROUNDING_CEILING)
    whole = std::ceil(number);
  return static_cast<int>(std::clamp(whole, static_cast<double>(INT_MIN), static_cast<double>(INT_MAX)));
}

HRESULT STDMETHODCALLTYPE AnimationVariable::GetValue(double *result) noexcept { return HandOut(Bound(value), result); }

HRESULT STDMETHODCALLTYPE AnimationVariable::GetFinalValue(double *result) noexcept {
  return HandOut(Bound(FinalValue()), result);
}

HRESULT STDMETHODCALLTYPE AnimationVariable::GetPreviousValue(double *result) noexcept {
  return HandOut(Bound(previousValue), result);
}

HRESULT STDMETHODCALLTYPE AnimationVariable::GetIntegerValue(int *result) noexcept {
  return HandOut(Round(Bound(value)), result);
}

HRESULT STDMETHODCALLTYPE AnimationVariable::GetFinalIntegerValue(int *result) noexcept {
  return HandOut(Round(Bound(FinalValue())), result);
}

HRESULT STDMETHODCALLTYPE AnimationVariable::GetPreviousIntegerValue(int *result) noexcept {
  return HandOut(Round(Bound(previousValue)), result);
}

HRESULT STDMETHODCALLTYPE AnimationVariable::GetCurrentStoryboard(IUIAnimationStoryboard **result) noexcept {
  return HandOut(Microsoft::WRL::ComPtr<AnimationStoryboard>(player), result);
}

HRESULT STDMETHODCALLTYPE AnimationVariable::SetLowerBound(double bound) noexcept {
  lowerBound = bound;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE AnimationVariable::SetUpperBound(double bound) noexcept {
  upperBound = bound;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE AnimationVariable::SetRoundingMode(UI_ANIMATION_ROUNDING_MODE mode) noexcept {
  if (mode < UI_ANIMATION_ROUNDING_NEAREST || mode > UI_ANIMATION_ROUNDING_CEILING)
    return E_INVALIDARG;
  rounding = mode;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE AnimationVariable::SetTag(IUnknown *, unsigned int) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE AnimationVariable::GetTag(IUnknown **, unsigned int *) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE AnimationVariable::SetVariableChangeHandler(IUIAnimationVariableChangeHandler *) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE
AnimationVariable::SetVariableIntegerChangeHandler(IUIAnimationVariableIntegerChangeHandler *) noexcept {
  return E_NOTIMPL;
}

} // namespace lumenor::services
