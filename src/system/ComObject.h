#pragma once
// What our COM objects are made of: the count of their references, the query for their interfaces, and the barrier that
// keeps exceptions away from the platform. References may be counted on any thread.

#include <atomic>
#include <cstring>
#include <tuple>
#include <utility>

#include <wrl/client.h>

#include "system/WindowException.h"
#include "system/Windows.h"

namespace lumenor {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // the platform's interfaces have none

/// Whether two identifiers are the same. The platform's remote calls pass identifiers at odd addresses, so they are
/// compared as bytes.
[[gnu::no_sanitize("alignment")]] inline bool IsSameId(REFIID one, REFIID other) noexcept {
  return std::memcmp(&one, &other, sizeof(IID)) == 0;
}

/// An object with `Interfaces`, the first of which is also its IUnknown. It is made with one reference, which its maker
/// owns (MakeComObject), and deleted with its last.
template <typename... Interfaces> class ComObject : public Interfaces... {
public:
  /// `references` is 0 for an object that is handed to a smart pointer which counts itself.
  explicit ComObject(ULONG references = 1) : refCount(references) {}
  ComObject(const ComObject &) = delete;
  ComObject &operator=(const ComObject &) = delete;

  [[gnu::no_sanitize("alignment")]] HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id,
                                                                             void **object) noexcept override {
    if (object == nullptr)
      return E_POINTER;
    *object = Find(id);
    if (*object == nullptr)
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
  virtual ~ComObject() = default;

private:
  using First = std::tuple_element_t<0, std::tuple<Interfaces...>>;

  [[gnu::no_sanitize("alignment")]] void *Find(REFIID id) noexcept {
    void *found = IsSameId(id, __uuidof(IUnknown)) ? static_cast<First *>(this) : nullptr;
    ((IsSameId(id, __uuidof(Interfaces)) ? found = static_cast<Interfaces *>(this) : nullptr), ...);
    return found;
  }

  std::atomic<ULONG> refCount;
};

#pragma GCC diagnostic pop

/// A new object, held by its one reference.
template <typename Object, typename... Arguments>
Microsoft::WRL::ComPtr<Object> MakeComObject(Arguments &&...arguments) {
  Microsoft::WRL::ComPtr<Object> object;
  *object.GetAddressOf() = new Object(std::forward<Arguments>(arguments)...); // Attach of some headers counts once more
  return object;
}

/// Runs `body` for the platform and returns its result. What it raises is kept for the message loop, and the platform
/// gets E_FAIL.
template <typename Body> HRESULT Shielded(Body &&body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    KeepWindowException();
    return E_FAIL;
  }
}

} // namespace lumenor
