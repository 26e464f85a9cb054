#pragma once
// The program that shows the platform's help. It records what it is asked to search for: as UTF-8, a line each, at the
// end of the file that the environment variable LUMENOR_HELP_RECORD names.

#include "ServiceObject.h"

namespace lumenor::services {

inline constexpr CLSID helpPaneClassId{0x8CEC58E7, 0x07A1, 0x11D9, {0xB1, 0x5E, 0x00, 0x0D, 0x56, 0xBF, 0xE6, 0xEE}};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // as the platform's interfaces, it has none

MIDL_INTERFACE("8CEC5884-07A1-11D9-B15E-000D56BFE6EE")
IHelpPane : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE DisplayTask(BSTR url) = 0;
  virtual HRESULT STDMETHODCALLTYPE DisplayContents(BSTR url) = 0;
  virtual HRESULT STDMETHODCALLTYPE DisplaySearchResults(BSTR query) = 0;
};

#pragma GCC diagnostic pop

} // namespace lumenor::services

__CRT_UUID_DECL(lumenor::services::IHelpPane, 0x8CEC5884, 0x07A1, 0x11D9, 0xB1, 0x5E, 0x00, 0x0D, 0x56, 0xBF, 0xE6,
                0xEE)

namespace lumenor::services {

class HelpPane : public ServiceObject<HelpPane, IHelpPane> {
public:
  HRESULT STDMETHODCALLTYPE DisplayTask(BSTR url) noexcept override;
  HRESULT STDMETHODCALLTYPE DisplayContents(BSTR url) noexcept override;
  HRESULT STDMETHODCALLTYPE DisplaySearchResults(BSTR query) noexcept override;
};

} // namespace lumenor::services
