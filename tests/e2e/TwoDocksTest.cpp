// Two docks at the same time: started in one instant, or one while the other closes. LUMENOR_PAIRS sets how many pairs.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/HeldProcess.h"
#include "e2e/OtherWindow.h"
#include "e2e/Screen.h"

namespace lumenor::e2e {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

constexpr int usualPairs = 5;
constexpr wchar_t activateMessage[] = L"TWDOCK_11D3CB1E-8DE1-4105-9277-8BF483A1E841";
constexpr RECT elsewhere = {400, 400, 800, 700};

int Pairs() {
  const char *const number = std::getenv("LUMENOR_PAIRS");
  return number == nullptr ? usualPairs : std::atoi(number);
}

class TwoDocks : public ::testing::Test {
protected:
  TwoDocks() {
    installation.WriteUsualStubs();
    std::printf("seed %u, %d pairs\n", seed, Pairs());
  }

  std::string UserDocument() const { return ReadBytes(installation.DocumentPath(userDocument)); }

  void ForgetUserDocument() const { ::DeleteFileW(installation.DocumentPath(userDocument).c_str()); }

  /// The two buttons of the stubs, as a close saves them.
  void ExpectSavedButtons() const {
    EXPECT_EQ(1, CountOf(UserDocument(), "<Head>User 0</Head>"));
    EXPECT_EQ(1, CountOf(UserDocument(), "<Head>User 1</Head>"));
    EXPECT_EQ(2, CountOf(UserDocument(), "<ActionParamsBackup"));
  }

  /// Suspends a dock that has just been started, ahead of all that it does.
  static std::unique_ptr<HeldProcess> Hold(const DockProcess &dock) { return std::make_unique<HeldProcess>(dock.Id()); }

  static bool HasItsBar(const DockProcess &dock) {
    return WaitFor([&] { return dock.Bar() != nullptr || !dock.IsRunning(); }) && dock.Bar() != nullptr;
  }

  static void StartClose(const DockProcess &dock) { ASSERT_TRUE(::PostMessageW(dock.Bar(), WM_CLOSE, 0, 0)); }

  static void Close(const DockProcess &dock) {
    StartClose(dock);
    EXPECT_EQ(0U, dock.WaitForExit());
  }

  static void ShowProgress() {
    std::printf("."); // in-wine ends a program that prints nothing
    std::fflush(stdout);
  }

  const Installation installation;
  const unsigned seed = std::random_device{}();
  std::mt19937 random{seed};
};

// The two starts.

class TwoDocksAtOnce : public TwoDocks {
protected:
  void RunAPair() {
    ForgetUserDocument(); // each that goes on would build it
    const DockProcess one(installation);
    auto heldOne = Hold(one);
    const DockProcess another(installation);
    auto heldAnother = Hold(another);
    heldOne.reset();
    heldAnother.reset();
    ASSERT_TRUE(WaitFor([&] { return !one.IsRunning() || !another.IsRunning(); })) << "both stay";
    const DockProcess &ended = one.IsRunning() ? another : one, &stays = one.IsRunning() ? one : another;
    EXPECT_EQ(0U, ended.WaitForExit());
    ASSERT_TRUE(HasItsBar(stays)) << "neither stays";
    Close(stays);
    ExpectSavedButtons();
  }
};

// One that comes later calls the other to the front; one that loses the race for the event says nothing.
TEST_F(TwoDocksAtOnce, OneStaysAndTheOtherEndsWithZero) {
  const OtherWindow listener(elsewhere, ::RegisterWindowMessageW(activateMessage));
  for (int pair = 0; pair < Pairs() && !HasFailure(); ++pair) {
    RunAPair();
    ShowProgress();
  }
  std::printf("\n%d of the docks that ended called the other one\n", listener.Count());
}

// A start while the former dock is on its way out.

class StartWhileClosing : public TwoDocks {
protected:
  /// Suspends the dock between the end of its bar and that of its process; null when it was too late.
  static std::unique_ptr<HeldProcess> HoldWithoutBar(const DockProcess &dock) {
    while (dock.Bar() != nullptr)
      ::SwitchToThread();
    auto held = Hold(dock);
    return dock.IsRunning() ? std::move(held) : nullptr;
  }

  microseconds DurationOfAClose() const {
    const DockProcess dock(installation);
    EXPECT_TRUE(HasItsBar(dock));
    const auto start = Clock::now();
    Close(dock);
    return std::chrono::duration_cast<microseconds>(Clock::now() - start);
  }

  /// Starts a dock at a random instant of the former one's close; whether it stayed.
  bool StaysWhenStartedIn(microseconds close) {
    ForgetUserDocument();
    const DockProcess former(installation);
    EXPECT_TRUE(HasItsBar(former));
    const DockProcess next(installation);
    auto heldNext = Hold(next);
    const auto start = Clock::now();
    StartClose(former);
    const microseconds instant(std::uniform_int_distribution<long long>(0, close.count())(random));
    while (Clock::now() - start < instant)
      ::SwitchToThread();
    heldNext.reset();
    EXPECT_EQ(0U, former.WaitForExit());
    if (!HasItsBar(next)) {
      EXPECT_EQ(0U, next.WaitForExit());
      return false;
    }
    Close(next);
    return true;
  }
};

TEST_F(StartWhileClosing, EndsWithZeroForAsLongAsTheFormerOneIsThere) {
  bool wasInTime = false;
  for (int round = 0; round < 10 && !wasInTime; ++round) {
    ForgetUserDocument();
    const DockProcess former(installation);
    ASSERT_TRUE(HasItsBar(former));
    StartClose(former);
    if (const auto held = HoldWithoutBar(former); held != nullptr) {
      wasInTime = true;
      const DockProcess next(installation);
      EXPECT_EQ(0U, next.WaitForExit());
      EXPECT_TRUE(former.IsRunning());
    }
    EXPECT_EQ(0U, former.WaitForExit());
    ExpectSavedButtons();
  }
  EXPECT_TRUE(wasInTime) << "no close was caught";
  ShownDock dock(installation);
  EXPECT_NE(nullptr, dock.Control(2001));
}

TEST_F(StartWhileClosing, AtAnyInstantStaysOrEndsWithZeroAndAllIsSaved) {
  const microseconds close = DurationOfAClose();
  int stayed = 0;
  for (int pair = 0; pair < Pairs() && !HasFailure(); ++pair) {
    stayed += StaysWhenStartedIn(close);
    ExpectSavedButtons();
    ShowProgress();
  }
  std::printf("\n%d of the docks that were started in a close of %lld ms have stayed\n", stayed,
              static_cast<long long>(close.count() / 1000));
}

} // namespace
} // namespace lumenor::e2e
