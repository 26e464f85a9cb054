#include "e2e/Accessible.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include <oleacc.h>
#include <wrl/client.h>

#include "e2e/DockProcess.h"
#include "support/ComApartment.h"

namespace lumenor::e2e {

namespace {

constexpr wchar_t panelClass[] = L"LumenorPanel";

std::wstring ClassOf(HWND window) {
  wchar_t name[64] = {};
  ::GetClassNameW(window, name, 64);
  return name;
}

VARIANT Self() {
  VARIANT self{};
  self.vt = VT_I4;
  self.lVal = CHILDID_SELF;
  return self;
}

std::wstring ProxyName(IAccessible &proxy) {
  BSTR text = nullptr;
  if (proxy.get_accName(Self(), &text) != S_OK || text == nullptr)
    return {};
  const std::wstring name(text, ::SysStringLen(text));
  ::SysFreeString(text);
  return name;
}

/// What the services of the test platform keep of an annotation, which its proxies don't know of.
ULONG_PTR Annotation(HWND control, const wchar_t *property) {
  return reinterpret_cast<ULONG_PTR>(::GetPropW(control, property));
}

std::wstring AnnotatedName(HWND control) {
  wchar_t name[256] = {};
  if (const ULONG_PTR atom = Annotation(control, L"lumenor_services.name"); atom != 0)
    ::GlobalGetAtomNameW(static_cast<ATOM>(atom), name, 256);
  return name;
}

/// The proxies of the test platform know the platform's classes by their names alone, and not those that are built upon
/// them. So the window itself is asked what it does: only the procedure of such a class answers so.
std::wstring RoleOf(HWND control) {
  const LRESULT code = ::SendMessageW(control, WM_GETDLGCODE, 0, 0);
  if ((code & DLGC_HASSETSEL) != 0)
    return L"field";
  if ((code & DLGC_BUTTON) == 0)
    return L"nothing";
  if (Annotation(control, L"lumenor_services.role") != ROLE_SYSTEM_CHECKBUTTON)
    return L"button";
  return ::SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED ? L"ticked check box" : L"check box";
}

} // namespace

std::wstring ControlAt(HWND control) {
  const tests::ComApartment com;
  Microsoft::WRL::ComPtr<IAccessible> proxy;
  if (FAILED(::AccessibleObjectFromWindow(control, static_cast<DWORD>(OBJID_CLIENT), IID_PPV_ARGS(&proxy))))
    return L"nothing";
  const std::wstring annotated = AnnotatedName(control);
  return RoleOf(control) + L' ' + (annotated.empty() ? ProxyName(*proxy.Get()) : annotated);
}

std::vector<std::wstring> ControlsOf(HWND root, bool inColumns) {
  std::vector<HWND> controls;
  ::EnumChildWindows(
      root,
      [](HWND window, LPARAM parameter) -> BOOL {
        if (ClassOf(window) != panelClass)
          reinterpret_cast<std::vector<HWND> *>(parameter)->push_back(window);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&controls));
  const auto place = [inColumns](HWND control) {
    const RECT r = RectOf(control);
    const auto [first, second] = inColumns ? std::pair(r.left, r.top) : std::pair(r.top, r.left);
    return std::tuple(first, second, !::IsWindowVisible(control));
  };
  std::sort(controls.begin(), controls.end(), [&](HWND a, HWND b) { return place(a) < place(b); });
  std::vector<std::wstring> spoken;
  for (const HWND control : controls)
    spoken.push_back(ControlAt(control));
  return spoken;
}

} // namespace lumenor::e2e
