#include "toolkit/Event.h"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "toolkit/AllocationCount.h"

namespace lumenor {

namespace {

struct Call {
  int number = 0;
};

using CallEvent = Event<Call>;
using Log = std::vector<std::string>;

/// Writes its letter into a log, and does whatever the test wants meanwhile.
class Recorder : public EventListener<Call> {
public:
  Recorder(Log &log, std::string letter, std::function<void()> also = {})
      : log(log), letter(std::move(letter)), also(std::move(also)) {}

  void Invoke(Call *) override {
    log.push_back(letter);
    if (also)
      also();
  }

private:
  Log &log;
  std::string letter;
  std::function<void()> also;
};

class EventTest : public ::testing::Test {
protected:
  std::unique_ptr<Recorder> Listen(const std::string &letter, std::function<void()> also = {}) {
    auto recorder = std::make_unique<Recorder>(log, letter, std::move(also));
    event.AddListener(recorder.get());
    return recorder;
  }

  /// Who was called by one firing, in order.
  Log Fire() {
    log.clear();
    event.Fire(&call);
    return log;
  }

  Log log;
  Call call;
  CallEvent event{L"Call"};
};

TEST_F(EventTest, CallsListenersInTheOrderOfSubscription) {
  const auto a = Listen("a"), b = Listen("b"), c = Listen("c");
  EXPECT_EQ(Fire(), (Log{"a", "b", "c"}));
  EXPECT_EQ(event.Count(), 3U);
}

TEST_F(EventTest, KeepsTheNameItWasGiven) { EXPECT_STREQ(event.Name(), L"Call"); }

TEST_F(EventTest, AddingNullLeavesTheEventUnchanged) {
  event.AddListener(nullptr);
  EXPECT_EQ(event.Count(), 0U);
  EXPECT_EQ(Fire(), Log{});
}

TEST_F(EventTest, ListenerAddedTwiceIsCalledTwiceAndRemovedOnce) {
  const auto a = Listen("a"), b = Listen("b");
  event.AddListener(a.get());
  EXPECT_EQ(Fire(), (Log{"a", "b", "a"}));
  event.RemoveListener(a.get());
  EXPECT_EQ(Fire(), (Log{"b", "a"}));
}

TEST_F(EventTest, RemovingAStrangerChangesNothing) {
  const auto a = Listen("a");
  Recorder stranger(log, "stranger");
  event.RemoveListener(&stranger);
  EXPECT_EQ(Fire(), Log{"a"});
}

TEST_F(EventTest, RemoveAtClosesTheGap) {
  const auto a = Listen("a"), b = Listen("b"), c = Listen("c");
  event.RemoveAt(1);
  EXPECT_EQ(Fire(), (Log{"a", "c"}));
}

TEST_F(EventTest, RemoveAtSkipsAnIndexThatIsntThere) {
  const auto a = Listen("a");
  event.RemoveAt(1);
  event.RemoveAt(-1);
  EXPECT_EQ(Fire(), Log{"a"});
}

TEST_F(EventTest, ListenerAddedDuringAFiringIsCalledInItAfterAllOthers) {
  std::unique_ptr<Recorder> late;
  const auto a = Listen("a", [&] {
    if (!late)
      late = Listen("late");
  });
  const auto b = Listen("b");
  EXPECT_EQ(Fire(), (Log{"a", "b", "late"}));
}

TEST_F(EventTest, RemovingTheCurrentEntryStepsOverTheFollowingOne) {
  std::unique_ptr<Recorder> a;
  a = Listen("a", [&] { event.RemoveListener(a.get()); });
  const auto b = Listen("b"), c = Listen("c");
  EXPECT_EQ(Fire(), (Log{"a", "c"}));
  EXPECT_EQ(Fire(), (Log{"b", "c"}));
}

TEST_F(EventTest, RemovingAnEntryBeforeTheCurrentOneStepsOverTheFollowingOne) {
  const auto a = Listen("a");
  const auto b = Listen("b", [&] { event.RemoveListener(a.get()); });
  const auto c = Listen("c"), d = Listen("d");
  EXPECT_EQ(Fire(), (Log{"a", "b", "d"}));
}

TEST_F(EventTest, RemovingALaterEntryMakesTheWalkNotReachIt) {
  std::unique_ptr<Recorder> b;
  const auto a = Listen("a", [&] { event.RemoveListener(b.get()); });
  b = Listen("b");
  const auto c = Listen("c");
  EXPECT_EQ(Fire(), (Log{"a", "c"}));
}

TEST_F(EventTest, ListenerDestroyedBeforeAFiringIsntCalledAndItsEntryGoes) {
  const auto a = Listen("a");
  auto b = Listen("b");
  const auto c = Listen("c");
  b.reset();
  EXPECT_EQ(event.Count(), 3U) << "the event is not told";
  EXPECT_EQ(Fire(), (Log{"a", "c"}));
  EXPECT_EQ(event.Count(), 2U);
}

TEST_F(EventTest, ListenerDestroyedByAnEarlierOneOfTheFiringIsFoundDead) {
  std::unique_ptr<Recorder> b;
  const auto a = Listen("a", [&] { b.reset(); });
  b = Listen("b");
  const auto c = Listen("c");
  EXPECT_EQ(Fire(), (Log{"a", "c"}));
  EXPECT_EQ(event.Count(), 2U);
}

TEST_F(EventTest, SecondDeadEntryOfAFiringStrikesOnePlaceFurtherOn) {
  auto a = Listen("a"), b = Listen("b");
  const auto c = Listen("c"), d = Listen("d");
  a.reset();
  b.reset();
  EXPECT_EQ(Fire(), (Log{"c", "d"}));
  EXPECT_EQ(event.Count(), 2U) << "a went by its own index 0, then c by the index 1 that was found for b";
  EXPECT_EQ(Fire(), Log{"d"});
  EXPECT_EQ(event.Count(), 1U);
}

TEST_F(EventTest, DeadEntryWhoseIndexHasSlippedPastTheEndIsSkipped) {
  const auto a = Listen("a");
  auto b = Listen("b"), c = Listen("c");
  b.reset();
  c.reset();
  EXPECT_EQ(Fire(), Log{"a"});
  EXPECT_EQ(event.Count(), 2U) << "the index 2 was past the end by then";
  EXPECT_EQ(Fire(), Log{"a"});
  EXPECT_EQ(event.Count(), 1U);
}

TEST_F(EventTest, RemoveListenerIsExactForSeveralAtOnce) {
  const auto a = Listen("a"), b = Listen("b"), c = Listen("c"), d = Listen("d");
  event.RemoveListener(a.get());
  event.RemoveListener(b.get());
  EXPECT_EQ(Fire(), (Log{"c", "d"}));
}

TEST_F(EventTest, ExceptionOfAListenerEndsTheFiringAndKeepsTheDeadEntries) {
  auto dead = Listen("dead");
  bool failing = true;
  const auto a = Listen("a", [&] {
    if (failing)
      throw std::runtime_error("a");
  });
  const auto b = Listen("b");
  dead.reset();
  EXPECT_THROW(event.Fire(&call), std::runtime_error);
  EXPECT_EQ(log, Log{"a"});
  EXPECT_EQ(event.Count(), 3U);
  failing = false;
  EXPECT_EQ(Fire(), (Log{"a", "b"}));
  EXPECT_EQ(event.Count(), 2U);
}

TEST_F(EventTest, DestroyedListenerLeavesEveryEventItWasAddedTo) {
  CallEvent other(L"Other");
  auto a = Listen("a");
  other.AddListener(a.get());
  a.reset();
  EXPECT_EQ(Fire(), Log{});
  other.Fire(&call);
  EXPECT_EQ(log, Log{});
  EXPECT_EQ(event.Count() + other.Count(), 0U);
}

TEST_F(EventTest, ListenerOutlivesAnEventAndStillServesAnother) {
  auto a = Listen("a");
  {
    CallEvent gone(L"Gone");
    gone.AddListener(a.get());
    gone.RemoveListener(a.get());
    gone.AddListener(a.get());
  }
  EXPECT_EQ(Fire(), Log{"a"});
  a.reset(); // writes through the flags of entries that are gone
  EXPECT_EQ(Fire(), Log{});
  EXPECT_EQ(event.Count(), 0U);
}

class Owner {
public:
  void OnCall(Call *args) { numbers.push_back(args->number); }
  std::vector<int> numbers;
};

TEST(TypedEventListener, CallsTheHandlerOnTheOwnerWithTheArguments) {
  Owner owner;
  CallEvent event(L"Call");
  const auto listener = MakeListener(&owner, &Owner::OnCall);
  event.AddListener(listener.get());
  Call call{7};
  event.Fire(&call);
  EXPECT_EQ(owner.numbers, std::vector<int>{7});
}

TEST(TypedEventListener, DoesNothingWithoutOwnerOrHandler) {
  Owner owner;
  Call call{7};
  TypedEventListener<Owner, Call> ownerless(nullptr, &Owner::OnCall);
  TypedEventListener<Owner, Call> idle(&owner, nullptr);
  ownerless.Invoke(&call);
  idle.Invoke(&call);
  EXPECT_EQ(owner.numbers, std::vector<int>{});
}

class Padding {
public:
  virtual ~Padding() = default;
  long filler = 0;
};

class OwnerOfTwoBases : public Padding, public Owner {};

TEST(TypedEventListener, AdjustsTheObjectForAHandlerOfASecondBase) {
  OwnerOfTwoBases owner;
  const auto listener = MakeListener(&owner, &OwnerOfTwoBases::OnCall);
  Call call{9};
  listener->Invoke(&call);
  EXPECT_EQ(owner.numbers, std::vector<int>{9});
}

/// The pattern of the toolkit: the listener is a member and nothing unsubscribes.
class Watcher {
public:
  Watcher(CallEvent &event, int &calls) : calls(calls), listener(MakeListener(this, &Watcher::OnCall)) {
    event.AddListener(listener.get());
  }
  void OnCall(Call *) { ++calls; }

private:
  int &calls;
  std::shared_ptr<TypedEventListener<Watcher, Call>> listener;
};

/// Drops its own listener at the first call.
class OneTimer {
public:
  explicit OneTimer(CallEvent &event) : listener(MakeListener(this, &OneTimer::OnCall)) {
    event.AddListener(listener.get());
  }
  void OnCall(Call *) {
    ++calls;
    listener.reset();
  }

