#pragma once
// A value that notifies listeners of its changes. A plain member of its owner; its address is its identity.
// User-interface thread.

#include <memory>
#include <utility>

#include "toolkit/Event.h"

namespace lumenor {

template <typename T> class Property;

/// The arguments of a property's event. They live as long as the firing.
template <typename T> struct PropertyChangeEventArgs {
  Property<T> *source;
  T oldValue;
  T newValue;
};

/// Types whose every Set stores and fires, also with an equal value.
template <typename T> inline constexpr bool firesOnEverySet = false;

template <typename T> class Property {
public:
  explicit Property(T initial = T{}) : value(std::move(initial)) {}

  /// The value, borrowed until the next Set.
  const T &Get() const { return value; }

  /// Stores `newValue` and calls all listeners before it returns; an equal value does nothing. Listeners already read
  /// the new value, and may call Set again, which nests.
  void Set(T newValue) {
    if (!CountsAsChanged(newValue))
      return;
    T oldValue = std::exchange(value, newValue);
    const std::unique_ptr<PropertyChangeEventArgs<T>> args(
        new PropertyChangeEventArgs<T>{this, std::move(oldValue), std::move(newValue)});
    changed.Fire(args.get());
  }

private:
  bool CountsAsChanged(const T &newValue) const {
    if constexpr (firesOnEverySet<T>)
      return true;
    else
      return !(newValue == value); // so a NaN always counts
  }

  T value;

public:
  /// Fires at every change, with the property as source.
  Event<PropertyChangeEventArgs<T>> changed{L"PropertyChange"};
};

} // namespace lumenor
