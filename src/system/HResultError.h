#pragma once
// The exception that carries a failed HRESULT, and the one vocabulary by which failed platform calls raise it.
// Any thread.

#include <exception>
#include <new>
#include <utility>

#include "system/Windows.h"

namespace lumenor {

/// A platform call failed; Result() tells how.
class HResultError : public std::exception {
public:
  explicit HResultError(HRESULT result) noexcept : result(result) {}

  /// The failed HRESULT, always below zero.
  HRESULT Result() const noexcept { return result; }

  const char *what() const noexcept override { return "HResultError"; }

private:
  HRESULT result;
};

/// Raises HResultError when `result` is below zero; otherwise returns it, so that S_FALSE can be told from S_OK.
HRESULT ThrowIfFailed(HRESULT result);

/// A Win32 error as a failure HRESULT: its low 16 bits below 0x80070000, an HRESULT as it stands; 0 gives E_FAIL.
HRESULT HResultFromError(DWORD error) noexcept;

/// Raises HResultError with the calling thread's last error.
[[noreturn]] void ThrowLastError();

/// Raises HResultError with the last error when `handle` is null; otherwise returns it.
template <typename Handle> Handle ThrowIfNull(Handle handle) {
  if (handle == nullptr)
    ThrowLastError();
  return handle;
}

/// Raises HResultError with the last error when `succeeded` is FALSE.
inline void ThrowIfFalse(BOOL succeeded) {
  if (!succeeded)
    ThrowLastError();
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
