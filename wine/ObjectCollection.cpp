#include "ObjectCollection.h"

namespace lumenor::services {

HRESULT STDMETHODCALLTYPE ObjectCollection::QueryInterface(REFIID id, void **object) noexcept {
  const bool isArray = ::IsEqualIID(id, __uuidof(IObjectArray)); // which each collection is
  return ServiceObject::QueryInterface(isArray ? __uuidof(IObjectCollection) : id, object);
}

HRESULT STDMETHODCALLTYPE ObjectCollection::GetCount(UINT *count) noexcept {
  return HandOut(static_cast<UINT>(objects.size()), count);
}

HRESULT STDMETHODCALLTYPE ObjectCollection::GetAt(UINT index, REFIID id, void **object) noexcept {
  if (object == nullptr)
    return E_POINTER;
  *object = nullptr;
  return index < objects.size() ? objects[index]->QueryInterface(id, object) : E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE ObjectCollection::AddObject(IUnknown *object) noexcept {
  if (object == nullptr)
    return E_INVALIDARG;
  objects.emplace_back(object);
  return S_OK;
}

HRESULT STDMETHODCALLTYPE ObjectCollection::AddFromArray(IObjectArray *source) noexcept {
  std::vector<Microsoft::WRL::ComPtr<IUnknown>> added; // all of them or none; the source may be this one itself
  const HRESULT result = ReadAll(source, added);
  if (SUCCEEDED(result))
    objects.insert(objects.end(), added.begin(), added.end());
  return result;
}

HRESULT STDMETHODCALLTYPE ObjectCollection::RemoveObjectAt(UINT index) noexcept {
  if (index >= objects.size())
    return E_INVALIDARG;
  objects.erase(objects.begin() + index);
  return S_OK;
}

HRESULT STDMETHODCALLTYPE ObjectCollection::Clear() noexcept {
  objects.clear();
  return S_OK;
}

} // namespace lumenor::services
