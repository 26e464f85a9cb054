#include "Playlist.h"

#include "AnimationErrors.h"
#include "AnimationStoryboard.h"

using Microsoft::WRL::ComPtr;

namespace lumenor::services {

void Playlist::Play(AnimationStoryboard &storyboard, double now) {
  const bool wasBusy = IsBusy();
  storyboard.Begin(now);
  for (const auto &other : playing)
    if (!other->HasVariables())
      other->End();
  DropEnded();
  playing.emplace_back(&storyboard);
  Report(wasBusy);
}

void Playlist::Stop(AnimationStoryboard &storyboard) {
  const bool wasBusy = IsBusy();
  storyboard.End();
  DropEnded();
  Report(wasBusy);
}

void Playlist::StopAll() {
  const bool wasBusy = IsBusy();
  for (const auto &storyboard : playing)
    storyboard->End();
  DropEnded();
  Report(wasBusy);
}

HRESULT Playlist::Update(double now, UI_ANIMATION_UPDATE_RESULT *result) {
  if (isShutDown)
    return shutdownCalled;
  if (now < lastUpdate)
    return timeBeforeLastUpdate;
  lastUpdate = now;
  bool hasChanged = false;
  const bool wasBusy = IsBusy();
  for (const auto &storyboard : playing)
    hasChanged = storyboard->Advance(now) || hasChanged;
  DropEnded();
  if (result != nullptr)
    *result = hasChanged ? UI_ANIMATION_UPDATE_VARIABLES_CHANGED : UI_ANIMATION_UPDATE_NO_CHANGE;
  Report(wasBusy);
  return S_OK;
}

HRESULT Playlist::Connect(IUIAnimationTimerClientEventHandler *newClient) {
  if (newClient == nullptr)
    return E_POINTER;
  if (isShutDown)
    return shutdownCalled;
  if (client != nullptr)
    return timerClientAlreadyConnected;
  client = newClient;
  Report(false);
  return S_OK;
}

void Playlist::ShutDown() {
  StopAll();
  Disconnect();
  isShutDown = true;
}

void Playlist::DropEnded() {
  std::erase_if(playing, [](const ComPtr<AnimationStoryboard> &storyboard) { return storyboard->HasEnded(); });
}

void Playlist::Report(bool wasBusy) {
  if (wasBusy == IsBusy() || client == nullptr)
    return;
  const auto statusOf = [](bool busy) {
    return busy ? UI_ANIMATION_TIMER_CLIENT_BUSY : UI_ANIMATION_TIMER_CLIENT_IDLE;
  };
  const ComPtr<IUIAnimationTimerClientEventHandler> told = client;
  told->OnTimerClientStatusChanged(statusOf(IsBusy()), statusOf(wasBusy));
}

} // namespace lumenor::services
