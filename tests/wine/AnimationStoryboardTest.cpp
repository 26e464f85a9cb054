// Storyboards and the variables that they move, at times that the tests set.

#include <limits>

#include "wine/Animations.h"

namespace lumenor::services {

namespace {

using AnimationStoryboardTest = Animations;
using AnimationVariableTest = Animations;

TEST_F(AnimationStoryboardTest, ValuesChangeInUpdatesOnly) {
  const auto variable = Play(0, Linear(1, 10));
  EXPECT_EQ(Value(variable), 0);
  UI_ANIMATION_UPDATE_RESULT result{};
  EXPECT_EQ(manager->Update(0.5, &result), S_OK);
  EXPECT_EQ(result, UI_ANIMATION_UPDATE_VARIABLES_CHANGED);
  EXPECT_EQ(Value(variable), 5);
  EXPECT_EQ(manager->Update(0.5, &result), S_OK);
  EXPECT_EQ(result, UI_ANIMATION_UPDATE_NO_CHANGE);
}

TEST_F(AnimationStoryboardTest, TransitionsOfAVariableFollowEachOther) {
  const auto variable = Variable(6);
  const auto storyboard = Storyboard();
  Ptr<IUIAnimationTransition> hold;
  ASSERT_EQ(library->CreateConstantTransition(1, &hold), S_OK);
  ASSERT_EQ(storyboard->AddTransition(variable.Get(), hold.Get()), S_OK);
  ASSERT_EQ(storyboard->AddTransition(variable.Get(), Linear(2, 10).Get()), S_OK);
  ASSERT_EQ(storyboard->AddTransition(variable.Get(), Linear(1, 0).Get()), S_OK);
  ASSERT_EQ(storyboard->Schedule(100, nullptr), S_OK);
  EXPECT_EQ(At(100.9, variable), 6);
  EXPECT_NEAR(At(102, variable), 8, 1e-9);
  EXPECT_NEAR(At(103.5, variable), 5, 1e-9);
  EXPECT_EQ(At(104, variable), 0);
}

TEST_F(AnimationStoryboardTest, PlaysUntilItsLongestVariableIsThere) {
  const auto shortOne = Variable(0), longOne = Variable(0);
  const auto storyboard = Storyboard();
  ASSERT_EQ(storyboard->AddTransition(longOne.Get(), Linear(3, 3).Get()), S_OK);
  ASSERT_EQ(storyboard->AddTransition(shortOne.Get(), Linear(1, 1).Get()), S_OK);
  EXPECT_EQ(Status(storyboard), UI_ANIMATION_STORYBOARD_BUILDING);
  ASSERT_EQ(storyboard->Schedule(1, nullptr), S_OK);
  EXPECT_EQ(Status(storyboard), UI_ANIMATION_STORYBOARD_SCHEDULED);
  EXPECT_EQ(At(0.5, longOne), 0) << "its time hasn't come";
  EXPECT_EQ(Status(storyboard), UI_ANIMATION_STORYBOARD_SCHEDULED);
  EXPECT_EQ(At(3, shortOne), 1);
  EXPECT_NEAR(Value(longOne), 2, 1e-9);
  EXPECT_EQ(Status(storyboard), UI_ANIMATION_STORYBOARD_PLAYING);
  EXPECT_EQ(At(4, longOne), 3);
  EXPECT_EQ(Status(storyboard), UI_ANIMATION_STORYBOARD_READY);
}

TEST_F(AnimationStoryboardTest, ElapsedTimeIsToldWhileItPlays) {
  const auto variable = Variable(0);
  const auto storyboard = Storyboard();
  ASSERT_EQ(storyboard->AddTransition(variable.Get(), Linear(3, 3).Get()), S_OK);
  double elapsed = 0;
  EXPECT_EQ(storyboard->GetElapsedTime(&elapsed), storyboardNotPlaying);
  ASSERT_EQ(storyboard->Schedule(10, nullptr), S_OK);
  At(11.5, variable);
  EXPECT_EQ(storyboard->GetElapsedTime(&elapsed), S_OK);
  EXPECT_EQ(elapsed, 1.5);
  At(13, variable);
  EXPECT_EQ(storyboard->GetElapsedTime(&elapsed), storyboardNotPlaying);
}

TEST_F(AnimationStoryboardTest, LaterOneTakesAVariableOverFromWhereItIs) {
  const auto variable = Variable(0), other = Variable(0);
  const auto earlier = Storyboard(), later = Storyboard();
  ASSERT_EQ(earlier->AddTransition(variable.Get(), Linear(10, 10).Get()), S_OK);
  ASSERT_EQ(earlier->AddTransition(other.Get(), Linear(10, 10).Get()), S_OK);
  ASSERT_EQ(earlier->Schedule(0, nullptr), S_OK);
  EXPECT_EQ(At(2, variable), 2);
  ASSERT_EQ(later->AddTransition(variable.Get(), Linear(4, 24).Get()), S_OK);
  ASSERT_EQ(later->Schedule(4, nullptr), S_OK);
  EXPECT_EQ(Value(variable), 2) << "until the next update";
  EXPECT_NEAR(At(5, variable), 9, 1e-9);
  EXPECT_NEAR(Value(other), 5, 1e-9) << "the other one is still the earlier's";
  EXPECT_EQ(At(8, variable), 24);
  EXPECT_EQ(Status(later), UI_ANIMATION_STORYBOARD_READY);
  EXPECT_EQ(Status(earlier), UI_ANIMATION_STORYBOARD_PLAYING);
  EXPECT_EQ(At(9, variable), 24) << "it doesn't go back to the earlier";
}

TEST_F(AnimationStoryboardTest, EndsWhenAllItsVariablesAreTaken) {
  const auto variable = Variable(0);
  const auto earlier = Storyboard(), later = Storyboard();
  ASSERT_EQ(earlier->AddTransition(variable.Get(), Linear(10, 10).Get()), S_OK);
  ASSERT_EQ(earlier->Schedule(0, nullptr), S_OK);
  At(1, variable);
  ASSERT_EQ(later->AddTransition(variable.Get(), Linear(1, 0).Get()), S_OK);
  ASSERT_EQ(later->Schedule(1, nullptr), S_OK);
  EXPECT_EQ(Status(earlier), UI_ANIMATION_STORYBOARD_READY);
  At(2, variable);
  EXPECT_EQ(ManagerStatus(), UI_ANIMATION_MANAGER_IDLE);
}

TEST_F(AnimationStoryboardTest, PlaysOnWhenNobodyHoldsIt) {
  auto storyboard = Storyboard();
  const auto variable = Variable(0);
  ASSERT_EQ(storyboard->AddTransition(variable.Get(), Linear(2, 10).Get()), S_OK);
  ASSERT_EQ(storyboard->Schedule(0, nullptr), S_OK);
  storyboard.Reset();
  EXPECT_EQ(At(1, variable), 5);
  EXPECT_EQ(At(2, variable), 10);
}

TEST_F(AnimationStoryboardTest, MayBeScheduledAgainWhenItHasPlayed) {
  const auto variable = Variable(0);
  const auto storyboard = Storyboard();
  ASSERT_EQ(storyboard->AddTransition(variable.Get(), Linear(1, 10).Get()), S_OK);
  UI_ANIMATION_SCHEDULING_RESULT result{};
  EXPECT_EQ(storyboard->Schedule(0, &result), S_OK);
  EXPECT_EQ(result, UI_ANIMATION_SCHEDULING_SUCCEEDED);
  EXPECT_EQ(storyboard->Schedule(0, &result), S_OK);
  EXPECT_EQ(result, UI_ANIMATION_SCHEDULING_ALREADY_SCHEDULED);
  At(1, variable);
  EXPECT_EQ(storyboard->Schedule(1, &result), S_OK);
  EXPECT_EQ(result, UI_ANIMATION_SCHEDULING_SUCCEEDED);
  EXPECT_EQ(ManagerStatus(), UI_ANIMATION_MANAGER_BUSY);
}

TEST_F(AnimationStoryboardTest, AbandonedOneLeavesItsVariableWhereItIs) {
  const auto variable = Variable(0);
  const auto storyboard = Storyboard();
  ASSERT_EQ(storyboard->AddTransition(variable.Get(), Linear(2, 10).Get()), S_OK);
  EXPECT_EQ(storyboard->Abandon(), storyboardNotPlaying);
  ASSERT_EQ(storyboard->Schedule(0, nullptr), S_OK);
  At(1, variable);
  EXPECT_EQ(storyboard->Abandon(), S_OK);
  EXPECT_EQ(Status(storyboard), UI_ANIMATION_STORYBOARD_READY);
  EXPECT_EQ(ManagerStatus(), UI_ANIMATION_MANAGER_IDLE);
  EXPECT_EQ(At(2, variable), 5);
  const auto second = Variable(0);
  EXPECT_EQ(manager->ScheduleTransition(second.Get(), Linear(9, 1).Get(), 2), S_OK);
  EXPECT_EQ(manager->AbandonAllStoryboards(), S_OK);
  EXPECT_EQ(ManagerStatus(), UI_ANIMATION_MANAGER_IDLE);
}

TEST_F(AnimationStoryboardTest, RefusesWhatCantBeAdded) {
  const auto variable = Variable(0);
  const auto storyboard = Storyboard();
  const auto transition = Linear(1, 1);
  EXPECT_EQ(storyboard->AddTransition(nullptr, transition.Get()), E_POINTER);
  EXPECT_EQ(storyboard->AddTransition(variable.Get(), nullptr), E_POINTER);
  Ptr<IUIAnimationVariable> foreign;
  ASSERT_EQ(Create<IUIAnimationManager>(CLSID_UIAnimationManager)->CreateAnimationVariable(0, &foreign), S_OK);
  EXPECT_EQ(storyboard->AddTransition(foreign.Get(), transition.Get()), differentOwner);
  EXPECT_EQ(storyboard->AddTransition(variable.Get(), transition.Get()), S_OK) << "nothing has used it up";
  EXPECT_EQ(storyboard->AddTransition(variable.Get(), transition.Get()), transitionAlreadyUsed);
  EXPECT_EQ(Storyboard()->AddTransition(variable.Get(), transition.Get()), transitionAlreadyUsed);
  ASSERT_EQ(storyboard->Schedule(0, nullptr), S_OK);
  EXPECT_EQ(storyboard->AddTransition(variable.Get(), Linear(1, 2).Get()), objectSealed);
  At(5, variable);
  EXPECT_EQ(storyboard->AddTransition(variable.Get(), Linear(1, 2).Get()), objectSealed);
}

TEST_F(AnimationStoryboardTest, TimeDoesntGoBack) {
  const auto variable = Play(0, Linear(10, 10));
  At(5, variable);
  EXPECT_EQ(manager->Update(4.9, nullptr), timeBeforeLastUpdate);
  EXPECT_EQ(Value(variable), 5);
  const auto storyboard = Storyboard();
  ASSERT_EQ(storyboard->AddTransition(variable.Get(), Linear(1, 1).Get()), S_OK);
  UI_ANIMATION_SCHEDULING_RESULT result = UI_ANIMATION_SCHEDULING_SUCCEEDED;
  EXPECT_EQ(storyboard->Schedule(4.9, &result), timeBeforeLastUpdate);
  EXPECT_EQ(result, UI_ANIMATION_SCHEDULING_UNEXPECTED_FAILURE);
}

TEST_F(AnimationStoryboardTest, AfterAShutdownNothingPlays) {
  const auto variable = Play(0, Linear(10, 10));
  const auto storyboard = Storyboard();
  At(5, variable);
  EXPECT_EQ(manager->Shutdown(), S_OK);
  EXPECT_EQ(Value(variable), 5);
  UI_ANIMATION_MANAGER_STATUS status{};
  EXPECT_EQ(manager->GetStatus(&status), shutdownCalled);
  EXPECT_EQ(manager->Update(6, nullptr), shutdownCalled);
  EXPECT_EQ(manager->AbandonAllStoryboards(), shutdownCalled);
  EXPECT_EQ(storyboard->AddTransition(variable.Get(), Linear(1, 1).Get()), shutdownCalled);
  EXPECT_EQ(storyboard->Schedule(6, nullptr), shutdownCalled);
  EXPECT_EQ(manager->ScheduleTransition(variable.Get(), Linear(1, 1).Get(), 6), shutdownCalled);
  Ptr<IUIAnimationVariable> newVariable;
  EXPECT_EQ(manager->CreateAnimationVariable(0, &newVariable), shutdownCalled);
  Ptr<IUIAnimationStoryboard> newStoryboard;
  EXPECT_EQ(manager->CreateStoryboard(&newStoryboard), shutdownCalled);
}

TEST_F(AnimationStoryboardTest, OutlivesItsManager) {
  const auto storyboard = Storyboard();
  const auto variable = Play(3, Linear(10, 10));
  manager.Reset();
  EXPECT_EQ(storyboard->Schedule(0, nullptr), shutdownCalled);
  EXPECT_EQ(Value(variable), 3);
}

TEST_F(AnimationStoryboardTest, WhatIsntServedSaysSo) {
  const auto storyboard = Storyboard();
  EXPECT_EQ(storyboard->Conclude(), E_NOTIMPL);
  EXPECT_EQ(storyboard->Finish(0), E_NOTIMPL);
  EXPECT_EQ(storyboard->HoldVariable(nullptr), E_NOTIMPL);
  EXPECT_EQ(storyboard->SetStoryboardEventHandler(nullptr), E_NOTIMPL);
  EXPECT_EQ(manager->Pause(), E_NOTIMPL);
  EXPECT_EQ(manager->FinishAllStoryboards(0), E_NOTIMPL);
  EXPECT_EQ(manager->SetTrimPriorityComparison(nullptr), E_NOTIMPL);
}

class RoundedVariable : public Animations {
protected:
  int Rounded(double value, UI_ANIMATION_ROUNDING_MODE mode) {
    const auto variable = Variable(value);
    EXPECT_EQ(variable->SetRoundingMode(mode), S_OK);
    int result = 0;
    EXPECT_EQ(variable->GetIntegerValue(&result), S_OK);
    return result;
  }
};

TEST_F(RoundedVariable, RoundsAsItIsTold) {
  EXPECT_EQ(Rounded(2.4, UI_ANIMATION_ROUNDING_NEAREST), 2);
  EXPECT_EQ(Rounded(2.6, UI_ANIMATION_ROUNDING_NEAREST), 3);
  EXPECT_EQ(Rounded(-2.6, UI_ANIMATION_ROUNDING_NEAREST), -3);
  EXPECT_EQ(Rounded(2.6, UI_ANIMATION_ROUNDING_FLOOR), 2);
  EXPECT_EQ(Rounded(-2.4, UI_ANIMATION_ROUNDING_FLOOR), -3);
  EXPECT_EQ(Rounded(2.4, UI_ANIMATION_ROUNDING_CEILING), 3);
  EXPECT_EQ(Rounded(-2.6, UI_ANIMATION_ROUNDING_CEILING), -2);
  EXPECT_EQ(Rounded(1e300, UI_ANIMATION_ROUNDING_NEAREST), 2147483647);
  EXPECT_EQ(Variable(0)->SetRoundingMode(static_cast<UI_ANIMATION_ROUNDING_MODE>(3)), E_INVALIDARG);
}

TEST_F(RoundedVariable, RoundsToTheNearestUnlessTold) {
  int result = 0;
  EXPECT_EQ(Variable(149.6)->GetIntegerValue(&result), S_OK);
  EXPECT_EQ(result, 150);
}

TEST_F(AnimationVariableTest, TellsItsFormerAndItsFinalValue) {
  const auto variable = Play(0.4, Linear(10, 10.4));
  At(2, variable);
  At(5, variable);
  double value = 0;
  int rounded = 0;
  EXPECT_EQ(variable->GetPreviousValue(&value), S_OK);
  EXPECT_NEAR(value, 2.4, 1e-9);
  EXPECT_EQ(variable->GetPreviousIntegerValue(&rounded), S_OK);
  EXPECT_EQ(rounded, 2);
  EXPECT_EQ(variable->GetFinalValue(&value), S_OK);
  EXPECT_EQ(value, 10.4);
  EXPECT_EQ(variable->GetFinalIntegerValue(&rounded), S_OK);
  EXPECT_EQ(rounded, 10);
  EXPECT_EQ(Variable(7)->GetFinalValue(&value), S_OK);
  EXPECT_EQ(value, 7) << "at rest it is the value itself";
}

TEST_F(AnimationVariableTest, TellsTheStoryboardThatPlaysOnIt) {
  const auto variable = Variable(0);
  const auto storyboard = Storyboard();
  ASSERT_EQ(storyboard->AddTransition(variable.Get(), Linear(1, 1).Get()), S_OK);
  Ptr<IUIAnimationStoryboard> player;
  EXPECT_EQ(variable->GetCurrentStoryboard(&player), S_OK);
  EXPECT_EQ(player.Get(), nullptr);
  ASSERT_EQ(storyboard->Schedule(0, nullptr), S_OK);
  EXPECT_EQ(variable->GetCurrentStoryboard(&player), S_OK);
  EXPECT_EQ(player.Get(), storyboard.Get());
  At(1, variable);
  EXPECT_EQ(variable->GetCurrentStoryboard(&player), S_OK);
  EXPECT_EQ(player.Get(), nullptr);
}

TEST_F(AnimationVariableTest, StaysWithinItsBounds) {
  const auto variable = Play(0, Linear(10, 10));
  EXPECT_EQ(variable->SetLowerBound(3), S_OK);
  EXPECT_EQ(variable->SetUpperBound(6), S_OK);
  EXPECT_EQ(At(1, variable), 3);
  EXPECT_NEAR(At(5, variable), 5, 1e-9);
  EXPECT_EQ(At(10, variable), 6);
}

TEST_F(AnimationVariableTest, RefusesNoNumberAndNoPlaceToPutIt) {
  Ptr<IUIAnimationVariable> variable;
  EXPECT_EQ(manager->CreateAnimationVariable(std::numeric_limits<double>::quiet_NaN(), &variable), E_INVALIDARG);
  EXPECT_EQ(manager->CreateAnimationVariable(0, nullptr), E_POINTER);
  EXPECT_EQ(manager->CreateStoryboard(nullptr), E_POINTER);
  EXPECT_EQ(Variable(0)->GetValue(nullptr), E_POINTER);
  EXPECT_EQ(Variable(0)->GetIntegerValue(nullptr), E_POINTER);
  EXPECT_EQ(Variable(0)->SetTag(nullptr, 0), E_NOTIMPL);
  EXPECT_EQ(Variable(0)->SetVariableChangeHandler(nullptr), E_NOTIMPL);
}

} // namespace

} // namespace lumenor::services
