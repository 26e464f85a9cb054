// The timer on its thread: when it ticks, whom it calls, and when it stops.

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "support/MessagePump.h"
#include "wine/Animations.h"

namespace lumenor::services {

namespace {

using tests::PumpMessages;
using tests::PumpUntil;

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // the platform's interfaces have none

/// Listens to the timer and records its calls with their thread.
class Listener : public IUIAnimationTimerEventHandler {
public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void **) noexcept override { return E_NOINTERFACE; }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() noexcept override { return --references; }
  HRESULT STDMETHODCALLTYPE OnPreUpdate() noexcept override { return Note("pre"); }
  HRESULT STDMETHODCALLTYPE OnPostUpdate() noexcept override { return Note("post"); }
  HRESULT STDMETHODCALLTYPE OnRenderingTooSlow(UINT32) noexcept override { return Note("slow"); }

  ULONG references = 0;
  std::vector<std::string> calls;
  bool isOnOneThread = true;
  std::function<void()> onPost;

private:
  HRESULT Note(const char *call) {
    calls.emplace_back(call);
    isOnOneThread = isOnOneThread && ::GetCurrentThreadId() == thread;
    if (onPost && calls.back() == "post")
      onPost();
    return S_OK;
  }

  DWORD thread = ::GetCurrentThreadId();
};

#pragma GCC diagnostic pop

class AnimationTimerTest : public Animations {
protected:
  AnimationTimerTest() {
    EXPECT_EQ(manager.As(&updateHandler), S_OK);
    EXPECT_EQ(timer->SetTimerEventHandler(&listener), S_OK);
  }
  ~AnimationTimerTest() override { timer->SetTimerEventHandler(nullptr); }

  void Connect(UI_ANIMATION_IDLE_BEHAVIOR idleBehavior) {
    ASSERT_EQ(timer->SetTimerUpdateHandler(updateHandler.Get(), idleBehavior), S_OK);
  }

  double Now() {
    double now = 0;
    EXPECT_EQ(timer->GetTime(&now), S_OK);
    return now;
  }

  /// Runs a variable from 0 to 100 in so many seconds from now on.
  Ptr<IUIAnimationVariable> Run(double seconds) {
    const auto variable = Variable(0);
    EXPECT_EQ(manager->ScheduleTransition(variable.Get(), Linear(seconds, 100).Get(), Now()), S_OK);
    return variable;
  }

  bool IsIdle() { return timer->IsEnabled() == S_FALSE; }

  /// How many times the listener is called in a tenth of a second.
  std::size_t CallsInAWhile() {
    const std::size_t before = listener.calls.size();
    PumpUntil([] { return false; }, std::chrono::milliseconds(100));
    return listener.calls.size() - before;
  }

