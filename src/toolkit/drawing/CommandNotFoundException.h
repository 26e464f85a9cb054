#pragma once
// Raised when a content entry names a program that isn't on this machine. Any thread.

#include <exception>

namespace lumenor {

/// The program behind a button doesn't exist, and the button has no picture of its own.
class CommandNotFoundException : public std::exception {
public:
  const char *what() const noexcept override { return "CommandNotFoundException"; }
};

} // namespace lumenor
