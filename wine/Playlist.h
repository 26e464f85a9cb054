#pragma once
// What plays at present: shared by a manager and the storyboards and variables that it made, which may outlive it. The
// playing storyboards are held, so that an abandoned one plays to its end. One thread.

#include <vector>

#include <uianimation.h>

#include "ServiceObject.h"

namespace lumenor::services {

class AnimationStoryboard;

class Playlist {
public:
  bool IsShutDown() const { return isShutDown; }
  bool IsBusy() const { return !playing.empty(); }

  /// The time of the last update, in seconds; nothing is scheduled before it.
  double LastUpdate() const { return lastUpdate; }

  /// Plays `storyboard` from `now` on. A storyboard that plays on one of its variables loses that variable, and ends
  /// when it has none left: the later one wins.
  void Play(AnimationStoryboard &storyboard, double now);

  /// Ends `storyboard` at its present values.
  void Stop(AnimationStoryboard &storyboard);

  void StopAll();

  /// Sets every variable to its value at `now`.
  HRESULT Update(double now, UI_ANIMATION_UPDATE_RESULT *result);

  /// Notifies `newClient` of every change between idle and busy, at once if busy already. Only one may be connected.
  HRESULT Connect(IUIAnimationTimerClientEventHandler *newClient);
  void Disconnect() { client.Reset(); }

  /// Ends everything; nothing can play after that.
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
