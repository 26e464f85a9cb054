// How the providers notify a window of changes; what they read is tested in ActionDataProviderTest.cpp.

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
using testing::IsEmpty;
using testing::SizeIs;

constexpr UINT told = WM_USER + 11;

class ProviderWatch : public ProviderData {
protected:
  ProviderWatch() { tests::WriteBytes(Other(), "content"); }

  bool Hears(std::size_t count) {
    return tests::PumpUntil([&] { return messages.size() >= count; });
  }

  /// Waits until every thread sleeps on its watch again.
  bool Settles() {
    return tests::PumpUntil([&] { return threads.StandingWatches() == threads.Alive(); });
  }

  /// Waits until there are `count` threads.
  bool Comes(std::size_t count) {
    return tests::PumpUntil([&] { return threads.Alive() == count; });
  }

  std::wstring Other() const { return folders.UserFolder() + L"\\other.txt"; }
  void Touch() const { tests::TouchFile(Other()); }

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

TEST_F(ProviderWatch, KeepsOneThreadHoweverOftenItIsAskedFor) {
  SearchProvider provider;
  for (int count = 1; count <= 20; ++count) {
    provider.Watch(window.Get(), told);
    ASSERT_TRUE(Comes(1)) << threads.Alive();
  }
  WriteForYou("");
  EXPECT_TRUE(Hears(1));
}

TEST_F(ProviderWatch, KeepsOneThreadOverManyChanges) {
  ForYouProvider provider;
  provider.Watch(window.Get(), told);
  onMessage = [&] { provider.Watch(window.Get(), told); };
  for (std::size_t change = 1; change <= 50; ++change) {
    Touch();
    ASSERT_TRUE(Hears(change));
    ASSERT_TRUE(Comes(1)) << threads.Alive();
  }
  EXPECT_EQ(50u, messages.size());
}

TEST_F(ProviderWatch, StandsAnewBeforeTheFormerOneEnds) {
  ForYouProvider provider;
  provider.Watch(window.Get(), told);
  std::vector<std::size_t> standing;
  onMessage = [&] {
    provider.Watch(window.Get(), told);
    standing.push_back(threads.StandingWatches());
  };
  Touch();
  ASSERT_TRUE(Hears(1));
  ASSERT_TRUE(Comes(1));
  EXPECT_THAT(standing, ElementsAre(2u)); // the former one's handle is open as long as its message is answered
}

TEST_F(ProviderWatch, EndsWithTheProvider) {
  auto provider = std::make_unique<ForYouProvider>();
  provider->Watch(window.Get(), told);
  provider.reset();
  EXPECT_TRUE(Comes(0));
  Touch();
  tests::PumpMessages();
  EXPECT_THAT(messages, IsEmpty());
}

TEST_F(ProviderWatch, EndsWithAProviderThatGoesDuringItsMessage) {
  auto provider = std::make_unique<ForYouProvider>();
  provider->Watch(window.Get(), told);
  onMessage = [&] { provider.reset(); };
  Touch();
  ASSERT_TRUE(Hears(1));
  EXPECT_TRUE(Comes(0));
  EXPECT_THAT(messages, ElementsAre(told));
}

TEST_F(ProviderWatch, LeavesNoThreadOfManyProviders) {
  const int before = tests::CountKernelHandles();
  for (int cycle = 0; cycle < 50; ++cycle) {
    ForYouProvider provider;
    provider.Watch(window.Get(), told);
  }
  EXPECT_TRUE(Comes(0));
  EXPECT_EQ(before + 50, tests::CountKernelHandles()); // the test keeps a handle of its own for each thread
}

TEST_F(ProviderWatch, HoldsNothingOfItsFormerThreads) {
  ForYouProvider provider;
  const auto handlesAfterAWatch = [&] {
    provider.Watch(window.Get(), told);
    EXPECT_TRUE(Comes(1));
    return tests::CountKernelHandles();
  };
  handlesAfterAWatch();
  const int before = handlesAfterAWatch();
  EXPECT_EQ(before + 1, handlesAfterAWatch()); // the test's own of the thread
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
      ASSERT_TRUE(Hears(messages.size() + 1)); // somewhere amid the answers
    }
  }
  EXPECT_TRUE(tests::PumpUntil([&] { return seen == L"1000"; }));
  ASSERT_TRUE(Settles());
  EXPECT_TRUE(Comes(1)) << threads.Alive();
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
