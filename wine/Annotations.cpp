#include "Annotations.h"

namespace lumenor::services {

namespace {

constexpr wchar_t nameProperty[] = L"lumenor_services.name";
constexpr wchar_t roleProperty[] = L"lumenor_services.role";

/// S_OK for what can be annotated: the client area of a window.
HRESULT Check(HWND window, DWORD object, DWORD child) {
  if (!::IsWindow(window))
    return E_INVALIDARG;
  return object == static_cast<DWORD>(OBJID_CLIENT) && child == CHILDID_SELF ? S_OK : E_NOTIMPL;
}

HRESULT Keep(HWND window, const wchar_t *property, ULONG_PTR value) {
  return ::SetPropW(window, property, reinterpret_cast<HANDLE>(value)) ? S_OK : HRESULT_FROM_WIN32(::GetLastError());
}

void ClearName(HWND window) {
  if (const HANDLE name = ::RemovePropW(window, nameProperty); name != nullptr)
    ::GlobalDeleteAtom(static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(name)));
}

} // namespace

HRESULT STDMETHODCALLTYPE Annotations::SetHwndProp(HWND window, DWORD object, DWORD child, MSAAPROPID property,
                                                   VARIANT value) noexcept {
  if (const HRESULT checked = Check(window, object, child); checked != S_OK)
    return checked;
  if (!::IsEqualGUID(property, PROPID_ACC_ROLE))
    return E_NOTIMPL;
  return value.vt == VT_I4 ? Keep(window, roleProperty, static_cast<ULONG_PTR>(value.lVal)) : E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE Annotations::SetHwndPropStr(HWND window, DWORD object, DWORD child, MSAAPROPID property,
                                                      LPCWSTR text) noexcept {
  if (const HRESULT checked = Check(window, object, child); checked != S_OK)
    return checked;
  if (!::IsEqualGUID(property, PROPID_ACC_NAME))
    return E_NOTIMPL;
  ClearName(window);
  const ATOM name = ::GlobalAddAtomW(text);
  return name != 0 ? Keep(window, nameProperty, name) : E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE Annotations::ClearHwndProps(HWND window, DWORD object, DWORD child,
                                                      const MSAAPROPID *properties, int count) noexcept {
  if (const HRESULT checked = Check(window, object, child); checked != S_OK)
    return checked;
  for (int i = 0; i < count; ++i) {
    if (::IsEqualGUID(properties[i], PROPID_ACC_NAME))
      ClearName(window);
    else if (::IsEqualGUID(properties[i], PROPID_ACC_ROLE))
      ::RemovePropW(window, roleProperty);
  }
  return S_OK;
}

HRESULT STDMETHODCALLTYPE Annotations::SetPropValue(const BYTE *, DWORD, MSAAPROPID, VARIANT) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE Annotations::SetPropServer(const BYTE *, DWORD, const MSAAPROPID *, int, IAccPropServer *,
                                                     AnnoScope) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE Annotations::ClearProps(const BYTE *, DWORD, const MSAAPROPID *, int) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE Annotations::SetHwndPropServer(HWND, DWORD, DWORD, const MSAAPROPID *, int, IAccPropServer *,
                                                         AnnoScope) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE Annotations::ComposeHwndIdentityString(HWND, DWORD, DWORD, BYTE **, DWORD *) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE Annotations::DecomposeHwndIdentityString(const BYTE *, DWORD, HWND *, DWORD *,
                                                                   DWORD *) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE Annotations::SetHmenuProp(HMENU, DWORD, MSAAPROPID, VARIANT) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE Annotations::SetHmenuPropStr(HMENU, DWORD, MSAAPROPID, LPCWSTR) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE Annotations::SetHmenuPropServer(HMENU, DWORD, const MSAAPROPID *, int, IAccPropServer *,
                                                          AnnoScope) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE Annotations::ClearHmenuProps(HMENU, DWORD, const MSAAPROPID *, int) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE Annotations::ComposeHmenuIdentityString(HMENU, DWORD, BYTE **, DWORD *) noexcept {
  return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE Annotations::DecomposeHmenuIdentityString(const BYTE *, DWORD, HMENU *, DWORD *) noexcept {
  return E_NOTIMPL;
}

} // namespace lumenor::services
