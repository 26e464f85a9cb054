#include "toolkit/Animation.h"

#include <utility>

#include "system/HResultError.h"
#include "toolkit/AnimationServices.h"

using Microsoft::WRL::ComPtr;

namespace lumenor {

template <typename T> void Animation<T>::Start() {
  if (Target.Get() == nullptr || From.Get() == To.Get())
    return;
  const AnimationServices &services = GetAnimationServices();
  const ComPtr<IUIAnimationManager> manager = services.Manager();
  const ComPtr<IUIAnimationTransitionLibrary> library = services.TransitionLibrary();
  const ComPtr<IUIAnimationTimer> timer = services.Timer();
  storyboard.Reset();
  variable.Reset();
  ThrowIfFailed(manager->CreateStoryboard(&storyboard));
  ThrowIfFailed(manager->CreateAnimationVariable(static_cast<double>(From.Get()), &variable));
  AddTransitions(*library.Get());
  UI_ANIMATION_SECONDS now = 0;
  ThrowIfFailed(timer->GetTime(&now));
  ThrowIfFailed(storyboard->Schedule(now, nullptr));
  const ComPtr<IUIAnimationTimerEventHandler> handler(new TimerEventHandler<T>(this, alive));
  ThrowIfFailed(timer->SetTimerEventHandler(handler.Get()));
}

template <typename T> void Animation<T>::AddTransitions(IUIAnimationTransitionLibrary &library) {
  const bool isDelayed = Delay.Get() > 0.0F;
  ComPtr<IUIAnimationTransition> hold, move;
  if (isDelayed)
    ThrowIfFailed(library.CreateConstantTransition(static_cast<double>(Delay.Get()), &hold));
  ThrowIfFailed(library.CreateAccelerateDecelerateTransition(
      static_cast<double>(Duration.Get()), static_cast<double>(To.Get()), static_cast<double>(AccelerationRatio.Get()),
      static_cast<double>(DecelerationRatio.Get()), &move));
  if (isDelayed)
    ThrowIfFailed(storyboard->AddTransition(variable.Get(), hold.Get()));
  ThrowIfFailed(storyboard->AddTransition(variable.Get(), move.Get()));
}

template <typename T> void Animation<T>::Update() {
  if (variable == nullptr || Target.Get() == nullptr)
    return;
  int value = 0;
  ThrowIfFailed(variable->GetIntegerValue(&value));
  Target.Get()->Set(static_cast<T>(value));
}

template class Animation<unsigned char>;
template class Animation<long>;

template <typename T> TimerEventHandler<T>::TimerEventHandler(Animation<T> *animation, AliveFlag animationAlive)
    : ComObject<IUIAnimationTimerEventHandler>(0), animation(animation), animationAlive(std::move(animationAlive)) {}

template <typename T> HRESULT STDMETHODCALLTYPE TimerEventHandler<T>::OnPostUpdate() noexcept {
  Shielded([this] {
    if (*animationAlive != 0)
      animation->Update();
    return S_OK;
  });
  return S_OK; // also of a failure: the timer goes on
}

template class TimerEventHandler<unsigned char>;
template class TimerEventHandler<long>;

} // namespace lumenor
