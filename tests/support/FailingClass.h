#pragma once
// Makes a class of COM fail as it does on a machine where the service is switched off. Only for the apartment of the
// thread that makes it.

#include "system/Windows.h"

namespace lumenor::tests {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // the platform's interfaces have none

/// As long as it lives every creation of an object of the class ends with `result`.
class FailingClass : public IClassFactory {
public:
  FailingClass(REFCLSID id, HRESULT result) : result(result) {
    ::CoRegisterClassObject(id, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registration);
  }
  virtual ~FailingClass() { ::CoRevokeClassObject(registration); }
  FailingClass(const FailingClass &) = delete;
  FailingClass &operator=(const FailingClass &) = delete;

  /// How often an object was asked for.
  int Creations() const { return creations; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void **object) override {
    const bool isKnown = ::IsEqualIID(id, __uuidof(IUnknown)) || ::IsEqualIID(id, __uuidof(IClassFactory));
    *object = isKnown ? this : nullptr;
    return isKnown ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; } // the test owns it
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown *, REFIID, void **object) override {
    ++creations;
    *object = nullptr;
    return result;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
  HRESULT result;
  DWORD registration = 0;
  int creations = 0;
};

#pragma GCC diagnostic pop

} // namespace lumenor::tests
