#include "ClassFactory.h"

#include <memory>
#include <mutex>
#include <vector>

namespace lumenor::services {

namespace {

std::mutex lockMutex;
std::vector<std::unique_ptr<ModuleLock>> clientLocks;

} // namespace

HRESULT STDMETHODCALLTYPE ClassFactory::CreateInstance(IUnknown *outer, REFIID id, void **object) noexcept {
  if (object == nullptr)
    return E_POINTER;
  *object = nullptr;
  return outer != nullptr ? CLASS_E_NOAGGREGATION : create(id, object);
}

HRESULT STDMETHODCALLTYPE ClassFactory::LockServer(BOOL lock) noexcept {
  const std::lock_guard guard(lockMutex);
  if (lock)
    clientLocks.push_back(std::make_unique<ModuleLock>());
  else if (!clientLocks.empty())
    clientLocks.pop_back();
  return S_OK;
}

} // namespace lumenor::services
