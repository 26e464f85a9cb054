#include "AnimationTimer.h"

namespace lumenor::services {

using Microsoft::WRL::ComPtr;

/// Breaks the cycle of timer and client: the client holds this instead, which only borrows the timer.
class AnimationTimer::Link : public ServiceObject<Link, IUIAnimationTimerClientEventHandler> {
public:
  explicit Link(AnimationTimer &timer) : timer(&timer) {}

  void Cut() { timer = nullptr; }

  HRESULT STDMETHODCALLTYPE OnTimerClientStatusChanged(UI_ANIMATION_TIMER_CLIENT_STATUS newStatus,
                                                       UI_ANIMATION_TIMER_CLIENT_STATUS) noexcept override {
    if (timer != nullptr)
      timer->OnClientStatus(newStatus == UI_ANIMATION_TIMER_CLIENT_BUSY);
    return S_OK;
  }

private:
  AnimationTimer *timer;
};

AnimationTimer::AnimationTimer() = default;

AnimationTimer::~AnimationTimer() { Disconnect(); }

void AnimationTimer::OnClientStatus(bool isBusy) {
  if (isBusy)
    Enable();
  else if (idleBehavior == UI_ANIMATION_IDLE_BEHAVIOR_DISABLE)
    Disable();
}

void AnimationTimer::Disconnect() {
  if (link == nullptr)
    return;
  link->Cut();
  link.Reset();
  updateHandler->ClearTimerClientEventHandler();
  updateHandler.Reset();
}

HRESULT STDMETHODCALLTYPE AnimationTimer::SetTimerUpdateHandler(IUIAnimationTimerUpdateHandler *handler,
                                                                UI_ANIMATION_IDLE_BEHAVIOR newIdleBehavior) noexcept {
  Disconnect();
  idleBehavior = newIdleBehavior;
  if (handler == nullptr)
    return S_OK;
  link = MakeComObject<Link>(*this);
  updateHandler = handler;
  const HRESULT result = handler->SetTimerClientEventHandler(link.Get());
  if (FAILED(result)) {
    link->Cut();
    link.Reset();
    updateHandler.Reset();
  }
  return result;
}

HRESULT STDMETHODCALLTYPE AnimationTimer::SetTimerEventHandler(IUIAnimationTimerEventHandler *handler) noexcept {
  const ComPtr<IUIAnimationTimerEventHandler> former = eventHandler; // it may be the one that is running
  eventHandler = handler;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE AnimationTimer::Enable() noexcept {
  const HRESULT result = window.Start();
  isEnabled = isEnabled || SUCCEEDED(result);
  return result;
}

HRESULT STDMETHODCALLTYPE AnimationTimer::Disable() noexcept {
  const HRESULT result = window.Stop();
  isEnabled = isEnabled && FAILED(result);
  return result;
}

HRESULT STDMETHODCALLTYPE AnimationTimer::IsEnabled() noexcept { return isEnabled ? S_OK : S_FALSE; }

HRESULT STDMETHODCALLTYPE AnimationTimer::GetTime(double *seconds) noexcept {
  LARGE_INTEGER count{}, frequency{};
  ::QueryPerformanceCounter(&count);
  ::QueryPerformanceFrequency(&frequency);
  return HandOut(static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart), seconds);
}

HRESULT STDMETHODCALLTYPE AnimationTimer::SetFrameRateThreshold(unsigned int) noexcept { return E_NOTIMPL; }

/// A tick that was pending when the timer was disabled is ignored. The listener is also called for the last one, in
/// which the client becomes idle.
void AnimationTimer::OnTick() {
  if (!isEnabled)
    return;
  const ComPtr<AnimationTimer> self(this);
  if (const ComPtr<IUIAnimationTimerEventHandler> listener = eventHandler; listener != nullptr)
    listener->OnPreUpdate();
  double now = 0;
  GetTime(&now);
  UI_ANIMATION_UPDATE_RESULT result{};
  if (const ComPtr<IUIAnimationTimerUpdateHandler> client = updateHandler; client != nullptr)
    client->OnUpdate(now, &result);
  if (const ComPtr<IUIAnimationTimerEventHandler> listener = eventHandler; listener != nullptr)
    listener->OnPostUpdate();
}

} // namespace lumenor::services
