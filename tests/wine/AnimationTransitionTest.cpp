// The shapes of the transitions, and the numbers that make none.

#include <limits>

#include "wine/Animations.h"

namespace lumenor::services {

namespace {

constexpr double tolerance = 1e-9;

class AnimationTransitionTest : public Animations {
protected:
  Ptr<IUIAnimationTransition> SpeedUpAndDown(double duration, double finalValue, double acceleration,
                                             double deceleration) {
    Ptr<IUIAnimationTransition> transition;
    EXPECT_EQ(
        library->CreateAccelerateDecelerateTransition(duration, finalValue, acceleration, deceleration, &transition),
        S_OK);
    return transition;
  }
};

TEST_F(AnimationTransitionTest, AccelerateDecelerateFollowsItsClosedForm) {
  // The top speed is 100 / (1 - 0.1 - 0.2) a second.
  const auto variable = Play(0, SpeedUpAndDown(1, 100, 0.2, 0.4));
  EXPECT_NEAR(At(0, variable), 0, tolerance);
  EXPECT_NEAR(At(0.1, variable), 25.0 / 7, tolerance);
  EXPECT_NEAR(At(0.2, variable), 100.0 / 7, tolerance);
  EXPECT_NEAR(At(0.5, variable), 400.0 / 7, tolerance);
  EXPECT_NEAR(At(0.6, variable), 500.0 / 7, tolerance);
  EXPECT_NEAR(At(0.8, variable), 650.0 / 7, tolerance);
  EXPECT_NEAR(At(1, variable), 100, tolerance);
}

TEST_F(AnimationTransitionTest, AccelerateDecelerateRunsDownwardsAsWell) {
  const auto variable = Play(255, SpeedUpAndDown(2, 190, 0.5, 0.5));
  EXPECT_NEAR(At(0.5, variable), 246.875, tolerance);
  EXPECT_NEAR(At(1, variable), 222.5, tolerance);
  EXPECT_NEAR(At(1.5, variable), 198.125, tolerance);
}

TEST_F(AnimationTransitionTest, WithoutSharesTheSpeedIsTheSameAllTheTime) {
  const auto variable = Play(10, SpeedUpAndDown(4, 30, 0, 0));
  EXPECT_NEAR(At(1, variable), 15, tolerance);
  EXPECT_NEAR(At(3, variable), 25, tolerance);
}

TEST_F(AnimationTransitionTest, EndValueIsReachedExactly) {
  const auto atItsTime = Play(0.1, SpeedUpAndDown(0.3, 0.7, 0.05, 0.75));
  EXPECT_EQ(At(0.3, atItsTime), 0.7);
  manager.Reset();
  manager = Create<IUIAnimationManager>(CLSID_UIAnimationManager);
  const auto late = Play(0.1, SpeedUpAndDown(0.3, 0.7, 0.05, 0.75));
  EXPECT_EQ(At(17, late), 0.7);
}

TEST_F(AnimationTransitionTest, WithoutDurationTheEndValueComesAtOnce) {
  EXPECT_EQ(At(0, Play(3, SpeedUpAndDown(0, 8, 0.5, 0.5))), 8);
}

TEST_F(AnimationTransitionTest, ConstantHolds) {
  Ptr<IUIAnimationTransition> hold;
  ASSERT_EQ(library->CreateConstantTransition(2, &hold), S_OK);
  const auto variable = Play(41.5, hold);
  EXPECT_EQ(At(1, variable), 41.5);
  EXPECT_EQ(ManagerStatus(), UI_ANIMATION_MANAGER_BUSY);
  EXPECT_EQ(At(2, variable), 41.5);
  EXPECT_EQ(ManagerStatus(), UI_ANIMATION_MANAGER_IDLE);
}

TEST_F(AnimationTransitionTest, LinearRunsStraight) {
  const auto variable = Play(10, Linear(4, -10));
  EXPECT_NEAR(At(1, variable), 5, tolerance);
  EXPECT_NEAR(At(3, variable), -5, tolerance);
  EXPECT_EQ(At(4, variable), -10);
}

TEST_F(AnimationTransitionTest, InstantaneousJumps) {
  Ptr<IUIAnimationTransition> jump;
  ASSERT_EQ(library->CreateInstantaneousTransition(9, &jump), S_OK);
  EXPECT_EQ(At(0, Play(1, jump)), 9);
}

TEST_F(AnimationTransitionTest, DiscreteWaitsJumpsAndHolds) {
  Ptr<IUIAnimationTransition> step;
  ASSERT_EQ(library->CreateDiscreteTransition(1, 9, 2, &step), S_OK);
  const auto variable = Play(4, step);
  EXPECT_EQ(At(0.9, variable), 4);
  EXPECT_EQ(At(1, variable), 9);
  EXPECT_EQ(At(2.9, variable), 9);
  EXPECT_EQ(ManagerStatus(), UI_ANIMATION_MANAGER_BUSY);
  EXPECT_EQ(At(3, variable), 9);
  EXPECT_EQ(ManagerStatus(), UI_ANIMATION_MANAGER_IDLE);
}

TEST_F(AnimationTransitionTest, DurationIsTold) {
  const auto transition = Linear(4, -10);
  double duration = 0;
  EXPECT_EQ(transition->IsDurationKnown(), S_OK);
  EXPECT_EQ(transition->GetDuration(&duration), S_OK);
  EXPECT_EQ(duration, 4);
  EXPECT_EQ(transition->GetDuration(nullptr), E_POINTER);
}

TEST_F(AnimationTransitionTest, InitialValueOfItsOwnGoesBeforeTheVariables) {
  const auto transition = Linear(2, 10);
  EXPECT_EQ(transition->SetInitialValue(4), S_OK);
  const auto variable = Play(100, transition);
  EXPECT_NEAR(At(1, variable), 7, tolerance);
  EXPECT_EQ(transition->SetInitialValue(5), objectSealed) << "it belongs to a storyboard";
}

TEST_F(AnimationTransitionTest, NumbersThatMakeNoTransitionAreRefused) {
  Ptr<IUIAnimationTransition> transition = Linear(1, 1);
  const auto refuses = [&](double duration, double acceleration, double deceleration, double finalValue) {
    transition = Linear(1, 1);
    IUIAnimationTransition *result = transition.Get();
    const HRESULT answer =
        library->CreateAccelerateDecelerateTransition(duration, finalValue, acceleration, deceleration, &result);
    return answer == E_INVALIDARG && result == nullptr;
  };
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(refuses(-1, 0, 0, 5));
  EXPECT_TRUE(refuses(nan, 0, 0, 5));
  EXPECT_TRUE(refuses(1, -0.1, 0, 5));
  EXPECT_TRUE(refuses(1, 0, 1.1, 5));
  EXPECT_TRUE(refuses(1, 0.6, 0.5, 5));
  EXPECT_TRUE(refuses(1, 0, 0, nan));
  EXPECT_EQ(library->CreateConstantTransition(-1, transition.ReleaseAndGetAddressOf()), E_INVALIDARG);
  EXPECT_EQ(library->CreateDiscreteTransition(-1, 2, 5, transition.ReleaseAndGetAddressOf()), E_INVALIDARG);
  EXPECT_EQ(library->CreateInstantaneousTransition(nan, transition.ReleaseAndGetAddressOf()), E_INVALIDARG);
  EXPECT_EQ(library->CreateConstantTransition(1, nullptr), E_POINTER);
}

TEST_F(AnimationTransitionTest, WhatIsntServedSaysSo) {
  IUIAnimationTransition *result = nullptr;
  EXPECT_EQ(library->CreateCubicTransition(1, 2, 3, &result), E_NOTIMPL);
  EXPECT_EQ(library->CreateReversalTransition(1, &result), E_NOTIMPL);
  EXPECT_EQ(library->CreateSmoothStopTransition(1, 2, &result), E_NOTIMPL);
  EXPECT_EQ(library->CreateLinearTransitionFromSpeed(1, 2, &result), E_NOTIMPL);
  EXPECT_EQ(library->CreateSinusoidalTransitionFromVelocity(1, 2, &result), E_NOTIMPL);
  EXPECT_EQ(library->CreateSinusoidalTransitionFromRange(1, 2, 3, 4, UI_ANIMATION_SLOPE_INCREASING, &result),
            E_NOTIMPL);
  EXPECT_EQ(library->CreateParabolicTransitionFromAcceleration(1, 2, 3, &result), E_NOTIMPL);
  EXPECT_EQ(result, nullptr);
}

} // namespace

} // namespace lumenor::services
