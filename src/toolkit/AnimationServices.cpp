#include "toolkit/AnimationServices.h"

#include <cstdlib>

#include "system/HResultError.h"

using Microsoft::WRL::ComPtr;

namespace lumenor {

namespace {

template <typename Service> ComPtr<Service> MakeService(REFCLSID id) {
  ComPtr<Service> service;
  ThrowIfFailed(::CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&service)));
  return service;
}

bool IsComInitialized() {
  APTTYPE type{};
  APTTYPEQUALIFIER qualifier{};
  return SUCCEEDED(::CoGetApartmentType(&type, &qualifier));
}

} // namespace

AnimationServices &AnimationServices::Instance() {
  // Never destroyed: the exit handler decides what can still be released.
  static auto *const instance = [] {
    std::atexit(AtExit);
    return new AnimationServices;
  }();
  return *instance;
}

/// COM's objects are gone once its last apartment is left, and must not be released then.
void AnimationServices::AtExit() {
  AnimationServices &services = Instance();
  if (!IsComInitialized()) {
    services.manager.Detach();
    services.timer.Detach();
    services.transitionLibrary.Detach();
  }
  services.manager.Reset();
  services.timer.Reset();
  services.transitionLibrary.Reset();
}

/// All of them or none: what is made before a failure is released.
void AnimationServices::Make() {
  auto newManager = MakeService<IUIAnimationManager>(CLSID_UIAnimationManager);
  auto newLibrary = MakeService<IUIAnimationTransitionLibrary>(CLSID_UIAnimationTransitionLibrary);
  auto newTimer = MakeService<IUIAnimationTimer>(CLSID_UIAnimationTimer);
  ComPtr<IUIAnimationTimerUpdateHandler> updateHandler;
  ThrowIfFailed(newManager.As(&updateHandler));
  ThrowIfFailed(newTimer->SetTimerUpdateHandler(updateHandler.Get(), UI_ANIMATION_IDLE_BEHAVIOR_DISABLE));
  manager = newManager;
  transitionLibrary = newLibrary;
  timer = newTimer;
}

void AnimationServices::ShutDown() {
  manager->Shutdown();
  manager.Reset();
  timer.Reset();
  transitionLibrary.Reset();
}

AnimationServices &GetAnimationServices() {
  AnimationServices &services = AnimationServices::Instance();
  if (!services.AreMade())
    services.Make();
  return services;
}

void ShutDownAnimationServices() noexcept {
  try {
    GetAnimationServices().ShutDown();
  } catch (const HResultError &) {
    // The dock ran without animations; it ends without them as well.
  }
}

} // namespace lumenor
