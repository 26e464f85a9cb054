#pragma once
// What plays just now: shared by a manager and the storyboards and variables that it made, which may outlive it. The
// playing storyboards are held, so that an abandoned one plays to its end. One thread.

#include <vector>

#include <uianimation.h>

#include "ComObject.h"

namespace lumenor::services {

class AnimationStoryboard;

class Playlist {
public:
  bool IsShutDown() const { return isShutDown; }
  bool IsBusy() const { return !playing.empty(); }

  /// The time of the last update, in seconds; nothing is scheduled before it.
  double LastUpdate() const { return lastUpdate; }

  /// Lets `storyboard` play from `now` on. What plays on one of its variables loses that variable, and ends when it has
  /// none left: the later one has its way.
  void Play(AnimationStoryboard &storyboard, double now);

  /// Ends `storyboard` where it is.
  void Stop(AnimationStoryboard &storyboard);

  void StopAll();

  /// Gives every variable its value of `now`.
  HRESULT Update(double now, UI_ANIMATION_UPDATE_RESULT *result);

  /// Tells `newClient` of every change between idle and busy, at once if busy already. Only one may be connected.
  HRESULT Connect(IUIAnimationTimerClientEventHandler *newClient);
  void Disconnect() { client.Reset(); }

  /// Ends everything for good.
  void ShutDown();

private:
  void DropEnded();
  void Report(bool wasBusy);

  std::vector<Microsoft::WRL::ComPtr<AnimationStoryboard>> playing; // in the order of their scheduling
  Microsoft::WRL::ComPtr<IUIAnimationTimerClientEventHandler> client;
  double lastUpdate = 0;
  bool isShutDown = false;
};

} // namespace lumenor::services
