#pragma once
// Makes objects of one class. Any thread.

#include "Classes.h"
#include "ServiceObject.h"

namespace lumenor::services {

class ClassFactory : public ServiceObject<ClassFactory, IClassFactory> {
public:
  explicit ClassFactory(Creator create) : create(create) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown *outer, REFIID id, void **object) noexcept override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override;

private:
  Creator create;
};

} // namespace lumenor::services
