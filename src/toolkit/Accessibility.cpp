#include "toolkit/Accessibility.h"

#include <iterator>

#include <oleacc.h>
#include <wrl/client.h>

#include "system/Log.h"

using Microsoft::WRL::ComPtr;

namespace lumenor {

namespace {

/// Asked for at each call and not kept: what is kept may outlive the apartment.
template <typename Change> void ChangeAnnotations(Change change) {
  ComPtr<IAccPropServices> services;
  HRESULT result = ::CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                                      reinterpret_cast<void **>(services.GetAddressOf()));
  if (SUCCEEDED(result))
    result = change(*services.Get());
  if (FAILED(result))
    LogError("Accessibility: a control can't be annotated, error %x", static_cast<unsigned>(result));
}

constexpr auto clientObject = static_cast<DWORD>(OBJID_CLIENT);

} // namespace

void AnnotateName(HWND control, const std::wstring &name) {
  ChangeAnnotations([&](IAccPropServices &services) {
    return services.SetHwndPropStr(control, clientObject, CHILDID_SELF, PROPID_ACC_NAME, name.c_str());
  });
}

void AnnotateRole(HWND control, LONG role) {
  ChangeAnnotations([&](IAccPropServices &services) {
    VARIANT value{};
    value.vt = VT_I4;
    value.lVal = role;
    return services.SetHwndProp(control, clientObject, CHILDID_SELF, PROPID_ACC_ROLE, value);
  });
}

void ClearAnnotations(HWND control) {
  ChangeAnnotations([&](IAccPropServices &services) {
    const MSAAPROPID properties[] = {PROPID_ACC_NAME, PROPID_ACC_ROLE};
    return services.ClearHwndProps(control, clientObject, CHILDID_SELF, properties,
                                   static_cast<int>(std::size(properties)));
  });
}

void NotifyAccessibility(DWORD event, HWND control) {
  if (control != nullptr)
    ::NotifyWinEvent(event, control, OBJID_CLIENT, CHILDID_SELF);
}

std::wstring WithoutAccessKey(const std::wstring &text) {
  std::wstring result;
  for (const wchar_t character : text)
    result.append(character == L'&' ? 2 : 1, character);
  return result;
}

} // namespace lumenor