  Listener listener;
  Ptr<IUIAnimationTimer> timer = Create<IUIAnimationTimer>(CLSID_UIAnimationTimer);
  Ptr<IUIAnimationTimerUpdateHandler> updateHandler;
};

TEST_F(AnimationTimerTest, TicksOnlyWhileAStoryboardPlays) {
  Connect(UI_ANIMATION_IDLE_BEHAVIOR_DISABLE);
  EXPECT_TRUE(IsIdle());
  EXPECT_EQ(CallsInAWhile(), 0U);
  const auto variable = Run(0.2);
  EXPECT_EQ(timer->IsEnabled(), S_OK);
  ASSERT_TRUE(PumpUntil([this] { return IsIdle(); }));
  EXPECT_EQ(Value(variable), 100) << "the last tick brings the end";
  EXPECT_FALSE(listener.calls.empty());
  EXPECT_LE(listener.calls.size(), 60U);
  EXPECT_EQ(CallsInAWhile(), 0U);
  EXPECT_TRUE(listener.isOnOneThread);
}

// How many ticks a short storyboard gets depends on what else the machine does. This one lasts.
TEST_F(AnimationTimerTest, EachTickUpdatesBetweenItsTwoCalls) {
  Connect(UI_ANIMATION_IDLE_BEHAVIOR_DISABLE);
  const auto variable = Run(1000);
  std::vector<double> values;
  listener.onPost = [&] { values.push_back(Value(variable)); };
  ASSERT_TRUE(PumpUntil([&] { return values.size() >= 3; }));
  for (std::size_t i = 0; i < listener.calls.size(); ++i)
    EXPECT_EQ(listener.calls[i], i % 2 == 0 ? "pre" : "post");
  for (std::size_t i = 1; i < values.size(); ++i)
    EXPECT_GT(values[i], values[i - 1]);
  EXPECT_LT(values.back(), 100);
}

TEST_F(AnimationTimerTest, TheEndIsToldToo) {
  Connect(UI_ANIMATION_IDLE_BEHAVIOR_DISABLE);
  const auto variable = Run(0.1);
  double last = 0;
  listener.onPost = [&] { last = Value(variable); };
  ASSERT_TRUE(PumpUntil([this] { return IsIdle(); }));
  EXPECT_EQ(last, 100);
}

TEST_F(AnimationTimerTest, NoTickComesFromAnotherThread) {
  Connect(UI_ANIMATION_IDLE_BEHAVIOR_DISABLE);
  const auto variable = Run(0.05);
  ::Sleep(100); // without a message loop there may be no tick
  EXPECT_TRUE(listener.calls.empty());
  EXPECT_EQ(Value(variable), 0);
  ASSERT_TRUE(PumpUntil([this] { return IsIdle(); }));
  EXPECT_EQ(listener.calls, (std::vector<std::string>{"pre", "post"}));
}

TEST_F(AnimationTimerTest, GoesOnWhenItIsntToStopWhenIdle) {
  Connect(UI_ANIMATION_IDLE_BEHAVIOR_CONTINUE);
  const auto variable = Run(0.03);
  ASSERT_TRUE(PumpUntil([&] { return Value(variable) == 100; }));
  const std::size_t callsAtTheEnd = listener.calls.size();
  EXPECT_TRUE(PumpUntil([&] { return listener.calls.size() > callsAtTheEnd + 3; }));
  EXPECT_EQ(timer->IsEnabled(), S_OK);
  EXPECT_EQ(timer->Disable(), S_OK);
  EXPECT_TRUE(IsIdle());
  EXPECT_EQ(CallsInAWhile(), 0U);
}

TEST_F(AnimationTimerTest, TickUnderWayIsNoneOnceItIsDisabled) {
  EXPECT_EQ(timer->Enable(), S_OK);
  ASSERT_TRUE(PumpUntil([this] { return !listener.calls.empty(); })) << "it ticks without a client too";
  ::Sleep(30);
  MSG waiting{};
  ASSERT_TRUE(::PeekMessageW(&waiting, nullptr, WM_TIMER, WM_TIMER, PM_REMOVE));
  const std::size_t before = listener.calls.size();
  EXPECT_EQ(timer->Disable(), S_OK);
  ::DispatchMessageW(&waiting);
  EXPECT_EQ(listener.calls.size(), before);
}

TEST_F(AnimationTimerTest, OnlyItsOwnThreadStartsAndStopsIt) {
  HRESULT enabled = S_OK, disabled = S_OK;
  std::thread([&] {
    enabled = timer->Enable();
    disabled = timer->Disable();
  }).join();
  EXPECT_EQ(enabled, wrongThread);
  EXPECT_EQ(disabled, wrongThread);
  EXPECT_TRUE(IsIdle());
}

TEST_F(AnimationTimerTest, ClientHasOneTimer) {
  Connect(UI_ANIMATION_IDLE_BEHAVIOR_DISABLE);
  const auto second = Create<IUIAnimationTimer>(CLSID_UIAnimationTimer);
  EXPECT_EQ(second->SetTimerUpdateHandler(updateHandler.Get(), UI_ANIMATION_IDLE_BEHAVIOR_DISABLE),
            timerClientAlreadyConnected);
  EXPECT_EQ(timer->SetTimerUpdateHandler(nullptr, UI_ANIMATION_IDLE_BEHAVIOR_DISABLE), S_OK);
  EXPECT_EQ(second->SetTimerUpdateHandler(updateHandler.Get(), UI_ANIMATION_IDLE_BEHAVIOR_DISABLE), S_OK);
  Run(0.05);
  EXPECT_TRUE(IsIdle());
  EXPECT_EQ(second->IsEnabled(), S_OK);
}

TEST_F(AnimationTimerTest, ClientThatIsBusyAlreadyLetsItRun) {
  const auto variable = Run(0.1);
  EXPECT_TRUE(IsIdle());
  Connect(UI_ANIMATION_IDLE_BEHAVIOR_DISABLE);
  EXPECT_EQ(timer->IsEnabled(), S_OK);
  EXPECT_TRUE(PumpUntil([&] { return Value(variable) == 100; }));
}

TEST_F(AnimationTimerTest, ClientOutlivesIt) {
  Connect(UI_ANIMATION_IDLE_BEHAVIOR_DISABLE);
  timer->SetTimerEventHandler(nullptr);
  timer.Reset();
  timer = Create<IUIAnimationTimer>(CLSID_UIAnimationTimer);
  const auto variable = Run(0.01);
  EXPECT_EQ(At(Now() + 1, variable), 100);
}

TEST_F(AnimationTimerTest, ShutDownClientStopsIt) {
  Connect(UI_ANIMATION_IDLE_BEHAVIOR_DISABLE);
  Run(10);
  EXPECT_EQ(timer->IsEnabled(), S_OK);
  EXPECT_EQ(manager->Shutdown(), S_OK);
  EXPECT_TRUE(IsIdle());
}

TEST_F(AnimationTimerTest, ListenerMayTakeItselfOffWhileItIsCalled) {
  Connect(UI_ANIMATION_IDLE_BEHAVIOR_DISABLE);
  Run(0.1);
  listener.onPost = [this] { EXPECT_EQ(timer->SetTimerEventHandler(nullptr), S_OK); };
  ASSERT_TRUE(PumpUntil([this] { return IsIdle(); }));
  EXPECT_EQ(listener.calls, (std::vector<std::string>{"pre", "post"}));
  EXPECT_EQ(listener.references, 0U);
}

TEST_F(AnimationTimerTest, TimeIsInSecondsAndGoesOn) {
  const double start = Now();
  ::Sleep(50);
  const double passed = Now() - start;
  EXPECT_GE(passed, 0.045);
  EXPECT_LT(passed, 5);
  EXPECT_EQ(timer->GetTime(nullptr), E_POINTER);
  EXPECT_EQ(timer->SetFrameRateThreshold(10), E_NOTIMPL);
}

} // namespace

} // namespace lumenor::services
