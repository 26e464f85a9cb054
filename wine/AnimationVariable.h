#pragma once
// A number that storyboards move. Its value changes in updates only. One thread.

#include <limits>
#include <memory>

#include <uianimation.h>

#include "ServiceObject.h"

namespace lumenor::services {

class AnimationStoryboard;
class Playlist;

class AnimationVariable : public ServiceObject<AnimationVariable, IUIAnimationVariable> {
public:
  static constexpr GUID identity{0x7d0c3c52, 0x1f4e, 0x4b8e, {0xa6, 0x5d, 0x30, 0x77, 0xe2, 0x6b, 0x91, 0xc4}};

  AnimationVariable(std::shared_ptr<const Playlist> owner, double initialValue);

  bool IsOf(const Playlist &playlist) const { return owner.get() == &playlist; }

  /// The storyboard that plays on it, or null.
  const AnimationStoryboard *Player() const { return player; }

  /// Makes `newPlayer`, which may be null, its storyboard. Borrowed: the storyboard resets it at its end.
  void SetPlayer(AnimationStoryboard *newPlayer) { player = newPlayer; }

  /// The value at the time `now`, also ahead of an update for it.
  double ValueAt(double now) const;

  /// Takes the value of an update; true when it differs.
  bool Take(double newValue);

  HRESULT STDMETHODCALLTYPE GetValue(double *result) noexcept override;
  HRESULT STDMETHODCALLTYPE GetFinalValue(double *result) noexcept override;
  HRESULT STDMETHODCALLTYPE GetPreviousValue(double *result) noexcept override;
  HRESULT STDMETHODCALLTYPE GetIntegerValue(int *result) noexcept override;
  HRESULT STDMETHODCALLTYPE GetFinalIntegerValue(int *result) noexcept override;
  HRESULT STDMETHODCALLTYPE GetPreviousIntegerValue(int *result) noexcept override;
  HRESULT STDMETHODCALLTYPE GetCurrentStoryboard(IUIAnimationStoryboard **result) noexcept override;
  HRESULT STDMETHODCALLTYPE SetLowerBound(double bound) noexcept override;
  HRESULT STDMETHODCALLTYPE SetUpperBound(double bound) noexcept override;
  HRESULT STDMETHODCALLTYPE SetRoundingMode(UI_ANIMATION_ROUNDING_MODE mode) noexcept override;

  // Not served: no program here tags variables or listens to them.
  HRESULT STDMETHODCALLTYPE SetTag(IUnknown *object, unsigned int id) noexcept override;
  HRESULT STDMETHODCALLTYPE GetTag(IUnknown **object, unsigned int *id) noexcept override;
  HRESULT STDMETHODCALLTYPE SetVariableChangeHandler(IUIAnimationVariableChangeHandler *handler) noexcept override;
  HRESULT STDMETHODCALLTYPE
  SetVariableIntegerChangeHandler(IUIAnimationVariableIntegerChangeHandler *handler) noexcept override;

private:
  double FinalValue() const;
  double Bound(double number) const;
  int Round(double number) const;

  std::shared_ptr<const Playlist> owner;
  AnimationStoryboard *player = nullptr;
  double value;
  double previousValue;
  double lowerBound = std::numeric_limits<double>::lowest();
  double upperBound = std::numeric_limits<double>::max();
  UI_ANIMATION_ROUNDING_MODE rounding = UI_ANIMATION_ROUNDING_NEAREST;
};

} // namespace lumenor::services
