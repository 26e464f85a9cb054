#pragma once
// Owners of the strings and variants that automation interfaces take and return. Any thread.

#include <string>

#include "system/Handles.h"
#include "system/Windows.h"

#include <oleauto.h> // behind windows.h, which it needs

namespace lumenor {

using Bstr = Owner<NullHandleTraits<BSTR, &::SysFreeString>>;

/// A copy of `text` for a call. Raises HResultError with E_OUTOFMEMORY.
Bstr MakeBstr(const std::wstring &text);

/// The text of a string that a call returned; empty for null.
std::wstring TextOf(const Bstr &text);

/// A variant, cleared when it goes out of scope.
class Variant {
public:
  Variant() noexcept { ::VariantInit(&value); }
  /// A string variant that holds a copy of `text`. Raises HResultError with E_OUTOFMEMORY.
  explicit Variant(const std::wstring &text);
  ~Variant() { ::VariantClear(&value); }
  Variant(const Variant &) = delete;
  Variant &operator=(const Variant &) = delete;

  /// For a call that takes a variant by value; the text stays this object's.
  const VARIANT &Get() const noexcept { return value; }

  /// To be filled by a call.
  VARIANT *Put() noexcept {
    ::VariantClear(&value);
    return &value;
  }

  /// The text of a string variant; empty for any other.
  std::wstring Text() const;

private:
  VARIANT value;
};

} // namespace lumenor
