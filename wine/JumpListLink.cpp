#include "JumpListLink.h"

#include <algorithm>
#include <string_view>

#include <propkey.h>
#include <propsys.h>
#include <wrl/client.h>

using Microsoft::WRL::ComPtr;

namespace lumenor::services {

namespace {

constexpr int bufferSize = 32768;

/// A property of a link, cleared in the end; the empty value where there is none.
class LinkProperty {
public:
  LinkProperty(IShellLinkW &link, REFPROPERTYKEY key) {
    ComPtr<IPropertyStore> properties;
    if (SUCCEEDED(link.QueryInterface(IID_PPV_ARGS(&properties))) && FAILED(properties->GetValue(key, &value)))
      ::PropVariantInit(&value);
  }
  ~LinkProperty() { ::PropVariantClear(&value); }
  LinkProperty(const LinkProperty &) = delete;
  LinkProperty &operator=(const LinkProperty &) = delete;

  std::wstring Text() const {
    if (value.vt == VT_LPWSTR && value.pwszVal != nullptr)
      return value.pwszVal;
    return value.vt == VT_BSTR ? std::wstring(value.bstrVal, ::SysStringLen(value.bstrVal)) : std::wstring();
  }

  bool IsTrue() const { return value.vt == VT_BOOL && value.boolVal != VARIANT_FALSE; }

private:
  PROPVARIANT value{};
};

using TextGetter = HRESULT (STDMETHODCALLTYPE IShellLinkW::*)(LPWSTR, int);

std::wstring Text(IShellLinkW &link, TextGetter get) {
  std::wstring text(bufferSize, L'\0');
  return SUCCEEDED((link.*get)(text.data(), bufferSize)) ? text.c_str() : std::wstring();
}

std::wstring Path(IShellLinkW &link) {
  std::wstring path(bufferSize, L'\0');
  return SUCCEEDED(link.GetPath(path.data(), bufferSize, nullptr, SLGP_RAWPATH)) ? path.c_str() : std::wstring();
}

} // namespace

bool IsSeparator(IShellLinkW &link) { return LinkProperty(link, PKEY_AppUserModel_IsDestListSeparator).IsTrue(); }

HRESULT DescribeLink(IShellLinkW &link, const char *kind, JumpListBlock &block) {
  const std::wstring title = LinkProperty(link, PKEY_Title).Text();
  const std::wstring path = Path(link);
  if (title.empty() || path.empty())
    return E_INVALIDARG;
  std::wstring icon(bufferSize, L'\0');
  int iconIndex = 0;
  if (FAILED(link.GetIconLocation(icon.data(), bufferSize, &iconIndex)))
    icon.clear();
  block = {kind,
           {{"title", title},
            {"path", path},
            {"arguments", Text(link, &IShellLinkW::GetArguments)},
            {"workingFolder", Text(link, &IShellLinkW::GetWorkingDirectory)},
            {"description", Text(link, &IShellLinkW::GetDescription)},
            {"icon", icon.c_str()},
            {"iconIndex", std::to_wstring(iconIndex)}}};
  return S_OK;
}

bool HasArguments(const JumpListBlock &block) {
  return std::any_of(block.properties.begin(), block.properties.end(), [](const JumpListProperty &property) {
    return property.name == std::string_view("arguments") && !property.value.empty();
  });
}

} // namespace lumenor::services
