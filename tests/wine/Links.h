#pragma once
// Shell links as the tests of the services make and read them.

#include <string>
#include <utility>

#include "wine/Animations.h"

#include <propkey.h>
#include <propsys.h>
#include <shobjidl.h>

namespace lumenor::services {

/// A value of a property, cleared in the end.
class PropertyValue {
public:
  PropertyValue() = default;
  explicit PropertyValue(const std::wstring &text) {
    value.vt = VT_LPWSTR;
    value.pwszVal = static_cast<PWSTR>(::CoTaskMemAlloc((text.size() + 1) * sizeof(wchar_t)));
    text.copy(value.pwszVal, text.size());
    value.pwszVal[text.size()] = L'\0';
  }
  explicit PropertyValue(const wchar_t *text) : PropertyValue(std::wstring(text)) {}
  explicit PropertyValue(bool truth) {
    value.vt = VT_BOOL;
    value.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
  }
  ~PropertyValue() { ::PropVariantClear(&value); }
  PropertyValue(const PropertyValue &) = delete;
  PropertyValue &operator=(const PropertyValue &) = delete;

  /// Where a call puts the value.
  PROPVARIANT *Receive() { return &value; }
  PROPVARIANT &operator*() { return value; }
  PROPVARIANT *operator->() { return &value; }

private:
  PROPVARIANT value{};
};

inline Ptr<IPropertyStore> PropertiesOf(const Ptr<IShellLinkW> &link) {
  Ptr<IPropertyStore> properties;
  EXPECT_EQ(link.As(&properties), S_OK);
  return properties;
}

inline void SetTitle(const Ptr<IShellLinkW> &link, const std::wstring &title) {
  EXPECT_EQ(PropertiesOf(link)->SetValue(PKEY_Title, *PropertyValue(title)), S_OK);
}

/// The title, or the empty text when the link has none.
inline std::wstring TitleOf(const Ptr<IShellLinkW> &link) {
  PropertyValue value;
  EXPECT_EQ(PropertiesOf(link)->GetValue(PKEY_Title, value.Receive()), S_OK);
  return value->vt == VT_LPWSTR ? value->pwszVal : std::wstring();
}

} // namespace lumenor::services
