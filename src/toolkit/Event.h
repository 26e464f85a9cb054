#pragma once
// Synchronous multicast events and their listeners. An event owns no listener: the subscriber holds it in a shared
// pointer, and when that is dropped the listener is gone from every event. User-interface thread.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace lumenor {

/// One byte that says whether a listener still lives; shared by the listener and the event's entry for it, so that
/// either may be destroyed first.
using AliveFlag = std::shared_ptr<unsigned char>;

template <typename Args> class Event;

/// What an event calls. Its destruction marks all its entries dead; each event drops its own at its next firing.
template <typename Args> class EventListener {
public:
  EventListener() = default;
  EventListener(const EventListener &) = delete;
  EventListener &operator=(const EventListener &) = delete;
  virtual ~EventListener() {
    for (const AliveFlag &flag : flagRefs)
      *flag = 0;
  }

  /// `args` lives only as long as the call.
  virtual void Invoke(Args *args) = 0;

private:
  friend class Event<Args>;

  /// Keeps the flag of a new entry. Flags whose entries are gone are dropped first: a listener that subscribes to ever
  /// new objects would otherwise grow for as long as the process runs.
  void Keep(const AliveFlag &flag) {
    if (flagRefs.size() == flagRefs.capacity())
      std::erase_if(flagRefs, [](const AliveFlag &kept) { return kept.use_count() == 1; });
    flagRefs.push_back(flag);
  }

  std::vector<AliveFlag> flagRefs; // one for every entry of this listener, and some of entries that are gone
};

/// Calls a member function of an object; does nothing when either is null. A handler without parameters isn't passed
/// the arguments. A pointer to a virtual member function calls the override of the object's class.
template <typename Owner, typename Args, typename Handler = void (Owner::*)(Args *)> class TypedEventListener
    : public EventListener<Args> {
public:
  TypedEventListener(Owner *owner, Handler handler) : owner(owner), handler(handler) {}

  void Invoke(Args *args) override {
    if (owner == nullptr || handler == nullptr)
      return;
    if constexpr (std::is_invocable_v<Handler, Owner *>)
      (owner->*handler)();
    else
      (owner->*handler)(args);
  }

private:
  Owner *owner;
  Handler handler;
};

/// A listener of any owner. Keep it in a member: it listens as long as that lives.
template <typename Args> using ListenerPtr = std::shared_ptr<EventListener<Args>>;

/// A listener that calls `handler` on `owner`.
template <typename Owner, typename HandlerClass, typename Args>
std::shared_ptr<TypedEventListener<Owner, Args>> MakeListener(Owner *owner, void (HandlerClass::*handler)(Args *)) {
  return std::make_shared<TypedEventListener<Owner, Args>>(owner, handler);
}

/// The same for a handler without parameters, from which `Args` can't be deduced: it is named at the call.
template <typename Args, typename Owner, typename HandlerClass>
ListenerPtr<Args> MakeListener(Owner *owner, void (HandlerClass::*handler)()) {
  return std::make_shared<TypedEventListener<Owner, Args, void (HandlerClass::*)()>>(owner, handler);
}

/// Calls its listeners in the order of their subscription.
template <typename Args> class Event {
public:
  /// `name` is a literal, a label for debugging.
  explicit Event(const wchar_t *name) : name(name) {}
  Event(const Event &) = delete;
  Event &operator=(const Event &) = delete;

  /// Subscribes; the same listener twice is called twice a firing. Null is ignored. Borrows `listener`, which
  /// may be destroyed at any time.
  void AddListener(EventListener<Args> *listener) {
    if (listener == nullptr)
      return;
    auto flag = std::make_shared<unsigned char>(static_cast<unsigned char>(1));
    listener->Keep(flag);
    listeners.push_back(listener);
    aliveFlags.push_back(std::move(flag));
  }

  /// Takes the first entry of `listener` out, if there is one.
  void RemoveListener(EventListener<Args> *listener) {
    for (std::size_t i = 0; i < listeners.size(); ++i)
      if (listeners[i] == listener)
        return RemoveAt(static_cast<int>(i));
  }

  /// Takes the entry at `index` out; later entries move one down. An index past the end is skipped.
  void RemoveAt(int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= listeners.size())
      return;
    listeners.erase(listeners.begin() + index);
    aliveFlags.erase(aliveFlags.begin() + index);
  }

  /// Calls every living listener, also those that are added meanwhile, then drops the entries found dead. An exception
  /// of a listener ends the firing and passes through.
  void Fire(Args *args) {
    std::vector<std::uint32_t> dead;
    for (std::size_t i = 0; i < listeners.size(); ++i) {
      if (*aliveFlags[i] != 0)
        listeners[i]->Invoke(args);
      else
        dead.push_back(static_cast<std::uint32_t>(i));
    }
    // The indices stand as they were found, not corrected for the removals before them: with several dead entries in
    // one firing the later removals hit the entry one place further on. RemoveListener is exact.
    for (const std::uint32_t index : dead)
      RemoveAt(static_cast<int>(index));
  }

  /// How many entries there are, dead ones included.
  std::size_t Count() const { return listeners.size(); }

  /// The label given at construction.
  const wchar_t *Name() const { return name; }

private:
  std::vector<EventListener<Args> *> listeners;
  std::vector<AliveFlag> aliveFlags; // parallel to listeners
  const wchar_t *name;
};

/// Subscriptions that last as long as the object that holds them, one listener for each.
class Subscriptions {
public:
  /// Calls `handler` on `owner` at every firing of each of `events`. The handler takes the arguments of the events or
  /// nothing.
  template <typename Owner, typename Handler, typename... Args>
  void Add(Owner *owner, Handler handler, Event<Args> &...events) {
    (AddOne(owner, handler, events), ...);
  }

private:
  template <typename Owner, typename Handler, typename Args>
  void AddOne(Owner *owner, Handler handler, Event<Args> &event) {
    auto listener = std::make_shared<TypedEventListener<Owner, Args, Handler>>(owner, handler);
    event.AddListener(listener.get());
    listeners.push_back(std::move(listener));
  }

  std::vector<std::shared_ptr<void>> listeners; // of events with different arguments
};

} // namespace lumenor
