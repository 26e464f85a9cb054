#include "dock/watch/RegistryListener.h"

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "dock/DockMessages.h"
#include "support/ImportSlot.h"
#include "support/KeptRegistryKey.h"
#include "support/StartProgram.h"
#include "system/WindowException.h"

extern "C" decltype(&::TerminateThread) __imp_TerminateThread;
extern "C" decltype(&::RegNotifyChangeKeyValue) __imp_RegNotifyChangeKeyValue;
extern "C" decltype(&::SetEvent) __imp_SetEvent;

namespace lumenor {

namespace {

constexpr DWORD deadlineMs = 60'000;
constexpr wchar_t positionValue[] = L"DockPosition";

decltype(&::TerminateThread) platformTerminateThread = nullptr;
HANDLE toBeAsleep = nullptr;
std::vector<bool> wasAsleep;

decltype(&::RegNotifyChangeKeyValue) platformNotify = nullptr;
std::atomic<int> askings = 0;

/// The thread asks for the next change once at its start and once more at each waking.
LSTATUS WINAPI NoteAsking(HKEY key, BOOL subtree, DWORD filter, HANDLE event, BOOL asynchronous) {
  ++askings;
  return platformNotify(key, subtree, filter, event, asynchronous);
}

/// Notes whether the thread sleeps, and spares one that doesn't, since the test has to go on.
BOOL WINAPI KillIfAsleep(HANDLE thread, DWORD exitCode) {
  wasAsleep.push_back(::WaitForSingleObject(toBeAsleep, 0) == WAIT_OBJECT_0);
  return wasAsleep.back() ? platformTerminateThread(thread, exitCode) : FALSE;
}

BOOL WINAPI FailToSet(HANDLE) { return FALSE; }

/// A thread that watches a registry of the test's own and posts to a window of the test.
class RegistryListener : public ::testing::Test {
protected:
  RegistryListener() {
    registry.Create();
    platformNotify = notifications.Former();
  }
  ~RegistryListener() override {
    StopThread();
    ::DestroyWindow(window);
  }

  void Start(const wchar_t *eventName = registryListenerEventName) {
    StopThread();
    KernelHandle event(::CreateEventW(nullptr, FALSE, FALSE, eventName));
    thread = StartRegistryListener(std::move(event), window, sleeping.Get());
    ASSERT_TRUE(thread);
  }

  void StopThread() {
    if (!thread)
      return;
    EndRegistryListener(thread.Get(), sleeping.Get());
    ::WaitForSingleObject(thread.Get(), deadlineMs);
    thread.Reset();
    ::ResetEvent(sleeping.Get());
  }

  /// Runs `write` and waits until the thread has woken from it and sleeps again; returns the messages that it sent
  /// meanwhile.
  template <typename Write> std::vector<UINT> MessagesOfAWake(Write &&write) {
    const int before = askings;
    write();
    const ULONGLONG deadline = ::GetTickCount64() + deadlineMs;
    while (askings == before && ::GetTickCount64() < deadline)
      ::Sleep(1); // not by pumping: the messages are to stay
    EXPECT_LT(before, askings);
    EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(sleeping.Get(), deadlineMs));
    return WaitingMessages();
  }

  std::vector<UINT> MessagesOfAWrite(const wchar_t *name, const wchar_t *text, DWORD type = REG_SZ) {
    return MessagesOfAWake([&] { registry.SetText(name, text, type); });
  }

  /// The messages of the thread that wait.
  std::vector<UINT> WaitingMessages() {
    std::vector<UINT> messages;
    MSG message;
    while (::PeekMessageW(&message, window, DockAtTopMessage, DockAtBottomMessage, PM_REMOVE))
      messages.push_back(message.message);
    return messages;
  }

  /// The messages of the thread up to and including `last`.
  std::vector<UINT> MessagesUpTo(UINT last) {
    std::vector<UINT> messages;
    const ULONGLONG deadline = ::GetTickCount64() + deadlineMs;
    while (::GetTickCount64() < deadline) {
      MSG message;
      while (::PeekMessageW(&message, window, DockAtTopMessage, DockAtBottomMessage, PM_REMOVE)) {
        messages.push_back(message.message);
        if (message.message == last)
          return messages;
      }
      ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    }
    return messages;
  }

