#include "dock/flyouts/DataProviderFlyout.h"

#include <memory>
#include <stdexcept>

#include <gmock/gmock.h>

#include "dock/DockMessages.h"
#include "dock/flyouts/DockButton.h"
#include "dock/flyouts/FakeProvider.h"
#include "dock/Rectangles.h"
#include "dock/TestBar.h"
#include "drawing/Pictures.h"
#include "support/HandleCounts.h"
#include "support/ProcessorTime.h"
#include "support/Recorder.h"
#include "system/HResultError.h"
#include "system/WindowException.h"
#include "toolkit/drawing/WICHelper.h"

namespace lumenor {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr RECT givenBounds = {300, 400, 540, 999};

const ElementList threeElements = {MakeElement(L"Mail"), MakeElement(L"News"), MakeElement(L"Weather")};

/// A flyout over an owner that answers a refresh as the dock does.
class ProviderRows : public testing::Test {
protected:
  ~ProviderRows() override {
    ForgetWindowException();
    desk::MoveCursor({5, 5}); // so that the next test's windows don't come up under it
  }

  void Open() {
    flyout.ToggleVisibility();
    desk::PumpAll();
  }

  HWND Row(std::size_t index) const { return flyout.GetItems().at(index)->GetHandle(); }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  tests::AnsweringWindow owner{[this](UINT message, WPARAM, LPARAM) {
                                 if (message == RefreshForYouMessage)
                                   flyout.Refresh();
                                 return 1;
                               },
                               nullptr};
  FakeProvider provider;
  TestDataFlyout flyout{givenBounds, L"For you", provider, RefreshForYouMessage};
};

TEST_F(ProviderRows, AreNotReadBeforeThereIsAWindow) {
  EXPECT_THAT(provider.calls, IsEmpty());
  EXPECT_THAT(flyout.Elements(), IsEmpty());
}

TEST_F(ProviderRows, AreMadeOnceWithTheWindow) {
  provider.list = threeElements;
  ASSERT_NE(nullptr, flyout.Create(owner.Get()));
  EXPECT_EQ(1, flyout.creations);
  EXPECT_EQ(threeElements, flyout.Elements());
  EXPECT_THAT(flyout.GetItems(), SizeIs(3));
}

TEST_F(ProviderRows, AreMadeWithTheWindowOfAnEmptyListToo) {
  ASSERT_NE(nullptr, flyout.Create(owner.Get()));
  EXPECT_EQ(1, flyout.creations);
  EXPECT_THAT(flyout.GetItems(), IsEmpty());
  EXPECT_EQ(Rect(300, 400, 540, 440), ScreenRect(flyout.handle));
}

TEST_F(ProviderRows, AreWatchedForTheOwnerBeforeTheyAreRead) {
  flyout.Create(owner.Get());
  EXPECT_THAT(provider.calls, ElementsAre("Watch", "GetElements"));
  EXPECT_EQ(owner.Get(), provider.watcher);
  EXPECT_EQ(static_cast<UINT>(RefreshForYouMessage), provider.watchedBy);
}

TEST_F(ProviderRows, AreWatchedOnceMoreAtEachRefresh) {
  flyout.Create(owner.Get());
  flyout.Refresh();
  EXPECT_THAT(provider.calls, ElementsAre("Watch", "GetElements", "Watch", "GetElements"));
  EXPECT_EQ(2, flyout.creations);
}

TEST_F(ProviderRows, AreNotReadWithoutAWindow) {
  provider.list = threeElements;
  flyout.Refresh();
  EXPECT_THAT(provider.calls, IsEmpty());
  EXPECT_THAT(flyout.GetItems(), IsEmpty());
}

TEST_F(ProviderRows, StandUnderTheTitle) {
  provider.list = {MakeElement(L"Only")};
  flyout.Create(owner.Get());
  EXPECT_EQ(L"For you", flyout.Header().Text.Get());
  EXPECT_EQ(Rect(300, 400, 540, 480), ScreenRect(flyout.handle)); // 40 for the title, 40 for the row
  EXPECT_EQ(Rect(300, 440, 540, 480), ScreenRect(Row(0)));
}

TEST_F(ProviderRows, FollowTheList) {
  flyout.Create(owner.Get());
  provider.list = threeElements;
  ::SendMessageW(owner.Get(), RefreshForYouMessage, 0, 0);
  EXPECT_THAT(flyout.GetItems(), SizeIs(3));
  EXPECT_EQ(Rect(300, 400, 540, 560), ScreenRect(flyout.handle));
  provider.list = {threeElements[2]};
  ::SendMessageW(owner.Get(), RefreshForYouMessage, 0, 0);
  ASSERT_THAT(flyout.GetItems(), SizeIs(1));
  EXPECT_EQ(threeElements[2], flyout.GetItems()[0]->GetElement());
  EXPECT_EQ(Rect(300, 400, 540, 480), ScreenRect(flyout.handle));
}

TEST_F(ProviderRows, AreACopyOfTheList) {
  provider.list = threeElements;
  flyout.Create(owner.Get());
  provider.list.clear();
  EXPECT_EQ(threeElements, flyout.Elements());
}

// A refresh may come at any time.

TEST_F(ProviderRows, LeaveAHiddenFlyoutHidden) {
  flyout.Create(owner.Get());
  provider.list = threeElements;
  flyout.Refresh();
  desk::PumpAll();
  EXPECT_FALSE(::IsWindowVisible(flyout.handle));
  EXPECT_EQ(lumenor::Visibility::Hidden, flyout.Visibility.Get());
}

TEST_F(ProviderRows, LeaveTheActivationOfAHiddenFlyoutAlone) {
  flyout.Create(owner.Get());
  const desk::Backdrop other({700, 100, 800, 200}, RGB(0, 128, 0));
  ClickAt({750, 150});
  ::SetForegroundWindow(other.Get());
  ::SetActiveWindow(other.Get());
  desk::PumpAll();
  ASSERT_EQ(other.Get(), ::GetForegroundWindow());
  provider.list = threeElements;
  flyout.Refresh();
  desk::PumpAll();
  EXPECT_EQ(other.Get(), ::GetForegroundWindow());
  EXPECT_EQ(other.Get(), ::GetActiveWindow());
}

TEST_F(ProviderRows, OfAHiddenFlyoutLeaveAnOpenOneOpen) {
  FakeProvider otherProvider;
  otherProvider.list = threeElements;
  TestDataFlyout open({700, 400, 940, 999}, L"Other", otherProvider, RefreshSearchProviderMessage);
  flyout.Create(owner.Get());
  open.Create(owner.Get());
  open.ToggleVisibility();
  desk::PumpAll();
  provider.list = threeElements;
  flyout.Refresh();
  open.Refresh();
  desk::PumpAll();
  EXPECT_TRUE(::IsWindowVisible(open.handle));
  EXPECT_FALSE(::IsWindowVisible(flyout.handle));
}

TEST_F(ProviderRows, AreReplacedUnderTheCursor) {
  provider.list = threeElements;
  flyout.Create(owner.Get());
  Open();
  desk::MoveCursor({420, 500}); // the second row
  ASSERT_TRUE(desk::PumpUntil([&] { return flyout.GetItems()[1]->IsMouseOver.Get() != 0; }));
  const HWND former = Row(1);
  provider.list = {MakeElement(L"First"), MakeElement(L"Second")};
  ::SendMessageW(owner.Get(), RefreshForYouMessage, 0, 0);
  desk::PumpAll();
  EXPECT_FALSE(::IsWindow(former));
  EXPECT_TRUE(::IsWindowVisible(flyout.handle));
  EXPECT_EQ(Rect(300, 400, 540, 520), ScreenRect(flyout.handle));
  std::vector<std::wstring> chosen;
  flyout.onChosen = [&](const Element &element) { chosen.push_back(element.Head); };
  ClickAt({420, 501});
  EXPECT_TRUE(desk::PumpUntil([&] { return !chosen.empty(); }));
  EXPECT_THAT(chosen, ElementsAre(L"Second"));
}

TEST_F(ProviderRows, AreReplacedWhileOneIsPressed) {
  provider.list = threeElements;
  flyout.Create(owner.Get());
  std::vector<std::wstring> chosen;
  flyout.onChosen = [&](const Element &element) { chosen.push_back(element.Head); };
  Open();
  desk::MoveCursor({420, 500});
  desk::PressLeftButton();
  ASSERT_TRUE(desk::PumpUntil([&] { return flyout.GetItems()[1]->IsPressed.Get() != 0; }));
  ::SendMessageW(owner.Get(), RefreshForYouMessage, 0, 0);
  desk::PumpAll();
  desk::ReleaseLeftButton();
  desk::PumpAll();
  EXPECT_THAT(chosen, IsEmpty()); // the press was the former row's
  EXPECT_TRUE(::IsWindowVisible(flyout.handle));
  ClickAt({420, 500});
  EXPECT_TRUE(desk::PumpUntil([&] { return !chosen.empty(); }));
  EXPECT_THAT(chosen, ElementsAre(L"News"));
}

void Click(HWND row) { ::SendMessageW(row, WM_COMMAND, 0, reinterpret_cast<LPARAM>(row)); }

TEST_F(ProviderRows, AreReplacedWhileAChoiceIsHandled) {
  provider.list = threeElements;
  flyout.Create(owner.Get());
  std::vector<std::wstring> chosen;
  flyout.onChosen = [&](const Element &element) {
    provider.list = {MakeElement(L"New")};
    ::SendMessageW(owner.Get(), RefreshForYouMessage, 0, 0);
    chosen.push_back(element.Head);
  };
  Click(Row(1));
  EXPECT_THAT(chosen, ElementsAre(L"News"));
  EXPECT_THAT(flyout.GetItems(), SizeIs(1));
}

TEST_F(ProviderRows, OutliveChoicesWithinChoices) {
  // What is chosen may show a dialog, behind which the rows are made anew and the user chooses again.
  provider.list = threeElements;
  flyout.Create(owner.Get());
  std::vector<std::weak_ptr<DockButton>> clicked;
  std::vector<bool> alive;
  flyout.onChosen = [&](const Element &) {
    if (clicked.size() == 3)
      return;
    flyout.Refresh();
    clicked.push_back(flyout.GetItems()[0]);
    Click(Row(0));
    for (const std::weak_ptr<DockButton> &button : clicked)
      alive.push_back(!button.expired());
  };
  clicked.push_back(flyout.GetItems()[0]);
  Click(Row(0));
  EXPECT_THAT(alive, ElementsAre(true, true, true, true, true, true));
}

TEST_F(ProviderRows, HideBeforeTheChosenActionRuns) {
  provider.list = threeElements;
  flyout.Create(owner.Get());
  Open();
  ClickAt({420, 500});
  EXPECT_TRUE(desk::PumpUntil([&] { return !flyout.shownWhenChosen.empty(); }));
  EXPECT_THAT(flyout.shownWhenChosen, ElementsAre(false));
}

TEST_F(ProviderRows, RunTheActionOfTheChosenElement) {
  const tests::Recorder recorder(folders);
  const std::wstring program = folders.Root() + L"\\program.exe";
  recorder.InstallAs(program);
  provider.list = {MakeElement(L"Run", L"exe", L"\"" + program + L"\"")};
  flyout.Create(owner.Get());
  Click(Row(0));
  EXPECT_THAT(recorder.WaitForCommandLines(1), ElementsAre(HasSubstr(program)));
}

// Data that nothing can be made of.

TEST_F(ProviderRows, TakeTheirWindowAloneWithThemWhenTheyFailAtTheStart) {
  const desk::EventLogSpy eventLog;
  provider.onGetElements = [] { throw std::runtime_error("out of the provider"); };
  EXPECT_EQ(nullptr, flyout.Create(owner.Get()));
  EXPECT_THAT(desk::EventLogSpy::Reports(), ElementsAre(L"caught an unhandled exception in OnInitDialog"));
  EXPECT_TRUE(::IsWindow(owner.Get()));
  EXPECT_EQ(nullptr, flyout.handle);
}

TEST_F(ProviderRows, StayAwayAfterAFailureAtTheStart) {
  provider.list = threeElements;
  provider.onGetElements = [] { throw std::runtime_error("out of the provider"); };
  flyout.Create(owner.Get());
  provider.onGetElements = nullptr;
  provider.calls.clear();
  flyout.Refresh();
  flyout.SetBounds(givenBounds);
  flyout.ToggleVisibility();
  EXPECT_THAT(provider.calls, IsEmpty());
  EXPECT_TRUE(::IsWindow(owner.Get()));
}

TEST_F(ProviderRows, ShowTheDefaultPictureInPlaceOfAFileThatIsNone) {
  const std::wstring noPicture = folders.Root() + L"\\no-picture.png";
  tests::WriteBytes(noPicture, "this is no picture");
  const std::wstring picture = folders.Root() + L"\\blue.png";
  tests::WritePicture(picture, tests::SolidPicture(24, 24, 0xFF0000FF));
  const tests::LogCapture log(folders);
  const desk::Backdrop behind({290, 390, 550, 570}, RGB(0, 0, 0));
  provider.list = {MakeElement(L"", L"", L"", noPicture), MakeElement(L"", L"", L"", picture)};
  ASSERT_NE(nullptr, flyout.Create(owner.Get()));
  ASSERT_THAT(flyout.GetItems(), SizeIs(2));
  EXPECT_EQ(noPicture, flyout.GetItems()[0]->GetElement().Image);
  EXPECT_THAT(log.Lines(), testing::Contains("ERROR: FlyoutWindow: can't show " + tests::Utf8(noPicture) +
                                             ", error 88982f50, loading default image"));
  Open();
  EXPECT_TRUE(desk::PumpUntil([] { return desk::PixelAt({320, 500}) == 0x0000FF; }));
  // The plate over black stays darker than this.
  EXPECT_LT(0x60u, desk::PixelAt({320, 460}) & 0xFF);
}

TEST_F(ProviderRows, AreMadeOfPicturesOfEveryBrokenKind) {
  const std::wstring folder = folders.Root() + L"\\a-folder.png", cut = folders.Root() + L"\\cut.png",
                     whole = folders.Root() + L"\\whole.png", empty = folders.Root() + L"\\empty.png";
  tests::MakeFolders(folder);
  tests::WritePicture(whole, tests::SolidPicture(64, 64, 0xFF00FF00));
  const std::string bytes = tests::ReadBytes(whole);
  tests::WriteBytes(cut, bytes.substr(0, bytes.size() / 2));
  tests::WriteBytes(empty, "");
  const std::wstring longName(65'536, L'x');
  for (const std::wstring &image : {folder, cut, empty, longName, std::wstring(L"::<>|?*"), std::wstring(L"\\\\.\\nul"),
                                    std::wstring(L"con"), std::wstring(L"C:\\")})
    provider.list.push_back(MakeElement(L"Row", L"", L"", image));
  ASSERT_NE(nullptr, flyout.Create(owner.Get()));
  EXPECT_THAT(flyout.GetItems(), SizeIs(provider.list.size()));
  Open();
  EXPECT_TRUE(::IsWindow(flyout.handle));
}

TEST_F(ProviderRows, HoldTextsOf64Kilobytes) {
  const std::wstring text(65'536, L'W'), words = [] {
    std::wstring all;
    for (int i = 0; i < 13'000; ++i)
      all += L"word ";
    return all;
  }();
  for (const std::wstring &label : {text, words, text, words, text})
    provider.list.push_back(MakeElement(label, L"exe", text));
  const ULONGLONG start = tests::ProcessorMs();
  ASSERT_NE(nullptr, flyout.Create(owner.Get()));
  Open();
  flyout.Refresh();
  EXPECT_GT(10000u, tests::ProcessorMs() - start);
  EXPECT_THAT(flyout.GetItems(), SizeIs(5));
  EXPECT_TRUE(::IsWindowVisible(flyout.handle));
  EXPECT_EQ(Rect(300, 440, 540, 480), ScreenRect(Row(0)));
}

TEST_F(ProviderRows, OpenNoDocumentThatListsItself) {
  tests::WriteText(folders.UserFolder() + L"\\Loop.xml",
                   L"<UIRoot><Loop><Elements><Element><Head>Loop</Head><ActionType>"
                   L"xml</ActionType><ActionParams>Loop</ActionParams></Element>"
                   L"</Elements></Loop></UIRoot>");
  provider.list = {MakeElement(L"Loop", L"xml", L"Loop")};
  ASSERT_NE(nullptr, flyout.Create(owner.Get()));
  ASSERT_THAT(flyout.GetItems(), SizeIs(1));
  EXPECT_EQ(nullptr, flyout.GetItems()[0]->GetFlyout());
  Click(Row(0));
  EXPECT_TRUE(::IsWindow(flyout.handle));
}

TEST_F(ProviderRows, DoNothingForAnUnknownAction) {
  provider.list = {MakeElement(L"Odd", L"format", L"c:")};
  flyout.Create(owner.Get());
  Open();
  Click(Row(0));
  EXPECT_FALSE(::IsWindowVisible(flyout.handle));
  EXPECT_TRUE(::IsWindow(flyout.handle));
}

/// References to the object, the caller's not counted.
unsigned long ReferencesTo(IUnknown *object) {
  object->AddRef();
  return object->Release();
}

TEST_F(ProviderRows, LeaveNothingBehindWhenTheyAreReplaced) {
  const std::wstring picture = folders.Root() + L"\\blue.png", noPicture = folders.Root() + L"\\no.png";
  tests::WritePicture(picture, tests::SolidPicture(24, 24, 0xFF0000FF));
  tests::WriteBytes(noPicture, "this is no picture");
  provider.list = {MakeElement(L"One", L"url", L"x", picture), MakeElement(L"Two", L"url", L"x", noPicture)};
  flyout.Create(owner.Get());
  const auto count = [&] {
    desk::PumpAll();
    return std::vector<long>{tests::CountWindows(), tests::CountGdiObjects(), tests::CountKernelHandles(),
                             static_cast<long>(ReferencesTo(flyout.Target())),
                             static_cast<long>(ReferencesTo(GetImagingFactory().Get()))};
  };
  for (int round = 0; round < 5; ++round)
    flyout.Refresh();
  const std::vector<long> before = count();
  for (int round = 0; round < 60; ++round)
    flyout.Refresh();
  EXPECT_EQ(before, count());
  Open();
  flyout.Refresh();
  const std::vector<long> open = count();
  for (int round = 0; round < 20; ++round)
    flyout.Refresh();
  EXPECT_EQ(open, count());
}

} // namespace

} // namespace lumenor
