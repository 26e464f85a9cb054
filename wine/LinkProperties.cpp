#include "LinkProperties.h"

#include <algorithm>
#include <iterator>

namespace lumenor::services {

namespace {

/// Finds the property of a key in a list of them.
auto Has(REFPROPERTYKEY key) {
  return [&key](const auto &property) {
    return ::IsEqualGUID(property.key.fmtid, key.fmtid) && property.key.pid == key.pid;
  };
}

} // namespace

HRESULT LinkProperties::Set(REFPROPERTYKEY key, REFPROPVARIANT value) {
  if (value.vt == VT_EMPTY) {
    properties.remove_if(Has(key));
    return S_OK;
  }
  std::list<Property> added;
  const HRESULT result = ::PropVariantCopy(&added.emplace_back(key).value, &value);
  if (FAILED(result))
    return result;
  const auto former = std::find_if(properties.begin(), properties.end(), Has(key));
  if (former == properties.end())
    properties.splice(properties.end(), added);
  else
    std::swap(former->value, added.front().value);
  return S_OK;
}

HRESULT LinkProperties::Get(REFPROPERTYKEY key, PROPVARIANT *value) const {
  if (value == nullptr)
    return E_POINTER;
  ::PropVariantInit(value);
  const auto found = std::find_if(properties.begin(), properties.end(), Has(key));
  return found == properties.end() ? S_OK : ::PropVariantCopy(value, &found->value);
}

HRESULT LinkProperties::GetCount(DWORD *count) const {
  if (count == nullptr)
    return E_POINTER;
  *count = static_cast<DWORD>(properties.size());
  return S_OK;
}

HRESULT LinkProperties::GetKey(DWORD index, PROPERTYKEY *key) const {
  if (key == nullptr)
    return E_POINTER;
  if (index >= properties.size())
    return E_INVALIDARG;
  *key = std::next(properties.begin(), index)->key;
  return S_OK;
}

} // namespace lumenor::services
