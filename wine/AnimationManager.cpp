#include "AnimationManager.h"

#include <cmath>

#include "AnimationErrors.h"
#include "AnimationStoryboard.h"
#include "AnimationVariable.h"
#include "Playlist.h"

namespace lumenor::services {

AnimationManager::AnimationManager() : playlist(std::make_shared<Playlist>()) {}

AnimationManager::~AnimationManager() { playlist->ShutDown(); }

HRESULT STDMETHODCALLTYPE AnimationManager::CreateAnimationVariable(double initialValue,
                                                                    IUIAnimationVariable **variable) noexcept {
  if (variable == nullptr)
    return E_POINTER;
  *variable = nullptr;
  if (playlist->IsShutDown())
    return shutdownCalled;
  if (!std::isfinite(initialValue))
    return E_INVALIDARG;
  return HandOut(MakeComObject<AnimationVariable>(playlist, initialValue), variable);
}

HRESULT STDMETHODCALLTYPE AnimationManager::ScheduleTransition(IUIAnimationVariable *variable,
                                                               IUIAnimationTransition *transition,
                                                               double timeNow) noexcept {
  if (playlist->IsShutDown())
    return shutdownCalled;
  const auto storyboard = MakeComObject<AnimationStoryboard>(playlist);
  const HRESULT result = storyboard->AddTransition(variable, transition);
  return FAILED(result) ? result : storyboard->Schedule(timeNow, nullptr);
}

HRESULT STDMETHODCALLTYPE AnimationManager::CreateStoryboard(IUIAnimationStoryboard **storyboard) noexcept {
  if (storyboard == nullptr)
    return E_POINTER;
  *storyboard = nullptr;
  if (playlist->IsShutDown())
    return shutdownCalled;
  return HandOut(MakeComObject<AnimationStoryboard>(playlist), storyboard);
}

HRESULT STDMETHODCALLTYPE AnimationManager::AbandonAllStoryboards() noexcept {
  if (playlist->IsShutDown())
    return shutdownCalled;
  playlist->StopAll();
  return S_OK;
}

HRESULT STDMETHODCALLTYPE AnimationManager::Update(double timeNow, UI_ANIMATION_UPDATE_RESULT *result) noexcept {
  return playlist->Update(timeNow, result);
}

HRESULT STDMETHODCALLTYPE AnimationManager::GetStatus(UI_ANIMATION_MANAGER_STATUS *status) noexcept {
  if (playlist->IsShutDown())
    return shutdownCalled;
  return HandOut(playlist->IsBusy() ? UI_ANIMATION_MANAGER_BUSY : UI_ANIMATION_MANAGER_IDLE, status);
}

HRESULT STDMETHODCALLTYPE AnimationManager::Shutdown() noexcept {
  playlist->ShutDown();
  return S_OK;
}

HRESULT STDMETHODCALLTYPE AnimationManager::OnUpdate(double timeNow, UI_ANIMATION_UPDATE_RESULT *result) noexcept {
  return playlist->Update(timeNow, result);
}

HRESULT STDMETHODCALLTYPE
AnimationManager::SetTimerClientEventHandler(IUIAnimationTimerClientEventHandler *handler) noexcept {
  return playlist->Connect(handler);
}

HRESULT STDMETHODCALLTYPE AnimationManager::ClearTimerClientEventHandler() noexcept {
  playlist->Disconnect();
  return S_OK;
}

HRESULT STDMETHODCALLTYPE AnimationManager::FinishAllStoryboards(double) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE AnimationManager::GetVariableFromTag(IUnknown *, UINT32, IUIAnimationVariable **) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AnimationManager::GetStoryboardFromTag(IUnknown *, UINT32,
                                                                 IUIAnimationStoryboard **) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AnimationManager::SetAnimationMode(UI_ANIMATION_MODE) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE AnimationManager::Pause() noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE AnimationManager::Resume() noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE AnimationManager::SetManagerEventHandler(IUIAnimationManagerEventHandler *) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AnimationManager::SetCancelPriorityComparison(IUIAnimationPriorityComparison *) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AnimationManager::SetTrimPriorityComparison(IUIAnimationPriorityComparison *) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AnimationManager::SetCompressPriorityComparison(IUIAnimationPriorityComparison *) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AnimationManager::SetConcludePriorityComparison(IUIAnimationPriorityComparison *) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE AnimationManager::SetDefaultLongestAcceptableDelay(double) noexcept { return E_NOTIMPL; }

} // namespace lumenor::services
