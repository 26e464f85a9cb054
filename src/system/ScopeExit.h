#pragma once
// What is to happen when a scope is left, by an exception too: a flag goes down, a count goes back. Any thread.

#include <utility>

namespace lumenor {

/// Calls `action` at the end of its scope. The action must not raise: it may run while an exception is under way.
template <typename Action> class ScopeExit {
public:
  explicit ScopeExit(Action action) : action(std::move(action)) {}
  ~ScopeExit() { action(); }
  ScopeExit(const ScopeExit &) = delete;
  ScopeExit &operator=(const ScopeExit &) = delete;

private:
  Action action;
};

/// Gives `variable` a value for the rest of the scope, and its former one back at the end. Borrows `variable`.
template <typename T> class ScopedValue {
public:
  template <typename U> ScopedValue(T &variable, U &&value)
      : variable(variable), former(std::exchange(variable, std::forward<U>(value))) {}
  ~ScopedValue() { variable = std::move(former); }
  ScopedValue(const ScopedValue &) = delete;
  ScopedValue &operator=(const ScopedValue &) = delete;

private:
  T &variable;
  T former;
};

} // namespace lumenor
