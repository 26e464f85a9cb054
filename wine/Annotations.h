#pragma once
// The platform's service that annotates controls for screen readers. It keeps the name and the role of a window's
// client area as properties of the window, where other processes can read them: "lumenor_services.name", a global atom
// with at most 255 letters, and "lumenor_services.role". Everything else isn't served.

#include <oleacc.h>

#include "ServiceObject.h"

__CRT_UUID_DECL(IAccPropServices, 0x6E26E776, 0x04F0, 0x495D, 0x80, 0xE4, 0x33, 0x30, 0x35, 0x2E, 0x31, 0x69);

namespace lumenor::services {

class Annotations : public ServiceObject<Annotations, IAccPropServices> {
public:
  HRESULT STDMETHODCALLTYPE SetHwndProp(HWND window, DWORD object, DWORD child, MSAAPROPID property,
                                        VARIANT value) noexcept override;
  HRESULT STDMETHODCALLTYPE SetHwndPropStr(HWND window, DWORD object, DWORD child, MSAAPROPID property,
                                           LPCWSTR text) noexcept override;
  HRESULT STDMETHODCALLTYPE ClearHwndProps(HWND window, DWORD object, DWORD child, const MSAAPROPID *properties,
                                           int count) noexcept override;

  HRESULT STDMETHODCALLTYPE SetPropValue(const BYTE *, DWORD, MSAAPROPID, VARIANT) noexcept override;
  HRESULT STDMETHODCALLTYPE SetPropServer(const BYTE *, DWORD, const MSAAPROPID *, int, IAccPropServer *,
                                          AnnoScope) noexcept override;
  HRESULT STDMETHODCALLTYPE ClearProps(const BYTE *, DWORD, const MSAAPROPID *, int) noexcept override;
  HRESULT STDMETHODCALLTYPE SetHwndPropServer(HWND, DWORD, DWORD, const MSAAPROPID *, int, IAccPropServer *,
                                              AnnoScope) noexcept override;
  HRESULT STDMETHODCALLTYPE ComposeHwndIdentityString(HWND, DWORD, DWORD, BYTE **, DWORD *) noexcept override;
  HRESULT STDMETHODCALLTYPE DecomposeHwndIdentityString(const BYTE *, DWORD, HWND *, DWORD *,
                                                        DWORD *) noexcept override;
  HRESULT STDMETHODCALLTYPE SetHmenuProp(HMENU, DWORD, MSAAPROPID, VARIANT) noexcept override;
  HRESULT STDMETHODCALLTYPE SetHmenuPropStr(HMENU, DWORD, MSAAPROPID, LPCWSTR) noexcept override;
  HRESULT STDMETHODCALLTYPE SetHmenuPropServer(HMENU, DWORD, const MSAAPROPID *, int, IAccPropServer *,
                                               AnnoScope) noexcept override;
  HRESULT STDMETHODCALLTYPE ClearHmenuProps(HMENU, DWORD, const MSAAPROPID *, int) noexcept override;
  HRESULT STDMETHODCALLTYPE ComposeHmenuIdentityString(HMENU, DWORD, BYTE **, DWORD *) noexcept override;
  HRESULT STDMETHODCALLTYPE DecomposeHmenuIdentityString(const BYTE *, DWORD, HMENU *, DWORD *) noexcept override;
};

} // namespace lumenor::services
