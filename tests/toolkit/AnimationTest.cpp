// Animations on the platform's services, as they are registered in this prefix.

#include "toolkit/Animation.h"

#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/ComApartment.h"
#include "support/FailingClass.h"
#include "support/MessagePump.h"
#include "support/OperationSpy.h"
#include "system/HResultError.h"
#include "system/WindowException.h"
#include "toolkit/AnimationServices.h"

namespace lumenor {

namespace {

using Microsoft::WRL::ComPtr;
using tests::FailingClass;
using tests::OperationSpy;
using tests::PumpUntil;

/// A property with a listener that writes its new values down.
template <typename T> class WatchedProperty {
public:
  explicit WatchedProperty(T initial) : property(initial) { property.changed.AddListener(listener.get()); }

  void OnChange(PropertyChangeEventArgs<T> *args) {
    EXPECT_EQ(args->source, &property);
    EXPECT_NE(args->oldValue, args->newValue);
    values.push_back(args->newValue);
  }

  Property<T> property;
  std::vector<T> values;

private:
  std::shared_ptr<EventListener<PropertyChangeEventArgs<T>>> listener = MakeListener(this, &WatchedProperty::OnChange);
};

/// Counts its ticks.
class CountedAnimation : public LongAnimation {
public:
  void Update() override {
    ++ticks;
    LongAnimation::Update();
  }
  int ticks = 0;
};

class AnimationTest : public ::testing::Test {
protected:
  ~AnimationTest() override {
    ForgetWindowException();
    ShutDownAnimationServices();
  }

  template <typename T> static void Prepare(Animation<T> &animation, float from, float to, Property<T> *target) {
    animation.From.Set(from);
    animation.To.Set(to);
    animation.Duration.Set(0.1F);
    animation.AccelerationRatio.Set(0.05F);
    animation.DecelerationRatio.Set(0.75F);
    animation.Target.Set(target);
  }

  static bool IsIdle() { return GetAnimationServices().Timer()->IsEnabled() == S_FALSE; }
  static bool PumpUntilIdle() { return PumpUntil(IsIdle); }

