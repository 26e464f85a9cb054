#include "system/WindowException.h"

#include <exception>
#include <utility>

namespace lumenor {

namespace {

std::exception_ptr kept;

} // namespace

void KeepWindowException() noexcept {
  if (kept == nullptr)
    kept = std::current_exception();
}

void RethrowWindowException() {
  if (kept != nullptr)
    std::rethrow_exception(std::exchange(kept, nullptr));
}

void ForgetWindowException() noexcept { kept = nullptr; }

} // namespace lumenor
