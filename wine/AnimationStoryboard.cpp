#include "AnimationStoryboard.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "AnimationErrors.h"
#include "Playlist.h"

namespace lumenor::services {

double AnimationStoryboard::Track::Duration() const {
  double sum = 0;
  for (const auto &transition : transitions)
    sum += transition->Duration();
  return sum;
}

/// Each transition starts with the last value of the one before it.
double AnimationStoryboard::Track::ValueAfter(double seconds) const {
  double value = initial;
  for (const auto &transition : transitions) {
    const double duration = transition->Duration();
    if (seconds < duration)
      return transition->ValueAt(value, seconds);
    value = transition->ValueAt(value, duration);
    seconds -= duration;
  }
  return value;
}

AnimationStoryboard::AnimationStoryboard(std::shared_ptr<Playlist> playlist) : playlist(std::move(playlist)) {}

void AnimationStoryboard::Begin(double now) {
  for (Track &track : tracks) {
    track.initial = track.variable->ValueAt(now);
    track.variable->SetPlayer(this);
  }
  startTime = now;
  status = UI_ANIMATION_STORYBOARD_SCHEDULED;
}

void AnimationStoryboard::End() {
  for (const Track &track : tracks)
    if (Plays(track))
      track.variable->SetPlayer(nullptr);
  status = UI_ANIMATION_STORYBOARD_READY;
}

bool AnimationStoryboard::Advance(double now) {
  const double elapsed = now - startTime;
  if (elapsed < 0)
    return false;
  status = UI_ANIMATION_STORYBOARD_PLAYING;
  bool hasChanged = false;
  for (const Track &track : tracks)
    if (Plays(track))
      hasChanged = track.variable->Take(track.ValueAfter(elapsed)) || hasChanged;
  if (elapsed >= Duration())
    End();
  return hasChanged;
}

bool AnimationStoryboard::HasVariables() const {
  return std::any_of(tracks.begin(), tracks.end(), [this](const Track &track) { return Plays(track); });
}

double AnimationStoryboard::ValueOf(const AnimationVariable &variable, double now) const {
  return TrackOf(variable).ValueAfter(std::max(0.0, now - startTime));
}

double AnimationStoryboard::FinalValueOf(const AnimationVariable &variable) const {
  return TrackOf(variable).ValueAfter(std::numeric_limits<double>::infinity());
}

bool AnimationStoryboard::IsActive() const {
  return status == UI_ANIMATION_STORYBOARD_SCHEDULED || status == UI_ANIMATION_STORYBOARD_PLAYING;
}

double AnimationStoryboard::Duration() const {
  double longest = 0;
  for (const Track &track : tracks)
    longest = std::max(longest, track.Duration());
  return longest;
}

AnimationStoryboard::Track &AnimationStoryboard::TrackOf(AnimationVariable &variable) {
  for (Track &track : tracks)
    if (track.variable.Get() == &variable)
      return track;
  return tracks.emplace_back(Track{&variable, {}});
}

/// Only for variables that it plays on.
const AnimationStoryboard::Track &AnimationStoryboard::TrackOf(const AnimationVariable &variable) const {
  return *std::find_if(tracks.begin(), tracks.end(),
                       [&variable](const Track &track) { return track.variable.Get() == &variable; });
}

HRESULT STDMETHODCALLTYPE AnimationStoryboard::AddTransition(IUIAnimationVariable *variable,
                                                             IUIAnimationTransition *transition) noexcept {
  if (variable == nullptr || transition == nullptr)
    return E_POINTER;
  if (playlist->IsShutDown())
    return shutdownCalled;
  if (status != UI_ANIMATION_STORYBOARD_BUILDING)
    return objectSealed;
  const auto ownVariable = OwnObject<AnimationVariable>(variable);
  const auto ownTransition = OwnObject<AnimationTransition>(transition);
  if (ownVariable == nullptr || ownTransition == nullptr)
    return E_INVALIDARG;
  if (!ownVariable->IsOf(*playlist))
    return differentOwner;
  if (!ownTransition->Use())
    return transitionAlreadyUsed;
  TrackOf(*ownVariable.Get()).transitions.push_back(ownTransition);
  return S_OK;
}

/// The later storyboard always wins at once, so there is no delay to accept.
HRESULT STDMETHODCALLTYPE AnimationStoryboard::SetLongestAcceptableDelay(double) noexcept { return S_OK; }

HRESULT STDMETHODCALLTYPE AnimationStoryboard::Schedule(double timeNow,
                                                        UI_ANIMATION_SCHEDULING_RESULT *result) noexcept {
  UI_ANIMATION_SCHEDULING_RESULT unwanted{};
  UI_ANIMATION_SCHEDULING_RESULT &outcome = result == nullptr ? unwanted : *result;
  outcome = UI_ANIMATION_SCHEDULING_UNEXPECTED_FAILURE;
  if (playlist->IsShutDown())
    return shutdownCalled;
  if (timeNow < playlist->LastUpdate())
    return timeBeforeLastUpdate;
  outcome = UI_ANIMATION_SCHEDULING_ALREADY_SCHEDULED;
  if (IsActive())
    return S_OK;
  outcome = UI_ANIMATION_SCHEDULING_SUCCEEDED;
  playlist->Play(*this, timeNow);
  return S_OK;
}

HRESULT STDMETHODCALLTYPE AnimationStoryboard::Abandon() noexcept {
  if (!IsActive())
    return storyboardNotPlaying;
  const Microsoft::WRL::ComPtr<AnimationStoryboard> self(this);
  playlist->Stop(*this);
  return S_OK;
}

HRESULT STDMETHODCALLTYPE AnimationStoryboard::GetStatus(UI_ANIMATION_STORYBOARD_STATUS *result) noexcept {
  return HandOut(status, result);
}

HRESULT STDMETHODCALLTYPE AnimationStoryboard::GetElapsedTime(double *result) noexcept {
  if (status != UI_ANIMATION_STORYBOARD_PLAYING)
    return storyboardNotPlaying;
  return HandOut(playlist->LastUpdate() - startTime, result);
}

HRESULT STDMETHODCALLTYPE AnimationStoryboard::AddKeyframeAtOffset(UI_ANIMATION_KEYFRAME, double,
                                                                   UI_ANIMATION_KEYFRAME *) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AnimationStoryboard::AddKeyframeAfterTransition(IUIAnimationTransition *,
                                                                          UI_ANIMATION_KEYFRAME *) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AnimationStoryboard::AddTransitionAtKeyframe(IUIAnimationVariable *, IUIAnimationTransition *,
                                                                       UI_ANIMATION_KEYFRAME) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AnimationStoryboard::AddTransitionBetweenKeyframes(IUIAnimationVariable *,
                                                                             IUIAnimationTransition *,
                                                                             UI_ANIMATION_KEYFRAME,
                                                                             UI_ANIMATION_KEYFRAME) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AnimationStoryboard::RepeatBetweenKeyframes(UI_ANIMATION_KEYFRAME, UI_ANIMATION_KEYFRAME,
                                                                      int) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AnimationStoryboard::HoldVariable(IUIAnimationVariable *) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE AnimationStoryboard::Conclude() noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE AnimationStoryboard::Finish(double) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE AnimationStoryboard::SetTag(IUnknown *, unsigned int) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE AnimationStoryboard::GetTag(IUnknown **, unsigned int *) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE
AnimationStoryboard::SetStoryboardEventHandler(IUIAnimationStoryboardEventHandler *) noexcept {
  return E_NOTIMPL;
}

} // namespace lumenor::services