  int calls = 0;

private:
  std::shared_ptr<TypedEventListener<OneTimer, Call>> listener;
};

TEST(TypedEventListener, MayBeDroppedByItsOwnHandler) {
  CallEvent event(L"Call");
  OneTimer timer(event);
  Call call;
  event.Fire(&call);
  event.Fire(&call);
  EXPECT_EQ(timer.calls, 1);
  EXPECT_EQ(event.Count(), 0U);
}

// The rows of a list are made anew at each of its changes, for as long as the process runs.
TEST(TypedEventListener, HoldsNothingOfTheEventsThatAreGone) {
  Log log;
  Recorder listener(log, "a");
  const auto subscribeToManyThatGo = [&] {
    for (int i = 0; i < 1000; ++i) {
      CallEvent event(L"Gone");
      event.AddListener(&listener);
    }
  };
  subscribeToManyThatGo();
  const std::ptrdiff_t before = tests::LivingAllocations();
  subscribeToManyThatGo();
  EXPECT_GE(before, tests::LivingAllocations()) << "more than what was gone";
}

TEST(TypedEventListener, OwnerNeedsNoExplicitUnsubscribe) {
  CallEvent event(L"Call");
  int calls = 0;
  Call call;
  {
    const Watcher watcher(event, calls);
    event.Fire(&call);
  }
  event.Fire(&call);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(event.Count(), 0U);
}

/// Counts through a handler without arguments, which derived classes override.
class Counter {
public:
  explicit Counter(CallEvent &event) { subscriptions.Add(this, &Counter::OnCall, event); }
  virtual ~Counter() = default;

