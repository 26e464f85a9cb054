#include "dock/flyouts/DataProviderFlyout.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "dock/DockMessages.h"
#include "dock/flyouts/DockButton.h"
#include "dock/flyouts/FakeProvider.h"
#include "dock/Rectangles.h"
#include "dock/TestBar.h"
#include "support/Recorder.h"
#include "system/WindowException.h"

namespace lumenor {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr RECT givenBounds = {300, 400, 540, 999};

const ElementList threeProviders = {MakeElement(L"Web", L"url", L"https://web.example/?q="),
                                    MakeElement(L"Map", L"url", L"https://map.example/?q="),
                                    MakeElement(L"Help", L"helpSearch")};

/// What the owner was told of a choice.
struct Told {
  Element element;
  LPARAM lParam;
  bool shown;
};

class SearchRows : public testing::Test {
protected:
  ~SearchRows() override { ForgetWindowException(); }

  void Choose(std::size_t index) {
    const HWND row = flyout.GetItems().at(index)->GetHandle();
    ::SendMessageW(row, WM_COMMAND, 0, reinterpret_cast<LPARAM>(row));
  }

  LRESULT Answer(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == RefreshSearchProviderMessage)
      flyout.Refresh();
    if (message == SetSearchProviderMessage)
      told.push_back({*reinterpret_cast<const Element *>(wParam), lParam, ::IsWindowVisible(flyout.handle) != FALSE});
    return 1;
  }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  std::vector<Told> told;
  tests::AnsweringWindow owner{
      [this](UINT message, WPARAM wParam, LPARAM lParam) { return Answer(message, wParam, lParam); }, nullptr};
  FakeProvider provider;
  TestSearchFlyout flyout{givenBounds, L"Search with", provider};
};

TEST_F(SearchRows, StandWithoutATitle) {
  provider.list = threeProviders;
  ASSERT_NE(nullptr, flyout.Create(owner.Get()));
  EXPECT_EQ(0, flyout.Header().DesiredHeight.Get());
  EXPECT_EQ(Rect(300, 400, 540, 520), ScreenRect(flyout.handle)); // three times 40
  EXPECT_EQ(Rect(300, 400, 540, 440), ScreenRect(flyout.GetItems()[0]->GetHandle()));
  EXPECT_EQ(L"Search with", flyout.Header().Text.Get()); // though it is never seen
}

TEST_F(SearchRows, TakeNoHeightWithoutProviders) {
  flyout.Create(owner.Get());
  EXPECT_EQ(Rect(300, 400, 540, 400), ScreenRect(flyout.handle));
  flyout.ToggleVisibility();
  desk::PumpAll();
  EXPECT_TRUE(::IsWindow(flyout.handle));
}

TEST_F(SearchRows, AreWatchedByAMessageOfTheirOwn) {
  flyout.Create(owner.Get());
  EXPECT_EQ(owner.Get(), provider.watcher);
  EXPECT_EQ(1036u, provider.watchedBy);
}

TEST_F(SearchRows, FollowTheList) {
  flyout.Create(owner.Get());
  provider.list = threeProviders;
  ::SendMessageW(owner.Get(), RefreshSearchProviderMessage, 0, 0);
  EXPECT_THAT(flyout.GetItems(), SizeIs(3));
}

TEST_F(SearchRows, TellTheOwnerOfTheChosenWebSearch) {
  provider.list = threeProviders;
  flyout.Create(owner.Get());
  Choose(1);
  ASSERT_THAT(told, SizeIs(1));
  EXPECT_EQ(threeProviders[1], told[0].element);
  EXPECT_EQ(0, told[0].lParam);
}

TEST_F(SearchRows, TellTheOwnerOfTheChosenHelpSearch) {
  provider.list = threeProviders;
  flyout.Create(owner.Get());
  Choose(2);
  ASSERT_THAT(told, SizeIs(1));
  EXPECT_EQ(threeProviders[2], told[0].element);
}

TEST_F(SearchRows, HideBeforeTheOwnerIsTold) {
  provider.list = threeProviders;
  flyout.Create(owner.Get());
  flyout.ToggleVisibility();
  desk::PumpAll();
  ClickAt({420, 460});
  ASSERT_TRUE(desk::PumpUntil([&] { return !told.empty(); }));
  EXPECT_EQ(threeProviders[1], told[0].element);
  EXPECT_FALSE(told[0].shown);
}

TEST_F(SearchRows, RunAProgramAndTellNobody) {
  const tests::Recorder recorder(folders);
  const std::wstring program = folders.Root() + L"\\program.exe";
  recorder.InstallAs(program);
  provider.list = {MakeElement(L"Run", L"exe", L"\"" + program + L"\"")};
  flyout.Create(owner.Get());
  Choose(0);
  EXPECT_THAT(recorder.WaitForCommandLines(1), ElementsAre(HasSubstr(program)));
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(SearchRows, CompareTheActionWordExactly) {
  for (const wchar_t *word : {L"URL", L"helpsearch", L"url ", L"", L"urls"})
    provider.list.push_back(MakeElement(L"Odd", word, L"https://web.example/"));
  flyout.Create(owner.Get());
  for (std::size_t row = 0; row < provider.list.size(); ++row)
    Choose(row);
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(SearchRows, AreReplacedWhileTheOwnerIsTold) {
  provider.list = threeProviders;
  flyout.Create(owner.Get());
  flyout.onChosen = [&](const Element &) {
    provider.list = {MakeElement(L"New", L"url")};
    ::SendMessageW(owner.Get(), RefreshSearchProviderMessage, 0, 0);
  };
  Choose(0);
  ASSERT_THAT(told, SizeIs(1));
  EXPECT_EQ(threeProviders[0], told[0].element); // not the one that has taken its place
}

} // namespace

} // namespace lumenor