  const tests::ComApartment com;
};

TEST_F(AnimationTest, BeginsWithNothingToDo) {
  const ByteAnimation animation;
  EXPECT_EQ(animation.From.Get(), 0.0F);
  EXPECT_EQ(animation.To.Get(), 0.0F);
  EXPECT_EQ(animation.Delay.Get(), 0.0F);
  EXPECT_EQ(animation.Duration.Get(), 0.0F);
  EXPECT_EQ(animation.AccelerationRatio.Get(), 0.0F);
  EXPECT_EQ(animation.DecelerationRatio.Get(), 0.0F);
  EXPECT_EQ(animation.Target.Get(), nullptr);
}

TEST_F(AnimationTest, BringsAnOpacityToItsEnd) {
  WatchedProperty<unsigned char> opacity(190);
  ByteAnimation animation;
  Prepare(animation, 190, 255, &opacity.property);
  animation.Start();
  EXPECT_EQ(opacity.property.Get(), 190) << "until the first tick";
  ASSERT_TRUE(PumpUntilIdle());
  ASSERT_FALSE(opacity.values.empty());
  for (std::size_t i = 1; i < opacity.values.size(); ++i)
    EXPECT_GT(opacity.values[i], opacity.values[i - 1]);
  EXPECT_EQ(opacity.values.back(), 255);
}

TEST_F(AnimationTest, BringsAPlaceToItsEnd) {
  WatchedProperty<long> left(-20);
  LongAnimation animation;
  Prepare(animation, -20, -170, &left.property);
  animation.Start();
  ASSERT_TRUE(PumpUntilIdle());
  ASSERT_FALSE(left.values.empty());
  EXPECT_LT(left.values.front(), -20);
  EXPECT_EQ(left.values.back(), -170);
}

// How many ticks a movement of a tenth of a second gets depends on what else the machine does. This one lasts.
TEST_F(AnimationTest, MovesAtEachTick) {
  WatchedProperty<long> left(0);
  LongAnimation animation;
  Prepare(animation, 0, 1e6F, &left.property);
  animation.Duration.Set(1000.0F);
  animation.Start();
  EXPECT_TRUE(PumpUntil([&] { return left.values.size() >= 3; }));
  EXPECT_LT(left.property.Get(), 1'000'000);
}

TEST_F(AnimationTest, SpeedsUpAndSlowsDownByItsShares) {
  // Its value in the middle of the movement tells the two shares apart.
  const auto middleOf = [](float acceleration, float deceleration) {
    Property<long> left(0);
    LongAnimation animation;
    Prepare(animation, 0, 1000, &left);
    animation.AccelerationRatio.Set(acceleration);
    animation.DecelerationRatio.Set(deceleration);
    animation.Duration.Set(1000.0F);
    double now = 0;
    GetAnimationServices().Timer()->GetTime(&now);
    animation.Start();
    GetAnimationServices().Manager()->Update(now + 500, nullptr);
    animation.Update();
    ShutDownAnimationServices();
    return left.Get();
  };
  EXPECT_NEAR(static_cast<double>(middleOf(0.05F, 0.75F)), 722, 2);
  EXPECT_NEAR(static_cast<double>(middleOf(0.75F, 0.05F)), 278, 2);
}

TEST_F(AnimationTest, HoldsForItsDelayBeforeItMoves) {
  Property<long> left(0);
  LongAnimation animation;
  Prepare(animation, 0, 1000, &left);
  animation.Delay.Set(50.0F);
  animation.Duration.Set(10.0F);
  double now = 0;
  GetAnimationServices().Timer()->GetTime(&now);
  animation.Start();
  const auto at = [&](double seconds) {
    GetAnimationServices().Manager()->Update(now + seconds, nullptr);
    animation.Update();
    return left.Get();
  };
  EXPECT_EQ(at(49.9), 0);
  EXPECT_GT(at(55), 100);
  EXPECT_LT(left.Get(), 1000);
  EXPECT_EQ(at(61), 1000);
}

TEST_F(AnimationTest, WithEqualEndsNothingIsScheduled) {
  const FailingClass noManager(CLSID_UIAnimationManager, E_FAIL);
  WatchedProperty<long> left(7);
  LongAnimation animation;
  Prepare(animation, 100, 100, &left.property);
  animation.Start();
  EXPECT_EQ(noManager.Creations(), 0);
  EXPECT_EQ(left.property.Get(), 7);
}

TEST_F(AnimationTest, WithoutTargetNothingHappens) {
  const FailingClass noManager(CLSID_UIAnimationManager, E_FAIL);
  LongAnimation animation;
  Prepare<long>(animation, 0, 100, nullptr);
  animation.Start();
  EXPECT_EQ(noManager.Creations(), 0);
  animation.Update();
}

TEST_F(AnimationTest, NoNumberDiffersFromItself) {
  Property<long> left(0);
  LongAnimation animation;
  const float nan = std::numeric_limits<float>::quiet_NaN();
  Prepare(animation, nan, nan, &left);
  EXPECT_THROW(animation.Start(), HResultError) << "it goes on to the platform, which refuses it";
}

TEST_F(AnimationTest, RefusedSharesAreRaised) {
  Property<long> left(0);
  LongAnimation animation;
  Prepare(animation, 0, 100, &left);
  animation.AccelerationRatio.Set(0.9F);
  try {
    animation.Start();
    FAIL() << "raised nothing";
  } catch (const HResultError &error) {
    EXPECT_EQ(error.Result(), E_INVALIDARG);
  }
  EXPECT_TRUE(IsIdle());
}

TEST_F(AnimationTest, MissingServiceIsRaisedAndTriedAgain) {
  WatchedProperty<long> left(0);
  LongAnimation animation;
  Prepare(animation, 0, 100, &left.property);
  const CLSID classes[] = {CLSID_UIAnimationManager, CLSID_UIAnimationTransitionLibrary, CLSID_UIAnimationTimer};
  for (const CLSID &id : classes) {
    const FailingClass failing(id, CO_E_SERVER_EXEC_FAILURE);
    try {
      animation.Start();
      ADD_FAILURE() << "raised nothing";
    } catch (const HResultError &error) {
      EXPECT_EQ(error.Result(), CO_E_SERVER_EXEC_FAILURE);
    }
    EXPECT_EQ(failing.Creations(), 1);
  }
  EXPECT_TRUE(left.values.empty());
  animation.Start();
  ASSERT_TRUE(PumpUntilIdle());
  EXPECT_EQ(left.property.Get(), 100);
}

TEST_F(AnimationTest, ByteTakesTheLowEightBits) {
  Property<unsigned char> opacity(0);
  ByteAnimation animation;
  Prepare(animation, 256, 310, &opacity);
  animation.Start();
  ASSERT_TRUE(PumpUntilIdle());
  EXPECT_EQ(opacity.Get(), 54);
}

TEST_F(AnimationTest, TickWithTheValueThatIsThereFiresNothing) {
  WatchedProperty<long> left(10);
  CountedAnimation animation;
  Prepare(animation, 10, 10.4F, &left.property);
  animation.Start();
  ASSERT_TRUE(PumpUntilIdle());
  EXPECT_GE(animation.ticks, 1); // a busy machine may leave out the others
  EXPECT_TRUE(left.values.empty());
}

TEST_F(AnimationTest, SecondStartGoesOnWithItsOwnEnds) {
  WatchedProperty<long> left(0);
  CountedAnimation animation;
  Prepare(animation, 0, 10000, &left.property);
  animation.Duration.Set(60.0F);
  animation.Start();
  ASSERT_TRUE(PumpUntil([&] { return left.property.Get() > 0; }));
  Prepare(animation, -500, -600, &left.property);
  left.values.clear();
  animation.Start();
  ASSERT_TRUE(PumpUntil([&] { return left.property.Get() == -600; }));
  for (const long value : left.values)
    EXPECT_TRUE(value <= -500 && value >= -600) << value;
  EXPECT_FALSE(IsIdle()) << "the first storyboard plays on, unheard";
  const int ticks = animation.ticks;
  ASSERT_TRUE(PumpUntil([&] { return animation.ticks > ticks + 3; }));
  EXPECT_EQ(left.property.Get(), -600);
}

TEST_F(AnimationTest, OnlyTheOneThatStartedLastIsCalled) {
  WatchedProperty<long> earlierLeft(0), laterLeft(0);
  LongAnimation earlier, later;
  Prepare(earlier, 0, 10000, &earlierLeft.property);
  Prepare(later, 0, 100, &laterLeft.property);
  earlier.Duration.Set(0.5F);
  earlier.Start();
  ASSERT_TRUE(PumpUntil([&] { return earlierLeft.property.Get() > 0; }));
  later.Start();
  const long frozen = earlierLeft.property.Get();
  ASSERT_TRUE(PumpUntilIdle());
  EXPECT_EQ(laterLeft.property.Get(), 100);
  EXPECT_EQ(earlierLeft.property.Get(), frozen);
}

TEST_F(AnimationTest, DestroyedOneIsntCalledAnyMore) {
  WatchedProperty<long> left(0);
  std::optional<CountedAnimation> animation(std::in_place);
  Prepare(*animation, 0, 10000, &left.property);
  animation->Duration.Set(0.3F);
  animation->Start();
  ASSERT_TRUE(PumpUntil([&] { return left.property.Get() > 0; }));
  animation.emplace(); // in the same place, where a call for the former one would find it
  const std::size_t changes = left.values.size();
  ASSERT_TRUE(PumpUntilIdle()) << "its storyboard plays to the end";
  EXPECT_EQ(left.values.size(), changes);
  EXPECT_EQ(animation->ticks, 0);
}

TEST_F(AnimationTest, TargetMayBeTakenAwayWhileItPlays) {
  WatchedProperty<long> left(0);
  CountedAnimation animation;
  Prepare(animation, 0, 10000, &left.property);
  animation.Start();
  ASSERT_TRUE(PumpUntil([&] { return left.property.Get() > 0; }));
  animation.Target.Set(nullptr);
  const std::size_t changes = left.values.size();
  ASSERT_TRUE(PumpUntilIdle());
  EXPECT_EQ(left.values.size(), changes);
}

class ThrowingListener : public EventListener<PropertyChangeEventArgs<long>> {
public:
  void Invoke(PropertyChangeEventArgs<long> *) override { throw std::runtime_error("listener"); }
};

TEST_F(AnimationTest, WhatAListenerRaisesReachesTheMessageLoop) {
  Property<long> left(0);
  ThrowingListener listener;
  left.changed.AddListener(&listener);
  LongAnimation animation;
  Prepare(animation, 0, 100, &left);
  animation.Start();
  EXPECT_THROW(PumpUntil([] { return false; }), std::runtime_error);
}

/// The order of the calls that a start makes of the services.
std::vector<std::string> calls;

struct Former {
  HRESULT(STDMETHODCALLTYPE *createVariable)(IUIAnimationManager *, double, IUIAnimationVariable **);
  HRESULT(STDMETHODCALLTYPE *createStoryboard)(IUIAnimationManager *, IUIAnimationStoryboard **);
  HRESULT(STDMETHODCALLTYPE *createConstant)(IUIAnimationTransitionLibrary *, double, IUIAnimationTransition **);
  HRESULT(STDMETHODCALLTYPE *createMove)
  (IUIAnimationTransitionLibrary *, double, double, double, double, IUIAnimationTransition **);
  HRESULT(STDMETHODCALLTYPE *setEventHandler)(IUIAnimationTimer *, IUIAnimationTimerEventHandler *);
  HRESULT(STDMETHODCALLTYPE *getTime)(IUIAnimationTimer *, double *);
} former;

std::string Number(double number) { return " " + std::to_string(number).substr(0, 6); }

HRESULT STDMETHODCALLTYPE SpyVariable(IUIAnimationManager *self, double value, IUIAnimationVariable **result) {
  calls.push_back("variable" + Number(value));
  return former.createVariable(self, value, result);
}

HRESULT STDMETHODCALLTYPE SpyStoryboard(IUIAnimationManager *self, IUIAnimationStoryboard **result) {
  calls.emplace_back("storyboard");
  return former.createStoryboard(self, result);
}

HRESULT STDMETHODCALLTYPE SpyConstant(IUIAnimationTransitionLibrary *self, double duration,
                                      IUIAnimationTransition **result) {
  calls.push_back("hold" + Number(duration));
  return former.createConstant(self, duration, result);
}

HRESULT STDMETHODCALLTYPE SpyMove(IUIAnimationTransitionLibrary *self, double duration, double end, double acceleration,
                                  double deceleration, IUIAnimationTransition **result) {
  calls.push_back("move" + Number(duration) + Number(end) + Number(acceleration) + Number(deceleration));
  return former.createMove(self, duration, end, acceleration, deceleration, result);
}

HRESULT STDMETHODCALLTYPE SpyHandler(IUIAnimationTimer *self, IUIAnimationTimerEventHandler *handler) {
  calls.emplace_back("handler");
  return former.setEventHandler(self, handler);
}

HRESULT STDMETHODCALLTYPE SpyTime(IUIAnimationTimer *self, double *seconds) {
  calls.emplace_back("time");
  return former.getTime(self, seconds);
}

TEST_F(AnimationTest, StartAsksTheServicesInOrder) {
  const AnimationServices &services = GetAnimationServices();
  OperationSpy manager(services.Manager().Get()), library(services.TransitionLibrary().Get()),
      timer(services.Timer().Get());
  former.createVariable = manager.Exchange(3, &SpyVariable);
  former.createStoryboard = manager.Exchange(5, &SpyStoryboard);
  former.createConstant = library.Exchange(4, &SpyConstant);
  former.createMove = library.Exchange(10, &SpyMove);
  former.setEventHandler = timer.Exchange(4, &SpyHandler);
  former.getTime = timer.Exchange(8, &SpyTime);
  Property<long> left(0);
  LongAnimation animation;
  Prepare(animation, 1, 2, &left);
  animation.Duration.Set(0.25F);
  animation.AccelerationRatio.Set(0.125F);
  calls.clear();
  animation.Start();
  EXPECT_EQ(calls, (std::vector<std::string>{"storyboard", "variable 1.0000", "move 0.2500 2.0000 0.1250 0.7500",
                                             "time", "handler"}));
  calls.clear();
  animation.Delay.Set(0.5F);
  animation.Start();
  EXPECT_EQ(calls, (std::vector<std::string>{"storyboard", "variable 1.0000", "hold 0.5000",
                                             "move 0.2500 2.0000 0.1250 0.7500", "time", "handler"}));
}

// What the timer calls.

TEST(TimerEventHandler, CountsItsReferences) {
  LongAnimation animation;
  const auto alive = std::make_shared<unsigned char>(static_cast<unsigned char>(1));
  auto *handler = new TimerEventHandler<long>(&animation, alive);
  EXPECT_EQ(alive.use_count(), 2);
  EXPECT_EQ(handler->AddRef(), 1U);
  ComPtr<IUIAnimationTimerEventHandler> known;
  ComPtr<IUnknown> unknown;
  EXPECT_EQ(handler->QueryInterface(IID_PPV_ARGS(&known)), S_OK);
  EXPECT_EQ(handler->QueryInterface(IID_PPV_ARGS(&unknown)), S_OK);
  EXPECT_EQ(known.Get(), handler);
  void *other = handler;
  EXPECT_EQ(handler->QueryInterface(__uuidof(IUIAnimationTimer), &other), E_NOINTERFACE);
  EXPECT_EQ(other, nullptr);
  EXPECT_EQ(handler->QueryInterface(__uuidof(IUnknown), nullptr), E_POINTER);
  known.Reset();
  unknown.Reset();
  EXPECT_EQ(handler->AddRef(), 2U);
  EXPECT_EQ(handler->Release(), 1U);
  EXPECT_EQ(handler->Release(), 0U);
  EXPECT_EQ(alive.use_count(), 1) << "it is gone";
}

TEST(TimerEventHandler, UpdatesAfterATickOnly) {
  CountedAnimation animation;
  const auto alive = std::make_shared<unsigned char>(static_cast<unsigned char>(1));
  const ComPtr<IUIAnimationTimerEventHandler> handler(new TimerEventHandler<long>(&animation, alive));
  EXPECT_EQ(handler->OnPreUpdate(), S_OK);
  EXPECT_EQ(handler->OnRenderingTooSlow(5), S_OK);
  EXPECT_EQ(animation.ticks, 0);
  EXPECT_EQ(handler->OnPostUpdate(), S_OK);
  EXPECT_EQ(animation.ticks, 1);
  *alive = 0;
  EXPECT_EQ(handler->OnPostUpdate(), S_OK);
  EXPECT_EQ(animation.ticks, 1);
}

// The services themselves.

using AnimationServicesTest = AnimationTest;

TEST_F(AnimationServicesTest, AreMadeOnce) {
  const AnimationServices &services = GetAnimationServices();
  const auto manager = services.Manager();
  const auto library = services.TransitionLibrary();
  const auto timer = services.Timer();
  EXPECT_EQ(&GetAnimationServices(), &services);
  EXPECT_EQ(GetAnimationServices().Manager().Get(), manager.Get());
  EXPECT_EQ(GetAnimationServices().TransitionLibrary().Get(), library.Get());
  EXPECT_EQ(GetAnimationServices().Timer().Get(), timer.Get());
  EXPECT_EQ(timer->IsEnabled(), S_FALSE) << "nothing plays";
}

ULONG(STDMETHODCALLTYPE *releaseManager)(IUnknown *) = nullptr;
ULONG(STDMETHODCALLTYPE *releaseLibrary)(IUnknown *) = nullptr;
ULONG(STDMETHODCALLTYPE *releaseTimer)(IUnknown *) = nullptr;
HRESULT(STDMETHODCALLTYPE *shutDownManager)(IUnknown *) = nullptr;

ULONG STDMETHODCALLTYPE SpyReleaseManager(IUnknown *self) {
  calls.emplace_back("manager");
  return releaseManager(self);
}

ULONG STDMETHODCALLTYPE SpyReleaseLibrary(IUnknown *self) {
  calls.emplace_back("library");
  return releaseLibrary(self);
}

ULONG STDMETHODCALLTYPE SpyReleaseTimer(IUnknown *self) {
  calls.emplace_back("timer");
  return releaseTimer(self);
}

HRESULT STDMETHODCALLTYPE SpyShutDown(IUnknown *self) {
  calls.emplace_back("shut down");
  return shutDownManager(self);
}

TEST_F(AnimationServicesTest, GoManagerFirst) {
  OperationSpy manager(GetAnimationServices().Manager().Get()),
      library(GetAnimationServices().TransitionLibrary().Get()), timer(GetAnimationServices().Timer().Get());
  releaseManager = manager.Exchange(2, &SpyReleaseManager);
  releaseLibrary = library.Exchange(2, &SpyReleaseLibrary);
  releaseTimer = timer.Exchange(2, &SpyReleaseTimer);
  shutDownManager = manager.Exchange(21, &SpyShutDown);
  calls.clear();
  ShutDownAnimationServices();
  EXPECT_EQ(calls, (std::vector<std::string>{"shut down", "manager", "timer", "library"}));
}

TEST_F(AnimationServicesTest, ShutDownEndsWhatPlays) {
  Property<long> left(0);
  LongAnimation animation;
  Prepare(animation, 0, 10000, &left);
  animation.Start();
  const auto timer = GetAnimationServices().Timer();
  ASSERT_TRUE(PumpUntil([&] { return left.Get() > 0; }));
  ShutDownAnimationServices();
  EXPECT_EQ(timer->IsEnabled(), S_FALSE);
  const long last = left.Get();
  PumpUntil([] { return false; }, std::chrono::milliseconds(50));
  EXPECT_EQ(left.Get(), last);
}

TEST_F(AnimationServicesTest, UnusedOnesAreMadeForTheShutDown) {
  const FailingClass noManager(CLSID_UIAnimationManager, E_FAIL);
  ShutDownAnimationServices();
  EXPECT_EQ(noManager.Creations(), 1) << "and a machine without them is passed over";
}

TEST_F(AnimationServicesTest, AreMadeAnewAfterAShutDown) {
  const auto before = GetAnimationServices().Manager();
  ShutDownAnimationServices();
  EXPECT_NE(GetAnimationServices().Manager().Get(), before.Get());
  EXPECT_NE(GetAnimationServices().TransitionLibrary().Get(), nullptr);
  EXPECT_NE(GetAnimationServices().Timer().Get(), nullptr);
}

} // namespace

} // namespace lumenor