  int calls = 0;

protected:
  virtual void OnCall() { ++calls; }

  Subscriptions subscriptions;
};

class TenfoldCounter : public Counter {
public:
  TenfoldCounter(CallEvent &event, Event<int> &other) : Counter(event) {
    subscriptions.Add(this, &TenfoldCounter::OnCall, event, other);
  }

protected:
  void OnCall() override { calls += 10; }
};

TEST(Subscriptions, CallAHandlerWithoutArguments) {
  CallEvent event(L"Call");
  const Counter counter(event);
  Call call;
  event.Fire(&call);
  EXPECT_EQ(counter.calls, 1);
}

TEST(Subscriptions, CallTheOverrideOfTheHandlerAtEachOfTheEvents) {
  CallEvent event(L"Call");
  Event<int> other(L"Other");
  const TenfoldCounter counter(event, other);
  Call call;
  event.Fire(&call);
  EXPECT_EQ(counter.calls, 20);
  int number = 0;
  other.Fire(&number);
  EXPECT_EQ(counter.calls, 30);
}

TEST(Subscriptions, EndWithTheirHolder) {
  CallEvent event(L"Call");
  Owner owner;
  auto subscriptions = std::make_unique<Subscriptions>();
  subscriptions->Add(&owner, &Owner::OnCall, event);
  Call call{7};
  event.Fire(&call);
  subscriptions.reset();
  event.Fire(&call);
  EXPECT_EQ(owner.numbers, std::vector<int>{7});
  EXPECT_EQ(event.Count(), 0U);
}

} // namespace

} // namespace lumenor
