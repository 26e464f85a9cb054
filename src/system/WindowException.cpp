#include "system/WindowException.h"

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

WindowExceptionScope::WindowExceptionScope() noexcept : earlier(std::exchange(kept, nullptr)) {}

WindowExceptionScope::~WindowExceptionScope() {
  if (earlier != nullptr)
    kept = std::move(earlier);
}

} // namespace lumenor
