#include "system/ScopeExit.h"

#include <stdexcept>

#include <gtest/gtest.h>

namespace lumenor {
namespace {

TEST(ScopeExit, RunsItsActionAtTheEndOfTheScope) {
  int count = 0;
  {
    ++count;
    const ScopeExit restore([&] { --count; });
    EXPECT_EQ(count, 1);
  }
  EXPECT_EQ(count, 0);
}

TEST(ScopeExit, RunsItsActionWhenAnExceptionLeavesTheScope) {
  bool ran = false;
  EXPECT_THROW(
      {
        const ScopeExit note([&] { ran = true; });
        throw std::runtime_error("left");
      },
      std::runtime_error);
  EXPECT_TRUE(ran);
}

TEST(ScopedValue, HoldsItsValueUntilTheEndOfTheScope) {
  int value = 3;
  {
    const ScopedValue held(value, 5);
    EXPECT_EQ(value, 5);
    {
      const ScopedValue inner(value, 7);
      EXPECT_EQ(value, 7);
    }
    EXPECT_EQ(value, 5);
  }
  EXPECT_EQ(value, 3);
}

TEST(ScopedValue, GivesTheFormerValueBackWhenAnExceptionLeavesTheScope) {
  bool raised = false;
  EXPECT_THROW(
      {
        const ScopedValue up(raised, true);
        throw std::runtime_error("left");
      },
      std::runtime_error);
  EXPECT_FALSE(raised);
}

} // namespace
} // namespace lumenor
