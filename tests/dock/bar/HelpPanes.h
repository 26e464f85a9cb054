#pragma once
// A help pane of the tests' own in the place of the platform's.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "system/Windows.h"

#include <ole2.h>

namespace lumenor {

/// What was searched for since the last registration.
inline std::vector<std::wstring> helpSearches;

/// The operations of the platform's help pane, up to the one that searches.
struct HelpPane {
  virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void **object) {
    constexpr IID helpPane = {0x8cec5884, 0x07a1, 0x11d9, {0xb1, 0x5e, 0x00, 0x0d, 0x56, 0xbf, 0xe6, 0xee}};
    const bool isKnown = ::IsEqualIID(id, helpPane) || ::IsEqualIID(id, IID_IUnknown);
    *object = isKnown ? this : nullptr;
    return isKnown ? S_OK : E_NOINTERFACE;
  }
  virtual ULONG STDMETHODCALLTYPE AddRef() { return 1; }
  virtual ULONG STDMETHODCALLTYPE Release() { return 1; }
  virtual HRESULT STDMETHODCALLTYPE First(BSTR) { return E_NOTIMPL; }
  virtual HRESULT STDMETHODCALLTYPE Second(BSTR) { return E_NOTIMPL; }
  virtual HRESULT STDMETHODCALLTYPE Search(BSTR text) {
    helpSearches.emplace_back(text, ::SysStringLen(text));
    return result;
  }

  HRESULT result = S_OK;

protected:
  ~HelpPane() = default;
};

struct NotingHelpPane final : HelpPane {};

/// Makes the platform's class of help panes give `pane` for as long as it lives.
struct HelpPaneFactory {
  virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void **object) {
    *object = this;
    return S_OK;
  }
  virtual ULONG STDMETHODCALLTYPE AddRef() { return 1; }
  virtual ULONG STDMETHODCALLTYPE Release() { return 1; }
  virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown *, REFIID id, void **object) {
    return isThere ? pane.QueryInterface(id, object) : REGDB_E_CLASSNOTREG;
  }
  virtual HRESULT STDMETHODCALLTYPE LockServer(BOOL) { return S_OK; }

  NotingHelpPane pane;
  bool isThere = true; // false: as on a machine without the class

protected:
  ~HelpPaneFactory() = default;
};

struct HelpPaneRegistration final : HelpPaneFactory {
  HelpPaneRegistration() {
    helpSearches.clear();
    constexpr CLSID helpPane = {0x8cec58e7, 0x07a1, 0x11d9, {0xb1, 0x5e, 0x00, 0x0d, 0x56, 0xbf, 0xe6, 0xee}};
    EXPECT_EQ(S_OK, ::CoRegisterClassObject(helpPane, reinterpret_cast<IUnknown *>(this), CLSCTX_INPROC_SERVER,
                                            REGCLS_MULTIPLEUSE, &cookie));
  }
  ~HelpPaneRegistration() { ::CoRevokeClassObject(cookie); }

  DWORD cookie = 0;
};

} // namespace lumenor
