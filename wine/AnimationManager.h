#pragma once
// Makes storyboards and variables, and updates the variables for a given time. One thread.

#include <memory>

#include <uianimation.h>

#include "ServiceObject.h"

namespace lumenor::services {

class Playlist;

class AnimationManager : public ServiceObject<AnimationManager, IUIAnimationManager, IUIAnimationTimerUpdateHandler> {
public:
  AnimationManager();
  ~AnimationManager() override;

  HRESULT STDMETHODCALLTYPE CreateAnimationVariable(double initialValue,
                                                    IUIAnimationVariable **variable) noexcept override;
  HRESULT STDMETHODCALLTYPE ScheduleTransition(IUIAnimationVariable *variable, IUIAnimationTransition *transition,
                                               double timeNow) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateStoryboard(IUIAnimationStoryboard **storyboard) noexcept override;
  HRESULT STDMETHODCALLTYPE AbandonAllStoryboards() noexcept override;
  HRESULT STDMETHODCALLTYPE Update(double timeNow, UI_ANIMATION_UPDATE_RESULT *result) noexcept override;
  HRESULT STDMETHODCALLTYPE GetStatus(UI_ANIMATION_MANAGER_STATUS *status) noexcept override;
  HRESULT STDMETHODCALLTYPE Shutdown() noexcept override;

  HRESULT STDMETHODCALLTYPE OnUpdate(double timeNow, UI_ANIMATION_UPDATE_RESULT *result) noexcept override;
  HRESULT STDMETHODCALLTYPE SetTimerClientEventHandler(IUIAnimationTimerClientEventHandler *handler) noexcept override;
  HRESULT STDMETHODCALLTYPE ClearTimerClientEventHandler() noexcept override;

  // Not served: no program here asks by tags, weighs priorities, pauses, or ends storyboards early.
  HRESULT STDMETHODCALLTYPE FinishAllStoryboards(double completionDeadline) noexcept override;
  HRESULT STDMETHODCALLTYPE GetVariableFromTag(IUnknown *object, UINT32 id,
                                               IUIAnimationVariable **variable) noexcept override;
  HRESULT STDMETHODCALLTYPE GetStoryboardFromTag(IUnknown *object, UINT32 id,
                                                 IUIAnimationStoryboard **storyboard) noexcept override;
  HRESULT STDMETHODCALLTYPE SetAnimationMode(UI_ANIMATION_MODE mode) noexcept override;
  HRESULT STDMETHODCALLTYPE Pause() noexcept override;
  HRESULT STDMETHODCALLTYPE Resume() noexcept override;
  HRESULT STDMETHODCALLTYPE SetManagerEventHandler(IUIAnimationManagerEventHandler *handler) noexcept override;
  HRESULT STDMETHODCALLTYPE SetCancelPriorityComparison(IUIAnimationPriorityComparison *comparison) noexcept override;
  HRESULT STDMETHODCALLTYPE SetTrimPriorityComparison(IUIAnimationPriorityComparison *comparison) noexcept override;
  HRESULT STDMETHODCALLTYPE SetCompressPriorityComparison(IUIAnimationPriorityComparison *comparison) noexcept override;
  HRESULT STDMETHODCALLTYPE SetConcludePriorityComparison(IUIAnimationPriorityComparison *comparison) noexcept override;
  HRESULT STDMETHODCALLTYPE SetDefaultLongestAcceptableDelay(double delay) noexcept override;

private:
  std::shared_ptr<Playlist> playlist;
};

} // namespace lumenor::services
