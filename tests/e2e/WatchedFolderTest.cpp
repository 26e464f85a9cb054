// The watched folder under load, and what the watchers cost: every pass leaves one more of them per list.

#include <atomic>
#include <cstdio>
#include <thread>

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/OtherWindow.h"
#include "e2e/ProcessFigures.h"
#include "e2e/Screen.h"
#include "system/Handles.h"

namespace lumenor::e2e {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr RECT elsewhere = {300, 700, 900, 950};

/// Writes one byte over the file's first: a change of one event, unlike making a file anew.
void Touch(const std::wstring &path) {
  const FileHandle file(::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  ASSERT_TRUE(::WriteFile(file.Get(), "x", 1, &written, nullptr));
}

/// Puts `bytes` into the file in the place of what it holds, as often as it takes: a reader may have it just then.
void Overwrite(const std::wstring &path, const std::string &bytes) {
  ASSERT_TRUE(WaitFor([&] {
    const FileHandle file(::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    return file && ::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size();
  }));
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

  /// One entry that tells the number of its writing.
  std::vector<Entry> List(int number) const {
    return {{.head = L"Write " + std::to_wstring(number),
             .actionType = L"exe",
             .actionParams = L"\"" + installation.Recorder() + L"\" write " + std::to_wstring(number)}};
  }

  /// Lets the dock make its documents: a start that makes them wakes the watchers by that.
  void MakeDocuments() const {
    DockProcess dock(installation);
    ASSERT_NE(nullptr, dock.WaitForBar());
  }

  /// Waits until the process's threads have been the same for a while.
  static int SettledThreads(const DockProcess &dock) {
    int last = -1;
    WaitFor(
        [&] {
          const int before = last;
          last = ThreadCount(dock.Id());
          std::this_thread::sleep_for(milliseconds(before == last ? 0 : 1000));
          return before == last;
        },
        seconds(120));
    return last;
  }

  const Installation installation;
};

TEST_F(WatchedFolder, EachSeparateChangeDoublesTheWatchersAndCostsNothingElse) {
  MakeDocuments();
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  const Figures start = FiguresOf(dock);
  Print("at the start", start);
  int watchers = 2; // one for each of the two lists
  for (int change = 1; change <= 4; ++change) {
    Touch(Other());
    ASSERT_TRUE(WaitFor([&] { return ThreadCount(dock.Id()) >= start.threads - 2 + 2 * watchers; }))
        << "change " << change << ", " << ThreadCount(dock.Id()) << " threads";
    watchers *= 2;
    EXPECT_EQ(start.threads - 2 + watchers, SettledThreads(dock)) << "change " << change;
  }
  const Figures end = FiguresOf(dock);
  Print("after four changes", end);
  // A watcher has its change handle and what the platform needs of a thread.
  EXPECT_LE(end.handles - start.handles, 4 * (end.threads - start.threads) + 10);
  EXPECT_NE(nullptr, dock.Bar());
}

TEST_F(WatchedFolder, TenThousandWritesLoseNoLastStateWhileTheListIsClicked) {
  constexpr int writes = 10000;
  const OtherWindow other(elsewhere);
  DockProcess dock(installation);
  ASSERT_NE(nullptr, dock.WaitForBar());
  const Figures start = FiguresOf(dock);
  Print("at the start", start);

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
  SettledThreads(dock);
  std::printf("    settled after %.1f s\n", std::chrono::duration<double>(steady_clock::now() - begin).count());
  Print("once all is settled", FiguresOf(dock));

  ASSERT_TRUE(dock.IsRunning());
  Click(Center(elsewhere));
  ASSERT_TRUE(WaitFor([&] { return dock.Popups().empty(); }));
  Click(dock.ForYouButton());
  const HWND popup = dock.WaitForPopup();
  ASSERT_NE(nullptr, popup);
  const RECT flyout = RectOf(popup);
  Click({flyout.left + 100, flyout.top + 40 + 20});
  ASSERT_TRUE(WaitFor([&] { return installation.RecordedCommandLines().size() == 1; }));
  EXPECT_EQ(L"\"" + installation.Recorder() + L"\" write " + std::to_wstring(writes),
            installation.RecordedCommandLines()[0]);
  Click(dock.CloseButton());
  EXPECT_EQ(0u, dock.WaitForExit());
}

} // namespace
} // namespace lumenor::e2e
