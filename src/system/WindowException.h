#pragma once
// The way of an exception past the platform's frames: on 64-bit Windows none may cross from a window procedure to the
// code that dispatched the message. The procedure keeps it here, and the code behind the call raises it again. Only for
// the thread that owns the windows.

#include <exception>

namespace lumenor {

/// Keeps the exception that is being handled, unless an earlier one waits: the first tells most. To be called in a
/// `catch` block.
void KeepWindowException() noexcept;

/// Raises the kept exception, if there is one, and forgets it.
void RethrowWindowException();

/// Forgets the kept exception, if there is one.
void ForgetWindowException() noexcept;

/// For code that takes what is kept within its own calls, and nothing else: a handler within the loop of a modal dialog
/// or of a drag runs while the handler around it may have a failure waiting. What was kept before is set aside for as
/// long as this lives, and is kept again afterwards. Scopes nest.
class WindowExceptionScope {
public:
  WindowExceptionScope() noexcept;

  /// What is still kept of this scope gives way to what was kept before it.
  ~WindowExceptionScope();
  WindowExceptionScope(const WindowExceptionScope &) = delete;
  WindowExceptionScope &operator=(const WindowExceptionScope &) = delete;

private:
  std::exception_ptr earlier;
};

} // namespace lumenor
