#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace lumenor {

namespace {

TEST(CommandLine, EmptyPasses) { EXPECT_TRUE(CheckCommandLine(L"")); }

TEST(CommandLine, OptionsPass) {
  EXPECT_TRUE(CheckCommandLine(L"-x"));
  EXPECT_TRUE(CheckCommandLine(L"/y"));
  EXPECT_TRUE(CheckCommandLine(L"-x /y"));
  EXPECT_TRUE(CheckCommandLine(L"\"-x and more\" /"));
}

TEST(CommandLine, ABareWordFails) {
  EXPECT_FALSE(CheckCommandLine(L"word"));
  EXPECT_FALSE(CheckCommandLine(L"-x word"));
  EXPECT_FALSE(CheckCommandLine(L"word -x"));
  EXPECT_FALSE(CheckCommandLine(L"-x word /y"));
}

TEST(CommandLine, AnEmptyArgumentFails) { EXPECT_FALSE(CheckCommandLine(L"-x \"\"")); }

} // namespace

} // namespace lumenor
