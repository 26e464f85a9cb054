#include "toolkit/AnimationServices.h"

#include <cstdlib>
#include <utility>

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

/// No owner: COM's objects are gone once its last apartment is left, and must not be released then.
AnimationServices *services = nullptr;

void ReleaseServices() { delete std::exchange(services, nullptr); }

void AtExit() {
  if (IsComInitialized())
    ReleaseServices();
}

} // namespace

AnimationServices::AnimationServices() {
  manager = MakeService<IUIAnimationManager>(CLSID_UIAnimationManager);
  transitionLibrary = MakeService<IUIAnimationTransitionLibrary>(CLSID_UIAnimationTransitionLibrary);
  timer = MakeService<IUIAnimationTimer>(CLSID_UIAnimationTimer);
  ComPtr<IUIAnimationTimerUpdateHandler> updateHandler;
  ThrowIfFailed(manager.As(&updateHandler));
  ThrowIfFailed(timer->SetTimerUpdateHandler(updateHandler.Get(), UI_ANIMATION_IDLE_BEHAVIOR_DISABLE));
}

AnimationServices &GetAnimationServices() {
  [[maybe_unused]] static const int registered = std::atexit(AtExit);
  if (services == nullptr)
    services = new AnimationServices;
  return *services;
}

void ShutDownAnimationServices() noexcept {
  try {
    GetAnimationServices().manager->Shutdown();
    ReleaseServices();
  } catch (...) { // also for want of memory
    // The dock ran without animations; it ends without them as well.
  }
}

} // namespace lumenor