  DWORD ExitCode() {
    EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(thread.Get(), deadlineMs));
    DWORD code = STILL_ACTIVE;
    ::GetExitCodeThread(thread.Get(), &code);
    return code;
  }

  bool EventExists(const wchar_t *eventName) {
    const KernelHandle event(::OpenEventW(SYNCHRONIZE, FALSE, eventName));
    return static_cast<bool>(event);
  }

  const tests::KeptRegistryKey registry{HKEY_CURRENT_USER, L"SOFTWARE\\Tarnwick\\Lumenor"};
  HWND window = ::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  const KernelHandle sleeping{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  KernelHandle thread;
  const tests::ImportSlot<decltype(&::RegNotifyChangeKeyValue)> notifications{&__imp_RegNotifyChangeKeyValue,
                                                                              &NoteAsking};
};

using Messages = std::vector<UINT>;

TEST_F(RegistryListener, PostsBottom) {
  registry.SetText(positionValue, L"Top");
  Start();
  registry.SetText(positionValue, L"Bottom");
  EXPECT_EQ(std::vector<UINT>({1030}), MessagesUpTo(1030));
}

TEST_F(RegistryListener, PostsTop) {
  registry.SetText(positionValue, L"Bottom");
  Start();
  registry.SetText(positionValue, L"Top");
  EXPECT_EQ(std::vector<UINT>({1029}), MessagesUpTo(1029));
}

TEST_F(RegistryListener, TakesAnyOtherTextForBottom) {
  registry.SetText(positionValue, L"Top");
  Start();
  registry.SetText(positionValue, L"Left");
  EXPECT_EQ(std::vector<UINT>({1030}), MessagesUpTo(1030));
}

TEST_F(RegistryListener, TakesADeletedValueForTop) {
  registry.SetText(positionValue, L"Bottom");
  Start();
  registry.DeleteValue(positionValue);
  EXPECT_EQ(std::vector<UINT>({1029}), MessagesUpTo(1029));
}

TEST_F(RegistryListener, FollowsOneChangeAfterTheOther) {
  registry.SetText(positionValue, L"Top");
  Start();
  for (int round = 0; round < 5; ++round) {
    registry.SetText(positionValue, L"Bottom");
    EXPECT_EQ(std::vector<UINT>({1030}), MessagesUpTo(1030));
    registry.SetText(positionValue, L"Top");
    EXPECT_EQ(std::vector<UINT>({1029}), MessagesUpTo(1029));
  }
}

TEST_F(RegistryListener, PostsNothingForTheSameTextAgain) {
  registry.SetText(positionValue, L"Top");
  Start();
  // Another type, since the same data again wake nobody.
  EXPECT_EQ(Messages(), MessagesOfAWrite(positionValue, L"Top", REG_EXPAND_SZ));
  EXPECT_EQ(Messages(), MessagesOfAWrite(positionValue, L"Top"));
  EXPECT_EQ(Messages({1030}), MessagesOfAWrite(positionValue, L"Bottom"));
}

TEST_F(RegistryListener, PostsNothingForAnotherValueOfTheKey) {
  registry.SetText(positionValue, L"Bottom");
  Start();
  for (int round = 0; round < 10; ++round)
    EXPECT_EQ(Messages(), MessagesOfAWrite(L"ShowWelcomePage", std::to_wstring(round).c_str()));
  EXPECT_EQ(Messages({1029}), MessagesOfAWrite(positionValue, L"Top"));
}

TEST_F(RegistryListener, SeesTwoQuickWritesAsOne) {
  registry.SetText(positionValue, L"Top");
  Start();
  EXPECT_EQ(Messages(), MessagesOfAWake([&] {
              ::SuspendThread(thread.Get());
              registry.SetText(positionValue, L"Bottom");
              registry.SetText(positionValue, L"Top");
              ::ResumeThread(thread.Get());
            }));
  EXPECT_EQ(Messages({1030}), MessagesOfAWrite(positionValue, L"Bottom"));
}

TEST_F(RegistryListener, HearsAnotherProcess) {
  registry.SetText(positionValue, L"Top");
  Start();
  const tests::StartedProgram other = tests::StartProgram(
      L"reg.exe add HKCU\\SOFTWARE\\Tarnwick\\Lumenor /v DockPosition /d Bottom /f", {.flags = CREATE_NO_WINDOW});
  ASSERT_TRUE(other.process);
  EXPECT_EQ(std::vector<UINT>({1030}), MessagesUpTo(1030));
  EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(other.process.Get(), deadlineMs));
}

