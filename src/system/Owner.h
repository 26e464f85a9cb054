#pragma once
// The one owner of a platform handle: it closes what it holds, on every path. The traits name the handle's type, its
// empty value and its closer; system/Handles.h has an alias for every kind the system uses. Move only.

#include <utility>

#include "system/Windows.h"

namespace lumenor {

/// Owns one handle of the kind that `Traits` describes: `Traits::Handle`, `Traits::Empty()` (the value that means
/// none) and `Traits::Close(handle)`.
template <typename Traits> class Owner {
public:
  using Handle = typename Traits::Handle;

  Owner() noexcept = default;
  explicit Owner(Handle handle) noexcept : held(handle) {}
  Owner(Owner &&other) noexcept : held(other.Detach()) {}
  Owner &operator=(Owner &&other) noexcept {
    if (this != &other)
      Reset(other.Detach());
    return *this;
  }
  Owner(const Owner &) = delete;
  Owner &operator=(const Owner &) = delete;
  ~Owner() { Reset(); }

  /// The handle, borrowed.
  Handle Get() const noexcept { return held; }

  explicit operator bool() const noexcept { return held != Traits::Empty(); }

  /// Closes what is held and holds `handle` instead. The thread's last error stays: closing on the way out of a failure
  /// must not hide it.
  void Reset(Handle handle = Traits::Empty()) noexcept {
    const Handle old = std::exchange(held, handle);
    if (old == Traits::Empty())
      return;
    const DWORD error = ::GetLastError();
    Traits::Close(old);
    ::SetLastError(error);
  }

  /// Gives the handle to the caller, who closes it from now on.
  [[nodiscard]] Handle Detach() noexcept { return std::exchange(held, Traits::Empty()); }

  /// Closes what is held and gives the address to be filled by a platform call.
  Handle *Put() noexcept {
    Reset();
    return &held;
  }

private:
  Handle held = Traits::Empty();
};

} // namespace lumenor
