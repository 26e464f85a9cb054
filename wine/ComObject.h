#pragma once
// What all objects of the services are made of: counting, interfaces, and the lock on the DLL. Any thread.

#include <atomic>
#include <tuple>
#include <utility>

#include <wrl/client.h>

#include "Module.h"
#include "system/Windows.h"

namespace lumenor::services {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // the platform's interfaces have none

/// The object `Object` with its interfaces, made by MakeObject and deleted with its last reference. Where the class has
/// an `identity`, asking for that gives the object itself: so the services know their own objects from others'.
template <typename Object, typename... Interfaces> class ComObject : public Interfaces... {
public:
  ComObject() = default;
  virtual ~ComObject() = default;
  ComObject(const ComObject &) = delete;
  ComObject &operator=(const ComObject &) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void **object) noexcept override {
    if (object == nullptr)
      return E_POINTER;
    *object = Find(id);
    if (*object == nullptr)
      return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references; }

  ULONG STDMETHODCALLTYPE Release() noexcept override {
    const ULONG left = --references;
    if (left == 0)
      delete static_cast<Object *>(this);
    return left;
  }

private:
  using First = std::tuple_element_t<0, std::tuple<Interfaces...>>;

  void *Find(REFIID id) {
    if (::IsEqualIID(id, __uuidof(IUnknown)))
      return static_cast<First *>(this);
    if constexpr (requires { Object::identity; }) {
      if (::IsEqualIID(id, Object::identity))
        return static_cast<Object *>(this);
    }
    void *found = nullptr;
    ((::IsEqualIID(id, __uuidof(Interfaces)) ? found = static_cast<Interfaces *>(this) : nullptr), ...);
    return found;
  }

  std::atomic<ULONG> references = 0;
  ModuleLock lock;
};

#pragma GCC diagnostic pop

/// A new object.
template <typename Object, typename... Arguments> Microsoft::WRL::ComPtr<Object> MakeObject(Arguments &&...arguments) {
  return Microsoft::WRL::ComPtr<Object>(new Object(std::forward<Arguments>(arguments)...));
}

/// The object behind `pointer`; null when it isn't one of these services' own.
template <typename Object> Microsoft::WRL::ComPtr<Object> OwnObject(IUnknown *pointer) {
  Microsoft::WRL::ComPtr<Object> own;
  if (pointer != nullptr)
    pointer->QueryInterface(Object::identity, reinterpret_cast<void **>(own.GetAddressOf()));
  return own;
}

/// Hands `object` out through `result`; E_POINTER where there is none.
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
