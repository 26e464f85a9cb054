#pragma once
// A growing list of objects. Where nothing is documented for a call that makes no sense it answers E_INVALIDARG, and
// E_POINTER where there is no place for its answer. One thread.

#include <vector>

#include <objectarray.h>

#include "ComObject.h"

namespace lumenor::services {

class ObjectCollection : public ComObject<ObjectCollection, IObjectCollection> {
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

/// Takes the objects out of `source`, which may be null, as the interface `Interface`; the first failure when one of
/// them hasn't it.
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
