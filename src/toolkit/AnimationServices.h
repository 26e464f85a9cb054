#pragma once
// The platform's animation services, one of each kind for the whole process: made at first use, released when the
// entry function ends or, should the process end without that, by its exit handler. User-interface thread only, with
// COM initialised.

#include <uianimation.h>
#include <wrl/client.h>

#include "system/Windows.h"

namespace lumenor {

class AnimationServices {
public:
  /// Makes all of them or raises HResultError.
  AnimationServices();

  /// A new reference to the manager, which knows every storyboard and variable.
  Microsoft::WRL::ComPtr<IUIAnimationManager> Manager() const { return manager; }

  /// A new reference to the library that the transitions come from.
  Microsoft::WRL::ComPtr<IUIAnimationTransitionLibrary> TransitionLibrary() const { return transitionLibrary; }

  /// A new reference to the timer, which ticks on this thread as long as a storyboard plays.
  Microsoft::WRL::ComPtr<IUIAnimationTimer> Timer() const { return timer; }

private:
  friend void ShutDownAnimationServices() noexcept;

  // Released from the last one to the first.
  Microsoft::WRL::ComPtr<IUIAnimationTransitionLibrary> transitionLibrary;
  Microsoft::WRL::ComPtr<IUIAnimationTimer> timer;
  Microsoft::WRL::ComPtr<IUIAnimationManager> manager;
};

/// The services, which are made now if they aren't there. Raises HResultError where the platform refuses one of them;
/// then there is none of them, and the next call tries again.
AnimationServices &GetAnimationServices();

/// Ends every animation and releases the services: manager, timer, transition library. Makes them first when they
/// haven't been used. Does nothing on a platform without such services.
void ShutDownAnimationServices() noexcept;

} // namespace lumenor
