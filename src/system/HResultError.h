#pragma once
// The exception that carries a failed HRESULT, and the operations by which failed platform calls raise it. `place` is
// where the call stands; callers leave it out. Any thread.

#include <exception>
#include <new>
#include <source_location>
#include <utility>

#include "system/Windows.h"

namespace lumenor {

using SourcePlace = std::source_location;

/// A platform call failed.
class HResultError : public std::exception {
public:
  explicit HResultError(HRESULT result, SourcePlace place = SourcePlace::current()) noexcept
      : result(result), place(place) {}

  /// The failed HRESULT, always below zero.
  HRESULT Result() const noexcept { return result; }

  /// The source file of the failed call, from its module's folder on, and the line there.
  const char *File() const noexcept;
  unsigned Line() const noexcept { return place.line(); }

  const char *what() const noexcept override { return "HResultError"; }

private:
  HRESULT result;
  SourcePlace place;
};

/// Raises HResultError when `result` is below zero; otherwise returns it, so that S_FALSE can be told from S_OK.
HRESULT ThrowIfFailed(HRESULT result, SourcePlace place = SourcePlace::current());

/// A Win32 error as a failure HRESULT: its low 16 bits below 0x80070000, an HRESULT as it stands; 0 gives E_FAIL.
HRESULT HResultFromError(DWORD error) noexcept;

/// Raises HResultError with the calling thread's last error.
[[noreturn]] void ThrowLastError(SourcePlace place = SourcePlace::current());

/// Raises HResultError with the last error when `handle` is null; otherwise returns it.
template <typename Handle> Handle ThrowIfNull(Handle handle, SourcePlace place = SourcePlace::current()) {
  if (handle == nullptr)
    ThrowLastError(place);
  return handle;
}

/// Raises HResultError with the last error when `succeeded` is FALSE.
inline void ThrowIfFalse(BOOL succeeded, SourcePlace place = SourcePlace::current()) {
  if (!succeeded)
    ThrowLastError(place);
}

/// Runs `body` for an operation that returns its failures: S_OK, or what `body` raised as a failure HRESULT.
template <typename Body> HRESULT HResultOf(Body &&body) noexcept {
  try {
    std::forward<Body>(body)();
    return S_OK;
  } catch (const HResultError &error) {
    return error.Result();
  } catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_FAIL;
  }
}

} // namespace lumenor
