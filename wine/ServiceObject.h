#pragma once
// What all objects of the services are made of: their interfaces, and the lock on the DLL. Any thread.

#include <utility>

#include <wrl/client.h>

#include "Module.h"
#include "system/ComObject.h"
#include "system/Windows.h"

namespace lumenor::services {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // the platform's interfaces have none

/// The object `Object` with its interfaces, made by MakeComObject. Where the class has an `identity`, a query for that
/// gives the object itself: this is how the services tell their own objects from others.
template <typename Object, typename... Interfaces> class ServiceObject : public ComObject<Interfaces...> {
public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void **object) noexcept override {
    if constexpr (requires { Object::identity; }) {
      if (object != nullptr && ::IsEqualIID(id, Object::identity)) {
        *object = static_cast<Object *>(this);
        this->AddRef();
        return S_OK;
      }
    }
    return ComObject<Interfaces...>::QueryInterface(id, object);
  }

private:
  ModuleLock lock;
};

#pragma GCC diagnostic pop

/// The object behind `pointer`; null when it isn't one of these services' own.
template <typename Object> Microsoft::WRL::ComPtr<Object> OwnObject(IUnknown *pointer) {
  Microsoft::WRL::ComPtr<Object> own;
  if (pointer != nullptr)
    pointer->QueryInterface(Object::identity, reinterpret_cast<void **>(own.GetAddressOf()));
  return own;
}

/// Hands `object` out through `result`; E_POINTER without a place for it.
template <typename Object, typename Interface>
HRESULT HandOut(const Microsoft::WRL::ComPtr<Object> &object, Interface **result) {
  if (result == nullptr)
    return E_POINTER;
  Microsoft::WRL::ComPtr<Interface> wanted = object;
  *result = wanted.Detach();
  return S_OK;
}

/// Hands a value out likewise.
template <typename Value> HRESULT HandOut(Value value, Value *result) {
  if (result == nullptr)
    return E_POINTER;
  *result = value;
  return S_OK;
}

} // namespace lumenor::services
