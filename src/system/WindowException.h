#pragma once
// Carries an exception past the platform's frames: on 64-bit Windows none may cross from a window procedure to the code
// that dispatched the message. The procedure keeps it here, and the code after the call raises it again. Only for the
// thread that owns the windows.

#include <exception>

namespace lumenor {

/// Keeps the exception that is being handled, unless an earlier one is kept: the first says most about the cause. To be
/// called in a `catch` block.
void KeepWindowException() noexcept;

/// Raises the kept exception, if there is one, and forgets it.
void RethrowWindowException();

/// Forgets the kept exception, if there is one.
void ForgetWindowException() noexcept;

/// For code that handles only what is kept during its own calls: a handler within the message loop of a modal dialog or
/// of a drag runs while the handler around it may have an exception kept. That one is set aside for the life of this
/// object and kept again afterwards. Scopes nest.
class WindowExceptionScope {
public:
  WindowExceptionScope() noexcept;

  /// What was kept before replaces what is still kept of this scope.
  ~WindowExceptionScope();
  WindowExceptionScope(const WindowExceptionScope &) = delete;
  WindowExceptionScope &operator=(const WindowExceptionScope &) = delete;

private:
  std::exception_ptr earlier;
};

} // namespace lumenor
