#pragma once
// A growing list of objects. Invalid calls without a documented error get E_INVALIDARG, or E_POINTER when the result's
// place is missing. One thread.

#include <vector>

#include <objectarray.h>

#include "ServiceObject.h"

namespace lumenor::services {

class ObjectCollection : public ServiceObject<ObjectCollection, IObjectCollection> {
public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void **object) noexcept override;

  HRESULT STDMETHODCALLTYPE GetCount(UINT *count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetAt(UINT index, REFIID id, void **object) noexcept override;
  HRESULT STDMETHODCALLTYPE AddObject(IUnknown *object) noexcept override;
  HRESULT STDMETHODCALLTYPE AddFromArray(IObjectArray *source) noexcept override;
  HRESULT STDMETHODCALLTYPE RemoveObjectAt(UINT index) noexcept override;
  HRESULT STDMETHODCALLTYPE Clear() noexcept override;

private:
  std::vector<Microsoft::WRL::ComPtr<IUnknown>> objects;
};

/// Reads the objects of `source`, which may be null, as `Interface`; returns the first failure when one of them lacks
/// it.
template <typename Interface>
HRESULT ReadAll(IObjectArray *source, std::vector<Microsoft::WRL::ComPtr<Interface>> &objects) {
  UINT count = 0;
  HRESULT result = source == nullptr ? E_INVALIDARG : source->GetCount(&count);
  for (UINT index = 0; SUCCEEDED(result) && index < count; ++index) {
    Microsoft::WRL::ComPtr<Interface> object;
    result = source->GetAt(index, __uuidof(Interface), reinterpret_cast<void **>(object.GetAddressOf()));
    objects.push_back(object);
  }
  return result;
}

} // namespace lumenor::services
