// How the providers have a window told of changes; what they read is tested in ActionDataProviderTest.cpp.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "content/ActionDataProvider.h"
#include "content/ProviderData.h"
#include "support/AnsweringWindow.h"
#include "support/FolderThreads.h"
#include "support/HandleCounts.h"
#include "support/MessagePump.h"

extern "C" {
extern decltype(&::CreateThread) __imp_CreateThread;
}

namespace lumenor {

namespace {

using testing::ElementsAre;
using testing::SizeIs;

constexpr UINT told = WM_USER + 11;

class ProviderWatch : public ProviderData {
protected:
  ProviderWatch() { tests::MakeFolders(folders.UserFolder()); }

  bool Hears(std::size_t count) {
    return tests::PumpUntil([&] { return messages.size() >= count; });
  }

  /// Waits until every thread sleeps on its watch again.
  bool Settles() {
    return tests::PumpUntil([&] { return threads.StandingWatches() == threads.Alive(); });
  }

  std::vector<UINT> messages;
  std::function<void()> onMessage;
  tests::AnsweringWindow window{[this](UINT message, WPARAM, LPARAM) {
    messages.push_back(message);
    if (onMessage)
      onMessage();
    return 1;
  }};
  tests::FolderThreads threads; // the first to go: its threads send to the window
};

TEST_F(ProviderWatch, TellsOfAWrittenFile) {
  ForYouProvider provider;
  EXPECT_EQ(0u, threads.Alive());
  provider.Watch(window.Get(), told);
  WriteForYou("");
  EXPECT_TRUE(Hears(1));
  EXPECT_THAT(messages, ElementsAre(told));
}

TEST_F(ProviderWatch, AddsOneThreadEachTime) {
  SearchProvider provider;
  for (std::size_t count = 1; count <= 4; ++count) {
    provider.Watch(window.Get(), told);
    EXPECT_EQ(count, threads.Alive());
  }
  WriteForYou("");
  EXPECT_TRUE(Hears(4));
}

TEST_F(ProviderWatch, GoesOnWhenTheProviderIsGone) {
  auto provider = std::make_unique<ForYouProvider>();
  provider->Watch(window.Get(), told);
  provider.reset();
  EXPECT_EQ(1u, threads.Alive());
  WriteForYou("");
  EXPECT_TRUE(Hears(1));
}

TEST_F(ProviderWatch, HoldsNoThreadButTheLast) {
  ForYouProvider provider;
  provider.Watch(window.Get(), told);
  WriteForYou("");
  ASSERT_TRUE(Hears(1));
  ASSERT_TRUE(Settles());
  const int before = tests::CountKernelHandles();
  provider.Watch(window.Get(), told);
  // A watch is one handle; the test keeps one of its own for each thread.
  EXPECT_EQ(before + 2, tests::CountKernelHandles());
}

HANDLE WINAPI RefuseThread(SECURITY_ATTRIBUTES *, SIZE_T, LPTHREAD_START_ROUTINE, void *, DWORD, DWORD *) {
  ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return nullptr;
}

TEST_F(ProviderWatch, LeavesAProviderThatReadsWhenItCantStart) {
  WriteForYou(Numbered("Element", 1));
  ForYouProvider provider;
  const tests::ImportSlot createThread(&__imp_CreateThread, &RefuseThread);
  provider.Watch(window.Get(), told);
  EXPECT_THAT(provider.GetElements(), SizeIs(1));
}

TEST_F(ProviderWatch, LosesNoLastStateOfAThousandWrites) {
  ForYouProvider provider;
  std::wstring seen;
  const auto refresh = [&] {
    provider.Watch(window.Get(), told);
    if (const ElementList elements = provider.GetElements(); !elements.empty())
      seen = elements[0].Head;
  };
  refresh();
  onMessage = refresh;
  for (int i = 1; i <= 1000; ++i) {
    WriteForYou("<Element><Head>" + std::to_string(i) + "</Head></Element>");
    if (i % 250 == 0 && i < 1000) {
      ASSERT_TRUE(Hears(messages.size() + 1)); // somewhere amid the answers of several threads
    }
  }
  EXPECT_TRUE(tests::PumpUntil([&] { return seen == L"1000"; }));
  ASSERT_TRUE(Settles());
  EXPECT_EQ(1 + messages.size(), threads.Alive());
}

TEST_F(ProviderWatch, MissesNoWriteBehindTheReading) {
  ForYouProvider provider;
  std::wstring seen;
  const auto refresh = [&] {
    provider.Watch(window.Get(), told);
    if (const ElementList elements = provider.GetElements(); !elements.empty())
      seen = elements[0].Head;
  };
  refresh();
  onMessage = [&] {
    refresh();
    if (messages.size() == 1)
      WriteForYou("<Element><Head>later</Head></Element>"); // the first thread still waits for this answer
  };
  WriteForYou("<Element><Head>first</Head></Element>");
  EXPECT_TRUE(tests::PumpUntil([&] { return seen == L"later"; }));
}

} // namespace

} // namespace lumenor
