#include "system/ComText.h"

#include "system/HResultError.h"

namespace lumenor {

Bstr MakeBstr(const std::wstring &text) {
  Bstr copy(::SysAllocStringLen(text.data(), static_cast<UINT>(text.size())));
  if (!copy)
    throw HResultError(E_OUTOFMEMORY);
  return copy;
}

std::wstring TextOf(const Bstr &text) { return std::wstring(text.Get(), ::SysStringLen(text.Get())); }

Variant::Variant(const std::wstring &text) : Variant() {
  value.bstrVal = MakeBstr(text).Detach();
  value.vt = VT_BSTR;
}

std::wstring Variant::Text() const {
  if (value.vt != VT_BSTR)
    return {};
  return std::wstring(value.bstrVal, ::SysStringLen(value.bstrVal));
}

} // namespace lumenor
