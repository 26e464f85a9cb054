#pragma once
// The properties of a shell link, each value a copy. One thread.

#include <list>

#include "system/Windows.h"

#include <propsys.h>

namespace lumenor::services {

class LinkProperties {
public:
  /// Keeps a copy of `value` instead of a former one; an empty value removes the property.
  HRESULT Set(REFPROPERTYKEY key, REFPROPVARIANT value);

  /// Returns a copy, which the caller clears; the empty value when there is no such property.
  HRESULT Get(REFPROPERTYKEY key, PROPVARIANT *value) const;

  HRESULT GetCount(DWORD *count) const;

  /// The keys, in the order in which they were set first.
  HRESULT GetKey(DWORD index, PROPERTYKEY *key) const;

  void Clear() { properties.clear(); }

private:
  struct Property {
    explicit Property(REFPROPERTYKEY key) : key(key) {}
    ~Property() { ::PropVariantClear(&value); }
    Property(const Property &) = delete;
    Property &operator=(const Property &) = delete;

    PROPERTYKEY key;
    PROPVARIANT value{};
  };

  std::list<Property> properties;
};

} // namespace lumenor::services
