#pragma once
// The way of an exception past the platform's frames: on 64-bit Windows none may cross from a window procedure to the
// code that dispatched the message. The procedure keeps it here, and the code behind the call raises it again. Only for
// the thread that owns the windows.

namespace lumenor {

/// Keeps the exception that is being handled, unless an earlier one waits: the first tells most. To be called in a
/// `catch` block.
void KeepWindowException() noexcept;

/// Raises the kept exception, if there is one, and forgets it.
void RethrowWindowException();

/// Forgets the kept exception, if there is one.
void ForgetWindowException() noexcept;

} // namespace lumenor