TEST_F(RegistryListener, EndsWithAFailureWithoutTheKey) {
  registry.Delete();
  Start(L"event of a thread that ends");
  EXPECT_EQ(static_cast<DWORD>(E_FAIL), ExitCode());
  EXPECT_FALSE(EventExists(L"event of a thread that ends"));
}

TEST_F(RegistryListener, LeavesAFailureOfTheWindowsAlone) {
  registry.Delete();
  try {
    throw std::runtime_error("of a window");
  } catch (...) {
    KeepWindowException();
  }
  Start();
  EXPECT_EQ(static_cast<DWORD>(E_FAIL), ExitCode());
  EXPECT_THROW(RethrowWindowException(), std::runtime_error);
}

TEST_F(RegistryListener, EndsWhenItsWaitFails) {
  thread = StartRegistryListener(KernelHandle(), window, sleeping.Get());
  EXPECT_EQ(0u, ExitCode());
}

TEST_F(RegistryListener, HasReadTheValueWhenItsStartComesBack) {
  // What the starter writes afterwards is a change, and can be no part of what the thread began with.
  for (int round = 0; round < 20; ++round) {
    StopThread();
    registry.SetText(positionValue, L"Top");
    Start();
    registry.SetText(positionValue, L"Bottom");
    ASSERT_EQ(std::vector<UINT>({1030}), MessagesUpTo(1030));
  }
}

TEST_F(RegistryListener, HasItsStartComeBackThoughItCannotTellThatItListens) {
  registry.SetText(positionValue, L"Top");
  {
    const tests::ImportSlot untold(&__imp_SetEvent, &FailToSet);
    Start();
  }
  registry.SetText(positionValue, L"Bottom");
  EXPECT_EQ(std::vector<UINT>({1030}), MessagesUpTo(1030));
}

TEST_F(RegistryListener, LeavesItsEventOpenWhenItIsKilled) {
  Start(L"event of a killed thread");
  StopThread();
  EXPECT_TRUE(EventExists(L"event of a killed thread"));
}

TEST_F(RegistryListener, StartsAgainOnTheEventOfTheKilledOne) {
  registry.SetText(positionValue, L"Top");
  Start();
  Start();
  registry.SetText(positionValue, L"Bottom");
  EXPECT_EQ(std::vector<UINT>({1030}), MessagesUpTo(1030));
}

// A thread that is killed at work may hold the heap's lock, and then nothing in the process goes on.
TEST_F(RegistryListener, IsKilledInItsSleepWhileChangesPourIn) {
  std::atomic<bool> ended = false;
  std::thread writer([&] {
    for (int round = 0; !ended; ++round)
      registry.SetText(positionValue, round % 2 == 0 ? L"Top" : L"Bottom");
  });
  {
    const tests::ImportSlot slot(&__imp_TerminateThread, &KillIfAsleep);
    platformTerminateThread = slot.Former();
    wasAsleep.clear();
    toBeAsleep = sleeping.Get();
    for (int round = 0; round < 100; ++round)
      Start();
    StopThread();
  }
  ended = true;
  writer.join();
  EXPECT_EQ(std::vector<bool>(100, true), wasAsleep);
}

TEST_F(RegistryListener, IsKilledEvenWhenItDoesNotGoBackToSleep) {
  Start();
  ::ResetEvent(sleeping.Get());
  const KernelHandle killed = std::exchange(thread, KernelHandle());
  EndRegistryListener(killed.Get(), sleeping.Get());
  EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(killed.Get(), deadlineMs));
}

TEST_F(RegistryListener, CanBeKilledAsSoonAsItsStartComesBack) {
  for (int round = 0; round < 100; ++round)
    Start();
  StopThread();
  // A lock that a killed thread holds for ever would keep this one from starting or from allocating.
  const KernelHandle probe(::CreateThread(
      nullptr, 0, [](void *) -> DWORD { return std::make_unique<int>(7) ? 7 : 0; }, nullptr, 0, nullptr));
  EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(probe.Get(), deadlineMs));
}

} // namespace

} // namespace lumenor
