// The watched folder under load, and what the watching costs. LUMENOR_CHANGES sets how many changes of a list.

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/OtherProgram.h"
#include "e2e/OtherWindow.h"
#include "e2e/ProcessFigures.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

namespace lumenor::e2e {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr RECT elsewhere = {300, 700, 900, 950};

int Changes() {
  const char *const number = std::getenv("LUMENOR_CHANGES");
  return number == nullptr ? 200 : std::atoi(number);
}

struct Figures {
  int threads;
  int handles;
  double megabytes;
};

Figures FiguresOf(const DockProcess &dock) {
  return {ThreadCount(dock.Id()), HandleCount(dock.Id()), PrivateMegabytes(dock.Id())};
}

void Print(const char *when, const Figures &figures) {
  std::printf("    %-32s %5d threads %6d handles %7.1f MB\n", when, figures.threads, figures.handles,
              figures.megabytes);
}

class WatchedFolder : public ::testing::Test {
protected:
  WatchedFolder() {
    installation.WriteUsualStubs();
    installation.WriteDocument(forYouList, List(0));
    WriteBytes(Other(), "content");
  }

  std::wstring Other() const { return installation.UserFolder() + L"\\other.txt"; }

  /// One entry with the number of its write.
  std::vector<Entry> List(int number) const {
    return {installation.RecorderEntry(L"Write " + std::to_wstring(number), L"write " + std::to_wstring(number))};
  }

  /// Lets the dock make its documents: a start that makes them wakes the watchers.
  void MakeDocuments() const { ShownDock dock(installation); }

  /// A list of so many entries.
  std::vector<Entry> ListOf(int count) const { return std::vector<Entry>(static_cast<std::size_t>(count), List(0)[0]); }

  /// How many threads the process has once none of its start ends any more.
  static int SettledThreads(const DockProcess &dock) {
    int threads = 0;
    EXPECT_TRUE(WaitFor([&] {
      threads = ThreadCount(dock.Id());
      return HoldsFor([&] { return ThreadCount(dock.Id()) == threads; }, seconds(1));
    }));
    return threads;
  }

  /// The figures of the process once it has at most `threads` threads again and its handles don't change any more. A
  /// platform may end threads of its own, such as those of a pool, minutes after the start.
  static Figures SettledFigures(const DockProcess &dock, int threads) {
    Figures last = {};
    EXPECT_TRUE(WaitFor([&] {
      const Figures before = std::exchange(last, FiguresOf(dock));
      return before.threads <= threads && last.threads <= threads && before.handles == last.handles;
    })) << last.threads
        << " threads";
    return last;
  }

  const Installation installation;
};

/// How long it took until a list of another length was on the screen; nothing when it didn't come.
std::optional<milliseconds> TimeUntilShown(const std::wstring &path, const std::vector<Entry> &list, HWND flyout) {
  const auto begin = steady_clock::now();
  const LONG height = 40 + 40 * static_cast<LONG>(list.size());
  Overwrite(path, DocumentXml(forYouList, list));
  if (!WaitFor([&] { return HeightOf(flyout) == height; }))
    return std::nullopt;
  return std::chrono::duration_cast<milliseconds>(steady_clock::now() - begin);
}

TEST_F(WatchedFolder, TwoHundredSeparateChangesAreShownAndLeaveNothingBehind) {
  const int changes = Changes();
  constexpr double heapNoiseMegabytes = 8; // 2, once 6 with Wine 10; 200 watchers that stay would take 400
  MakeDocuments();
  ShownDock dock(installation);
  const HWND flyout = OpenForYou(dock);
  const int threads = ThreadCount(dock.Id());
  Figures second = {};
  std::vector<milliseconds> times;
  for (int change = 1; change <= changes; ++change) {
    // 2, 3, 1, 2, 3 entries and so on: each list differs from the one before, and the 200th is as long as the second.
    const auto shown = TimeUntilShown(installation.DocumentPath(forYouList), ListOf(change % 3 + 1), flyout);
    ASSERT_TRUE(shown) << "change " << change;
    times.push_back(*shown);
    std::printf("."); // a long run isn't taken for one that hangs
    std::fflush(stdout);
    if (change == 2) {
      second = SettledFigures(dock, threads);
      ASSERT_GE(threads, second.threads);
    } else if (change % 60 == 2) { // of a list as long as the second
      Print(("after change " + std::to_string(change)).c_str(), SettledFigures(dock, threads));
    }
  }
  const Figures last = SettledFigures(dock, threads);
  Print("after the second change", second);
  Print("after the last change", last);
  EXPECT_GE(second.handles, last.handles);
  EXPECT_GT(second.megabytes + heapNoiseMegabytes, last.megabytes);
  std::sort(times.begin(), times.end());
  std::printf("    shown after %lld ms, at worst %lld ms\n", static_cast<long long>(times[changes / 2].count()),
              static_cast<long long>(times.back().count()));
  EXPECT_GT(seconds(1), times[changes / 2]);
}

TEST_F(WatchedFolder, TenThousandWritesLoseNoLastStateWhileTheListIsClicked) {
  constexpr int writes = 10000;
  const OtherWindow other(elsewhere);
  ShownDock dock(installation);
  const int threads = SettledThreads(dock);
  Print("at the start", FiguresOf(dock));

  std::atomic<bool> done = false;
  const auto begin = steady_clock::now();
  std::thread writer([&] {
    for (int i = 1; i <= writes; ++i)
      Overwrite(installation.DocumentPath(forYouList), DocumentXml(forYouList, List(i)));
    done = true;
  });
  int shown = 0;
  while (!done) {
    ClickAtOnce(dock.ForYouButton());
    WaitFor([&] { return done || !dock.Popups().empty(); }, seconds(3));
    shown += !dock.Popups().empty();
    ClickAtOnce(Center(elsewhere));
    WaitFor([&] { return done || dock.Popups().empty(); }, seconds(3));
  }
  writer.join();
  std::printf("    %d writes in %.1f s, the list shown %d times meanwhile\n", writes,
              std::chrono::duration<double>(steady_clock::now() - begin).count(), shown);
  Print("after the last write", FiguresOf(dock));
  EXPECT_TRUE(WaitFor([&] { return ThreadCount(dock.Id()) <= threads; })) << ThreadCount(dock.Id());
  std::printf("    settled after %.1f s\n", std::chrono::duration<double>(steady_clock::now() - begin).count());
  Print("once all is settled", FiguresOf(dock));

  ASSERT_TRUE(dock.IsRunning());
  // Clicks that waited for the writes to end may still open the list and close it. A list that comes up while the other
  // window takes the activation loses none; its button closes it.
  ASSERT_TRUE(WaitFor([&] {
    Click(Center(elsewhere));
    if (!dock.Popups().empty())
      Click(dock.ForYouButton());
    return HoldsFor([&] { return dock.Popups().empty(); }, seconds(1));
  }));
  // A row that is replaced between the press and the release loses the click, and the user tries again.
  const auto choose = [&] {
    Click(dock.ForYouButton());
    if (dock.WaitForPopup() == nullptr)
      return false;
    ClickRow(dock, 0);
    return WaitFor([&] { return !installation.RecordedCommandLines().empty(); }, seconds(10));
  };
  ASSERT_TRUE(choose() || choose() || choose());
  EXPECT_EQ(std::vector{installation.RecorderCommand(L"write ") + std::to_wstring(writes)},
            installation.RecordedCommandLines());
  EXPECT_EQ(0U, CloseByButton(dock));
}

} // namespace
} // namespace lumenor::e2e
