#pragma once
// Transitions of some variables, one after the other on each variable, that start together. One thread.

#include <memory>
#include <vector>

#include <uianimation.h>

#include "AnimationTransition.h"
#include "AnimationVariable.h"
#include "ServiceObject.h"

namespace lumenor::services {

class Playlist;

class AnimationStoryboard : public ServiceObject<AnimationStoryboard, IUIAnimationStoryboard> {
public:
  explicit AnimationStoryboard(std::shared_ptr<Playlist> playlist);

  /// Takes its variables over, from the values that they have at `now`.
  void Begin(double now);

  /// Stops its variables at their present values.
  void End();

  /// Sets its variables to their values at `now`, and ends when all of it has played. True when a value has changed.
  bool Advance(double now);

  bool HasEnded() const { return status == UI_ANIMATION_STORYBOARD_READY; }

  /// Whether it still has a variable that no later storyboard took over.
  bool HasVariables() const;

  /// The value of a variable that it plays on, at `now` and at its end.
  double ValueOf(const AnimationVariable &variable, double now) const;
  double FinalValueOf(const AnimationVariable &variable) const;

  HRESULT STDMETHODCALLTYPE AddTransition(IUIAnimationVariable *variable,
                                          IUIAnimationTransition *transition) noexcept override;
  HRESULT STDMETHODCALLTYPE SetLongestAcceptableDelay(double delay) noexcept override;
  HRESULT STDMETHODCALLTYPE Schedule(double timeNow, UI_ANIMATION_SCHEDULING_RESULT *result) noexcept override;
  HRESULT STDMETHODCALLTYPE Abandon() noexcept override;
  HRESULT STDMETHODCALLTYPE GetStatus(UI_ANIMATION_STORYBOARD_STATUS *result) noexcept override;
  HRESULT STDMETHODCALLTYPE GetElapsedTime(double *result) noexcept override;

  // Not served: no program here uses keyframes, ends a storyboard early or listens to it.
  HRESULT STDMETHODCALLTYPE AddKeyframeAtOffset(UI_ANIMATION_KEYFRAME existing, double offset,
                                                UI_ANIMATION_KEYFRAME *keyframe) noexcept override;
  HRESULT STDMETHODCALLTYPE AddKeyframeAfterTransition(IUIAnimationTransition *transition,
                                                       UI_ANIMATION_KEYFRAME *keyframe) noexcept override;
  HRESULT STDMETHODCALLTYPE AddTransitionAtKeyframe(IUIAnimationVariable *variable, IUIAnimationTransition *transition,
                                                    UI_ANIMATION_KEYFRAME start) noexcept override;
  HRESULT STDMETHODCALLTYPE AddTransitionBetweenKeyframes(IUIAnimationVariable *variable,
                                                          IUIAnimationTransition *transition,
                                                          UI_ANIMATION_KEYFRAME start,
                                                          UI_ANIMATION_KEYFRAME end) noexcept override;
  HRESULT STDMETHODCALLTYPE RepeatBetweenKeyframes(UI_ANIMATION_KEYFRAME start, UI_ANIMATION_KEYFRAME end,
                                                   int repetitions) noexcept override;
  HRESULT STDMETHODCALLTYPE HoldVariable(IUIAnimationVariable *variable) noexcept override;
  HRESULT STDMETHODCALLTYPE Conclude() noexcept override;
  HRESULT STDMETHODCALLTYPE Finish(double completionDeadline) noexcept override;
  HRESULT STDMETHODCALLTYPE SetTag(IUnknown *object, unsigned int id) noexcept override;
  HRESULT STDMETHODCALLTYPE GetTag(IUnknown **object, unsigned int *id) noexcept override;
  HRESULT STDMETHODCALLTYPE SetStoryboardEventHandler(IUIAnimationStoryboardEventHandler *handler) noexcept override;

private:
  /// Its transitions of one variable.
  struct Track {
    Microsoft::WRL::ComPtr<AnimationVariable> variable;
    std::vector<Microsoft::WRL::ComPtr<AnimationTransition>> transitions;
    double initial = 0;

    double Duration() const;
    double ValueAfter(double seconds) const;
  };

  bool Plays(const Track &track) const { return track.variable->Player() == this; }
  bool IsActive() const;
  double Duration() const;
  Track &TrackOf(AnimationVariable &variable);
  const Track &TrackOf(const AnimationVariable &variable) const;

  std::shared_ptr<Playlist> playlist;
  std::vector<Track> tracks;
  double startTime = 0;
  UI_ANIMATION_STORYBOARD_STATUS status = UI_ANIMATION_STORYBOARD_BUILDING;
};

} // namespace lumenor::services
