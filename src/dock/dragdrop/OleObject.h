#pragma once
// What the objects of drag and drop are made of: counting, their one interface, and the wall that no exception of ours
// passes on its way out to the platform. User-interface thread.

#include <cstring>
#include <utility>

#include <wrl/client.h>

#include "system/WindowException.h"
#include "system/Windows.h"

namespace lumenor {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // the platform's interfaces have none

/// Whether an object with the one interface `known` answers to `id`. The platform's remote calls hand in identifiers
/// that lie at odd places, so they are compared as bytes.
[[gnu::no_sanitize("alignment")]] inline bool IsInterface(REFIID id, REFIID known) noexcept {
  return std::memcmp(&id, &IID_IUnknown, sizeof(IID)) == 0 || std::memcmp(&id, &known, sizeof(IID)) == 0;
}

/// An object with the one interface `Interface`. It is made with one reference, which whoever makes it owns, and
/// deleted with its last.
template <typename Interface> class OleObject : public Interface {
public:
  OleObject() = default;
  OleObject(const OleObject &) = delete;
  OleObject &operator=(const OleObject &) = delete;

  [[gnu::no_sanitize("alignment")]] HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id,
                                                                             void **object) noexcept override {
    if (object == nullptr)
      return E_POINTER;
    const bool isKnown = IsInterface(id, __uuidof(Interface));
    *object = isKnown ? static_cast<Interface *>(this) : nullptr;
    if (!isKnown)
      return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++refCount; }

  ULONG STDMETHODCALLTYPE Release() noexcept override {
    const ULONG left = --refCount;
    if (left == 0)
      delete this;
    return left;
  }

protected:
  virtual ~OleObject() = default;

private:
  ULONG refCount = 1;
};

#pragma GCC diagnostic pop

/// A new object, held by its one reference.
template <typename Object, typename... Arguments>
Microsoft::WRL::ComPtr<Object> MakeOleObject(Arguments &&...arguments) {
  Microsoft::WRL::ComPtr<Object> object;
  *object.GetAddressOf() = new Object(std::forward<Arguments>(arguments)...); // Attach of some headers counts once more
  return object;
}

/// Runs `body` for the platform and returns its result. What it raises is kept for the message loop, and the platform
/// is told of a failure.
template <typename Body> HRESULT Shielded(Body &&body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    KeepWindowException();
    return E_FAIL;
  }
}

} // namespace lumenor
