#pragma once
// Ticks on the thread that made it, as long as it is enabled: it updates its client with the time, and calls its
// listener before and after that. One thread.

#include <memory>

#include <uianimation.h>

#include "ServiceObject.h"
#include "TickWindow.h"

namespace lumenor::services {

class AnimationTimer : public ServiceObject<AnimationTimer, IUIAnimationTimer>, private TickSink {
public:
  AnimationTimer();
  ~AnimationTimer() override;

  /// The client has become busy, which starts the timer, or idle, which stops it if the idle behaviour says so.
  void OnClientStatus(bool isBusy);

  HRESULT STDMETHODCALLTYPE SetTimerUpdateHandler(IUIAnimationTimerUpdateHandler *handler,
                                                  UI_ANIMATION_IDLE_BEHAVIOR newIdleBehavior) noexcept override;
  HRESULT STDMETHODCALLTYPE SetTimerEventHandler(IUIAnimationTimerEventHandler *handler) noexcept override;
  HRESULT STDMETHODCALLTYPE Enable() noexcept override;
  HRESULT STDMETHODCALLTYPE Disable() noexcept override;
  HRESULT STDMETHODCALLTYPE IsEnabled() noexcept override;
  HRESULT STDMETHODCALLTYPE GetTime(double *seconds) noexcept override;

  // Not served: no program here listens to slow frames.
  HRESULT STDMETHODCALLTYPE SetFrameRateThreshold(unsigned int framesPerSecond) noexcept override;

private:
  class Link;

  void OnTick() override;
  void Disconnect();

  TickWindow window{*this};
  Microsoft::WRL::ComPtr<IUIAnimationTimerUpdateHandler> updateHandler;
  Microsoft::WRL::ComPtr<IUIAnimationTimerEventHandler> eventHandler;
  Microsoft::WRL::ComPtr<Link> link; // what the update handler holds instead of this timer
  UI_ANIMATION_IDLE_BEHAVIOR idleBehavior = UI_ANIMATION_IDLE_BEHAVIOR_CONTINUE;
  bool isEnabled = false;
};

} // namespace lumenor::services
