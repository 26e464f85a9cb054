// What is left of the user's buttons when the dock is killed during its close. LUMENOR_KILLS sets how many kills.

#include <cstdio>
#include <cstdlib>
#include <random>

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Screen.h"

namespace lumenor::e2e {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

constexpr int usualKills = 3;

int Kills() {
  const char *const number = std::getenv("LUMENOR_KILLS");
  return number == nullptr ? usualKills : std::atoi(number);
}

class KilledClose : public ::testing::Test {
protected:
  KilledClose() {
    installation.WriteUsualStubs();
    std::printf("seed %u, %d kills\n", seed, Kills());
  }

  std::string Document() const { return ReadBytes(installation.DocumentPath(userDocument)); }

  void WriteList(int count) {
    installation.WriteDocument(
        userDocument,
        std::vector<Entry>(static_cast<std::size_t>(count),
                           {.head = L"Mine", .actionType = L"exe", .actionParams = installation.Recorder()}));
  }

  /// A thousand entries take their time to be read on a busy machine.
  static bool StartClose(const DockProcess &dock) {
    return WaitFor([&] { return dock.Bar() != nullptr; }, std::chrono::minutes(2)) &&
           ::PostMessageW(dock.Bar(), WM_CLOSE, 0, 0);
  }

  /// Closes the dock without killing it; how long until it had ended.
  microseconds DurationOfAClose() {
    const DockProcess dock(installation);
    EXPECT_TRUE(StartClose(dock));
    const auto start = Clock::now();
    EXPECT_EQ(0u, dock.WaitForExit());
    return std::chrono::duration_cast<microseconds>(Clock::now() - start);
  }

  void KillInAClose(microseconds close) {
    const DockProcess dock(installation);
    ASSERT_TRUE(StartClose(dock));
    const auto start = Clock::now();
    const microseconds instant(std::uniform_int_distribution<long long>(0, close.count())(random));
    while (Clock::now() - start < instant)
      ::SwitchToThread();
    dock.Kill();
    std::printf("."); // in-wine ends a program that prints nothing
    std::fflush(stdout);
  }

  /// Counts the kills that left neither the list before the close nor the one that a close leaves.
  int LostLists(int count) {
    WriteList(count);
    const std::string before = Document();
    const microseconds close = DurationOfAClose();
    const std::string after = Document();
    EXPECT_NE(before, after);
    EXPECT_EQ(count, CountOf(after, "<Head>Mine</Head>"));
    int lost = 0, kept = 0;
    for (int kill = 0; kill < Kills(); ++kill) {
      WriteList(count);
      KillInAClose(close);
      const std::string left = Document();
      lost += left != before && left != after;
      kept += left == before;
    }
    std::printf("\n%d entries: %d times the old list, %d lost, else the new one\n", count, kept, lost);
    return lost;
  }

  const Installation installation;
  const unsigned seed = std::random_device{}();
  std::mt19937 random{seed};
};

TEST_F(KilledClose, LeavesTheOldOrTheNewListOfEight) { EXPECT_EQ(0, LostLists(8)); }

TEST_F(KilledClose, LeavesTheOldOrTheNewListOfAThousand) { EXPECT_EQ(0, LostLists(1000)); }

} // namespace
} // namespace lumenor::e2e
