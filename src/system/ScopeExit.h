#pragma once
// Actions at the end of a scope, also when an exception leaves it: clear a flag, restore a value. Any thread.

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

/// Gives `variable` a value for the rest of the scope and restores the former one at its end. Borrows `variable`.
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
