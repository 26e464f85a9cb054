#include "support/GuardedMemory.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ChildRun.h"

namespace lumenor {
namespace {

constexpr unsigned long crashStatus = 70;

/// A pointer of which the compiler knows nothing.
using Block = unsigned char *volatile;

unsigned char *Take(std::size_t size) { return static_cast<unsigned char *>(std::malloc(size)); }

/// Runs the present test in a program of its own with a guarded heap, which has to end with `status`. False within that
/// program, which goes on with the test.
bool IsDoneInAProgramThatEndsWith(unsigned long status) {
  if (tests::IsChildRun())
    return false;
  EXPECT_EQ(status, tests::RunThisTestAsChild({{tests::guardVariable, L"1"}}).exitCode);
  return true;
}

TEST(GuardedMemory, IsInUseWhereTheVariableSaysSoAlone) {
  EXPECT_EQ(tests::IsChildRun() || ::GetEnvironmentVariableW(tests::guardVariable, nullptr, 0) != 0,
            tests::GuardedBlockCount() > 0);
  if (IsDoneInAProgramThatEndsWith(0))
    return;
  const std::size_t before = tests::GuardedBlockCount();
  const auto number = std::make_unique<int>(1);
  EXPECT_EQ(before + 1, tests::GuardedBlockCount());
}

TEST(GuardedMemory, EndsAProgramThatWritesBehindABlock) {
  if (IsDoneInAProgramThatEndsWith(crashStatus))
    return;
  Block block = Take(32);
  block[32] = 1;
}

TEST(GuardedMemory, EndsAProgramThatReadsBehindABlock) {
  if (IsDoneInAProgramThatEndsWith(crashStatus))
    return;
  Block block = Take(8192);
  std::exit(block[8192]);
}

TEST(GuardedMemory, EndsAProgramThatHasWrittenBehindABlockOfAnyLengthWhenItIsGivenBack) {
  if (IsDoneInAProgramThatEndsWith(crashStatus))
    return;
  Block block = Take(5);
  block[5] = 1;
  std::free(block);
}

TEST(GuardedMemory, EndsAProgramThatReadsWhatItHasGivenBack) {
  if (IsDoneInAProgramThatEndsWith(crashStatus))
    return;
  Block block = Take(100000);
  std::free(block);
  std::exit(block[50000]);
}

TEST(GuardedMemory, EndsAProgramThatGivesABlockBackTwice) {
  if (IsDoneInAProgramThatEndsWith(crashStatus))
    return;
  Block block = Take(16);
  std::free(block);
  std::free(block);
}

TEST(GuardedMemory, GivesNoAddressOutTwice) {
  if (IsDoneInAProgramThatEndsWith(0))
    return;
  std::vector<void *> addresses;
  for (int i = 0; i < 2000; ++i) {
    Block block = Take(64);
    addresses.push_back(block);
    std::free(block);
  }
  std::sort(addresses.begin(), addresses.end());
  EXPECT_EQ(addresses.end(), std::adjacent_find(addresses.begin(), addresses.end()));
}

TEST(GuardedMemory, FillsABlockThatNobodyHasSetYet) {
  if (IsDoneInAProgramThatEndsWith(0))
    return;
  Block block = Take(100);
  EXPECT_EQ(std::string(100, '\xCD'), std::string(block, block + 100));
  std::free(block);
}

TEST(GuardedMemory, KeepsWhatStandsInABlockThatGrowsOrShrinks) {
  if (IsDoneInAProgramThatEndsWith(0))
    return;
  auto *block = static_cast<char *>(std::calloc(2, 3));
  EXPECT_EQ(std::string(6, '\0'), std::string(block, 6));
  std::copy_n("abcdef", 6, block);
  block = static_cast<char *>(std::realloc(block, 20000));
  EXPECT_EQ("abcdef", std::string(block, 6));
  block = static_cast<char *>(std::realloc(block, 3));
  EXPECT_EQ("abc", std::string(block, 3));
  std::free(block);
}

TEST(GuardedMemory, TakesMoreBlocksThanCanBeGuarded) {
  if (IsDoneInAProgramThatEndsWith(0))
    return;
  std::vector<std::unique_ptr<int>> numbers;
  for (int i = 0; i < 40000; ++i)
    numbers.push_back(std::make_unique<int>(i));
  EXPECT_EQ(39999, *numbers.back());
}

TEST(PlatformHeap, FailsATestThatHasWrittenBehindABlockOfIt) {
  if (tests::IsChildRun()) {
    // Blocks that are much smaller lie in groups of their own, which not every platform looks through.
    constexpr std::size_t size = 5000;
    auto *const block = static_cast<unsigned char *>(::HeapAlloc(::GetProcessHeap(), 0, size));
    block[size] = 1;
    return;
  }
  const tests::ChildResult run =
      tests::RunThisTestAsChild({{tests::guardVariable, L"1"}, {L"WINEDEBUG", L"-all,warn+heap"}});
  EXPECT_EQ(1u, run.exitCode);
  EXPECT_THAT(run.errors, testing::HasSubstr("a heap of the platform is damaged"));
}

} // namespace
} // namespace lumenor
