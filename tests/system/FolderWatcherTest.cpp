#include "system/FolderWatcher.h"

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/AnsweringWindow.h"
#include "support/Desk.h"
#include "support/FolderThreads.h"
#include "support/HandleCounts.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"
#include "system/EventLog.h"

extern "C" {
extern decltype(&::CreateEventW) __imp_CreateEventW;
extern decltype(&::CreateThread) __imp_CreateThread;
extern decltype(&::SendMessageW) __imp_SendMessageW;
}

namespace lumenor {

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr UINT told = WM_USER + 11;
constexpr wchar_t userFolder[] = L"%appdata%\\Tarnwick\\Lumenor";

std::atomic<int> sendings;
decltype(&::CreateThread) createThread = nullptr;

DWORD ExitCode(const FolderWatch &watch) {
  DWORD code = STILL_ACTIVE;
  ::GetExitCodeThread(watch.thread.Get(), &code);
  return code;
}

/// A window of the test that notes what the threads send, and a folder of the test's own.
class FolderWatcher : public testing::Test {
protected:
  FolderWatcher() { tests::MakeFolders(folders.UserFolder()); }

  void Write(const std::string &text = "x") { tests::WriteBytes(folders.UserFolder() + L"\\file.xml", text); }

  bool Hears(std::size_t count) {
    return tests::PumpUntil([&] { return messages.size() >= count; });
  }

  /// Waits until the threads have asked for `count` watches in all and so many of them as there are threads stand.
  bool Asks(std::size_t count) {
    return tests::PumpUntil(
        [&] { return threads.Watches().size() >= count && threads.StandingWatches() == threads.Alive(); });
  }

  /// Waits for the end of the thread, which is a good one.
  static bool Ends(const FolderWatch &watch) {
    return tests::PumpUntil([&] { return ExitCode(watch) == 0; });
  }

  const tests::TestFolders folders;
  std::vector<MSG> messages;
  std::function<void()> onMessage;
  tests::AnsweringWindow window{[this](UINT message, WPARAM wParam, LPARAM lParam) {
    messages.push_back({nullptr, message, wParam, lParam, 0, {}});
    if (onMessage)
      onMessage();
    return 1;
  }};
  tests::FolderThreads threads; // the first to go: its threads send to the window
};

TEST_F(FolderWatcher, SendsItsMessageWhenAFileIsWritten) {
  const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  EXPECT_TRUE(watch);
  Write();
  ASSERT_TRUE(Hears(1));
  EXPECT_EQ(told, messages[0].message);
  EXPECT_EQ(0u, messages[0].wParam);
  EXPECT_EQ(0, messages[0].lParam);
}

TEST_F(FolderWatcher, WatchesTheLastWritesInTheUsersFolderAlone) {
  const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  EXPECT_THAT(threads.Watches(),
              ElementsAre(tests::FolderThreads::Watch{folders.UserFolder(), FALSE, FILE_NOTIFY_CHANGE_LAST_WRITE}));
}

TEST_F(FolderWatcher, WatchesTheFolderThatItIsGiven) {
  const FolderWatch watch = StartFolderWatch(L"%ProgramData%", window.Get(), told);
  EXPECT_THAT(threads.Watches(),
              ElementsAre(tests::FolderThreads::Watch{folders.ProgramData(), FALSE, FILE_NOTIFY_CHANGE_LAST_WRITE}));
}

TEST_F(FolderWatcher, WatchesAnewAfterEachChange) {
  const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  for (std::size_t round = 1; round <= 20; ++round) {
    Write();
    ASSERT_TRUE(Hears(round));
    ASSERT_TRUE(Asks(round + 1));
  }
  EXPECT_EQ(20u, messages.size());
  EXPECT_EQ(21u, threads.Watches().size());
  EXPECT_EQ(1u, threads.StandingWatches());
}

TEST_F(FolderWatcher, StandsWhenItsStartComesBack) {
  std::vector<FolderWatch> watches;
  for (std::size_t round = 1; round <= 20; ++round) {
    watches.push_back(StartFolderWatch(userFolder, window.Get(), told));
    ASSERT_EQ(round, threads.StandingWatches());
  }
}

TEST_F(FolderWatcher, HasNoWatchWhileTheWindowAnswers) {
  std::vector<std::size_t> standing;
  onMessage = [&] {
    for (int i = 0; i < 10; ++i)
      Write();
    standing.push_back(threads.StandingWatches());
  };
  const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  Write();
  ASSERT_TRUE(Hears(1));
  ASSERT_TRUE(Asks(2));
  EXPECT_EQ(1u, messages.size()); // the ten writes made no message
  Write();
  ASSERT_TRUE(Hears(2));
  ASSERT_TRUE(Asks(3));
  EXPECT_EQ(2u, messages.size());
  // The handle of the change that is being told is still open, and no other one.
  EXPECT_THAT(standing, ElementsAre(1u, 1u));
}

TEST_F(FolderWatcher, TellsManyWritesAtMostOnceAPass) {
  const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  for (int i = 0; i < 1000; ++i)
    Write(std::to_string(i)); // the thread waits for the answer from the first one on
  ASSERT_TRUE(Hears(1));
  ASSERT_TRUE(Asks(2));
  EXPECT_EQ(1u, messages.size());
  Write("last");
  EXPECT_TRUE(Hears(2));
}

TEST_F(FolderWatcher, SendsFromEveryThreadOnTheNextChange) {
  const FolderWatch watches[] = {StartFolderWatch(userFolder, window.Get(), told),
                                 StartFolderWatch(userFolder, window.Get(), told + 1),
                                 StartFolderWatch(userFolder, window.Get(), told)};
  Write();
  ASSERT_TRUE(Hears(3));
  ASSERT_TRUE(Asks(6));
  std::vector<UINT> heard;
  for (const MSG &message : messages)
    heard.push_back(message.message);
  EXPECT_THAT(heard, testing::UnorderedElementsAre(told, told, told + 1));
}

TEST_F(FolderWatcher, ExpandsTheFolderAtEachPass) {
  const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  const std::wstring other = folders.Root() + L"\\other";
  tests::MakeFolders(other + L"\\Tarnwick\\Lumenor");
  const tests::EnvironmentValue appData(L"APPDATA", other);
  Write();
  ASSERT_TRUE(Hears(1));
  ASSERT_TRUE(Asks(2));
  EXPECT_EQ(other + L"\\Tarnwick\\Lumenor", threads.Watches()[1].folder);
}

TEST_F(FolderWatcher, EndsAtTheNextChangeWhenItsWindowIsGone) {
  const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  ::DestroyWindow(window.Get());
  Write();
  EXPECT_TRUE(Ends(watch));
  EXPECT_EQ(0u, threads.StandingWatches());
  EXPECT_THAT(messages, IsEmpty());
}

LRESULT WINAPI NoteSending(HWND, UINT, WPARAM, LPARAM) {
  ++sendings;
  return 0;
}

// The number of a window that is gone may be given to another one later.
TEST_F(FolderWatcher, SendsNothingToTheWindowOfAnotherProgram) {
  const FolderWatch watch = StartFolderWatch(userFolder, ::GetDesktopWindow(), told);
  const tests::ImportSlot sendMessage(&__imp_SendMessageW, &NoteSending);
  sendings = 0;
  Write();
  EXPECT_TRUE(Ends(watch));
  EXPECT_EQ(0, sendings);
}

TEST_F(FolderWatcher, EndsAtOnceWhenItIsLetGo) {
  { const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told); }
  EXPECT_TRUE(tests::PumpUntil([&] { return threads.Alive() == 0; }));
  EXPECT_EQ(0u, threads.StandingWatches());
  EXPECT_THAT(messages, IsEmpty());
}

