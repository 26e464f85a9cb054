#pragma once
// The animation services as a program gets them, and what the tests do with them again and again.

#include <uianimation.h>
#include <wrl/client.h>

#include <gtest/gtest.h>

#include "support/ComApartment.h"
#include "system/Windows.h"

namespace lumenor::services {

template <typename T> using Ptr = Microsoft::WRL::ComPtr<T>;

inline constexpr HRESULT shutdownCalled = static_cast<HRESULT>(0x802A0002U);
inline constexpr HRESULT objectSealed = static_cast<HRESULT>(0x802A0004U);
inline constexpr HRESULT differentOwner = static_cast<HRESULT>(0x802A0009U);
inline constexpr HRESULT wrongThread = static_cast<HRESULT>(0x802A000CU);
inline constexpr HRESULT storyboardNotPlaying = static_cast<HRESULT>(0x802A0102U);
inline constexpr HRESULT transitionAlreadyUsed = static_cast<HRESULT>(0x802A0106U);
inline constexpr HRESULT timeBeforeLastUpdate = static_cast<HRESULT>(0x802A0109U);
inline constexpr HRESULT timerClientAlreadyConnected = static_cast<HRESULT>(0x802A010AU);

/// An object of a class that is registered in this prefix.
template <typename T> Ptr<T> Create(REFCLSID id) {
  Ptr<T> object;
  EXPECT_EQ(::CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object)), S_OK);
  return object;
}

class Animations : public ::testing::Test {
protected:
  const tests::ComApartment com;
  Ptr<IUIAnimationManager> manager = Create<IUIAnimationManager>(CLSID_UIAnimationManager);
  Ptr<IUIAnimationTransitionLibrary> library =
      Create<IUIAnimationTransitionLibrary>(CLSID_UIAnimationTransitionLibrary);

  Ptr<IUIAnimationVariable> Variable(double value) {
    Ptr<IUIAnimationVariable> variable;
    EXPECT_EQ(manager->CreateAnimationVariable(value, &variable), S_OK);
    return variable;
  }

  Ptr<IUIAnimationStoryboard> Storyboard() {
    Ptr<IUIAnimationStoryboard> storyboard;
    EXPECT_EQ(manager->CreateStoryboard(&storyboard), S_OK);
    return storyboard;
  }

  Ptr<IUIAnimationTransition> Linear(double duration, double finalValue) {
    Ptr<IUIAnimationTransition> transition;
    EXPECT_EQ(library->CreateLinearTransition(duration, finalValue, &transition), S_OK);
    return transition;
  }

  /// Plays `transition` on a new variable from the time 0 on.
  Ptr<IUIAnimationVariable> Play(double from, const Ptr<IUIAnimationTransition> &transition) {
    Ptr<IUIAnimationVariable> variable = Variable(from);
    EXPECT_EQ(manager->ScheduleTransition(variable.Get(), transition.Get(), 0), S_OK);
    return variable;
  }

  double At(double time, const Ptr<IUIAnimationVariable> &variable) {
    EXPECT_EQ(manager->Update(time, nullptr), S_OK);
    return Value(variable);
  }

  static double Value(const Ptr<IUIAnimationVariable> &variable) {
    double value = 0;
    EXPECT_EQ(variable->GetValue(&value), S_OK);
    return value;
  }

  static UI_ANIMATION_STORYBOARD_STATUS Status(const Ptr<IUIAnimationStoryboard> &storyboard) {
    UI_ANIMATION_STORYBOARD_STATUS status{};
    EXPECT_EQ(storyboard->GetStatus(&status), S_OK);
    return status;
  }

  UI_ANIMATION_MANAGER_STATUS ManagerStatus() {
    UI_ANIMATION_MANAGER_STATUS status{};
    EXPECT_EQ(manager->GetStatus(&status), S_OK);
    return status;
  }
};

} // namespace lumenor::services