TEST_F(FolderWatcher, EndsBehindItsMessageWhenItIsLetGoDuringIt) {
  FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  std::size_t alive = 0;
  onMessage = [&] {
    watch = {};
    alive = threads.Alive();
  };
  Write();
  ASSERT_TRUE(Hears(1));
  EXPECT_EQ(1u, alive);
  EXPECT_TRUE(tests::PumpUntil([&] { return threads.Alive() == 0; }));
  EXPECT_EQ(1u, messages.size());
  EXPECT_EQ(1u, threads.Watches().size());
}

TEST_F(FolderWatcher, IsRelievedByTheOneThatIsAssignedToIt) {
  FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  watch = StartFolderWatch(userFolder, window.Get(), told + 1);
  ASSERT_TRUE(tests::PumpUntil([&] { return threads.Alive() == 1; }));
  Write();
  ASSERT_TRUE(Hears(1));
  EXPECT_EQ(told + 1, messages[0].message);
}

HANDLE WINAPI CreateThreadAsleep(SECURITY_ATTRIBUTES *security, SIZE_T stackBytes, LPTHREAD_START_ROUTINE start,
                                 void *context, DWORD flags, DWORD *id) {
  return createThread(security, stackBytes, start, context, flags | CREATE_SUSPENDED, id);
}

TEST_F(FolderWatcher, StandsBeforeItsThreadRuns) {
  FolderWatch watch;
  {
    const tests::ImportSlot slot(&__imp_CreateThread, &CreateThreadAsleep);
    createThread = slot.Former();
    watch = StartFolderWatch(userFolder, window.Get(), told);
  }
  Write();
  ::ResumeThread(watch.thread.Get());
  EXPECT_TRUE(Hears(1));
}

TEST_F(FolderWatcher, IsNotStartedWithoutTheFolder) {
  tests::DeleteTree(folders.UserFolder());
  EXPECT_FALSE(StartFolderWatch(userFolder, window.Get(), told));
  EXPECT_EQ(0u, threads.Starts().size());
  EXPECT_EQ(0u, threads.StandingWatches());
}

TEST_F(FolderWatcher, EndsWhenTheFolderGoesMeanwhile) {
  const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  onMessage = [&] { tests::DeleteTree(folders.UserFolder()); };
  Write();
  EXPECT_TRUE(Ends(watch));
  EXPECT_EQ(1u, messages.size());
}

TEST_F(FolderWatcher, WatchesAFolderThatWasMadeAnew) {
  const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  tests::DeleteTree(folders.UserFolder());
  tests::MakeFolders(folders.UserFolder());
  const FolderWatch newer = StartFolderWatch(userFolder, window.Get(), told + 1);
  Write();
  // The former watch may tell of the folder's end as well, sooner or later.
  EXPECT_TRUE(tests::PumpUntil([&] {
    return std::any_of(messages.begin(), messages.end(), [](const MSG &each) { return each.message == told + 1; });
  }));
}

TEST_F(FolderWatcher, EndsWhenItsWaitFails) {
  const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  EXPECT_TRUE(threads.End());
  EXPECT_EQ(0u, ExitCode(watch));
  EXPECT_EQ(0u, threads.StandingWatches());
  EXPECT_THAT(messages, IsEmpty());
}

TEST_F(FolderWatcher, KeepsNothingOfAPass) {
  const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  Write();
  ASSERT_TRUE(Hears(1));
  ASSERT_TRUE(Asks(2));
  const int before = tests::CountKernelHandles();
  for (std::size_t round = 2; round <= 50; ++round) {
    Write();
    ASSERT_TRUE(Hears(round));
    ASSERT_TRUE(Asks(round + 1));
  }
  EXPECT_EQ(before, tests::CountKernelHandles());
}

TEST_F(FolderWatcher, ReservesLittleForItsThreads) {
  const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  ASSERT_EQ(1u, threads.Starts().size());
  EXPECT_GE(128u * 1024, threads.Starts()[0].stackBytes);
  EXPECT_LT(0u, threads.Starts()[0].stackBytes); // 0 stands for the program's own size
  EXPECT_EQ(static_cast<DWORD>(STACK_SIZE_PARAM_IS_A_RESERVATION), threads.Starts()[0].flags);
}

HANDLE WINAPI RefuseThread(SECURITY_ATTRIBUTES *, SIZE_T, LPTHREAD_START_ROUTINE, void *, DWORD, DWORD *) {
  ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return nullptr;
}

TEST_F(FolderWatcher, LogsAThreadThatCantBeStarted) {
  const tests::LogCapture log(folders);
  const tests::ImportSlot refusal(&__imp_CreateThread, &RefuseThread);
  EXPECT_FALSE(StartFolderWatch(userFolder, window.Get(), told));
  EXPECT_THAT(log.Lines(), ElementsAre("ERROR: FolderWatcher: can't start a thread, error 8"));
}

HANDLE WINAPI RefuseEvent(SECURITY_ATTRIBUTES *, BOOL, BOOL, LPCWSTR) {
  ::SetLastError(ERROR_NO_SYSTEM_RESOURCES);
  return nullptr;
}

TEST_F(FolderWatcher, StartsNoThreadThatCouldNotBeEnded) {
  const tests::LogCapture log(folders);
  const tests::ImportSlot createEvent(&__imp_CreateEventW, &RefuseEvent);
  EXPECT_FALSE(StartFolderWatch(userFolder, window.Get(), told));
  EXPECT_THAT(log.Lines(), ElementsAre("ERROR: FolderWatcher: can't start a thread, error 1450"));
}

TEST_F(FolderWatcher, KeepsNothingOfAThreadThatCantBeStarted) {
  const tests::ImportSlot refusal(&__imp_CreateThread, &RefuseThread);
  const int before = tests::CountKernelHandles();
  for (int i = 0; i < 100; ++i)
    EXPECT_FALSE(StartFolderWatch(userFolder, window.Get(), told));
  EXPECT_EQ(before, tests::CountKernelHandles());
}

LRESULT WINAPI RaiseInstead(HWND, UINT, WPARAM, LPARAM) { throw std::runtime_error("out of a send"); }

TEST_F(FolderWatcher, LetsNoExceptionOut) {
  OpenDockEventLog();
  const desk::EventLogSpy eventLog;
  const FolderWatch watch = StartFolderWatch(userFolder, window.Get(), told);
  {
    const tests::ImportSlot sendMessage(&__imp_SendMessageW, &RaiseInstead);
    Write();
    EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(watch.thread.Get(), 10'000));
  }
  EXPECT_EQ(0u, ExitCode(watch));
  EXPECT_THAT(desk::EventLogSpy::Reports(), ElementsAre(L"caught an unhandled exception in FolderWatchThread"));
}

} // namespace

} // namespace lumenor
