// What the bar shows of files that others write while it runs.

#include <stdexcept>

#include <gtest/gtest.h>

#include "content/DocumentNames.h"
#include "content/Documents.h"
#include "dock/bar/BarFixture.h"
#include "drawing/Pictures.h"
#include "support/Desk.h"
#include "support/HandleCounts.h"
#include "system/Handles.h"
#include "system/Paths.h"

extern "C" decltype(&::CompareFileTime) __imp_CompareFileTime;

namespace lumenor {

namespace {

constexpr ULONGLONG second = 10'000'000; // in the units of a file time

class Updates : public BarFixture {
protected:
  Updates() {
    tests::MakeFolders(folders.Root() + L"\\Dock");
    tests::MakeFolders(folders.Root() + L"\\resources");
    tests::WritePicture(folders.Root() + L"\\resources\\foryou_idle.png", tests::SolidPicture(32, 32, idle));
    tests::WritePicture(ActivePicturePath(), tests::SolidPicture(32, 32, active));
    ::GetCurrentDirectoryW(MAX_PATH, formerFolder);
    ::SetCurrentDirectoryW((folders.Root() + L"\\Dock").c_str());
  }
  ~Updates() override { ::SetCurrentDirectoryW(formerFolder); }

  static constexpr std::uint32_t idle = 0xFFFF0000;
  static constexpr std::uint32_t active = 0xFF00FF00;

  std::wstring ActivePicturePath() const { return folders.Root() + L"\\resources\\foryou_active.png"; }

  /// Writes the For You list with these heads.
  static void WriteForYou(const std::vector<std::wstring> &heads) {
    std::wstring elements;
    for (const std::wstring &head : heads)
      elements += L"<Element><Head>" + head + L"</Head><ActionType>url</ActionType></Element>";
    const std::wstring name = L"Lumenor.MainFrame.Controls.DockPopup.ForYou";
    tests::WriteText(DocumentPath(forYouListName),
                     L"<UIRoot><" + name + L"><Elements>" + elements + L"</Elements></" + name + L"></UIRoot>");
  }

  /// Shifts the write time of the For You list.
  static void Age(std::int64_t seconds) {
    FILETIME time = LastWriteTime(DocumentPath(forYouListName));
    ULARGE_INTEGER number{{time.dwLowDateTime, time.dwHighDateTime}};
    number.QuadPart += static_cast<ULONGLONG>(seconds) * second;
    time = {number.LowPart, number.HighPart};
    const FileHandle file(::CreateFileW(DocumentPath(forYouListName).c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ,
                                        nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(::SetFileTime(file.Get(), nullptr, nullptr, &time));
  }

  /// Builds the bar; the folder isn't watched, so that only the test's own messages refresh anything.
  void StartUnwatched() {
    ::CreateDirectoryW(folders.UserFolder().c_str(), nullptr);
    Start();
    desk::PumpAll();
  }

  LRESULT Refresh(UINT message) const { return ::SendMessageW(dock->handle, message, 0, 0); }

  template <typename Flyout> Flyout &FlyoutOf(bool (*fits)(const Flyout &)) const {
    struct Search {
      bool (*fits)(const Flyout &);
      Flyout *found;
    } search{fits, nullptr};
    ::EnumThreadWindows(
        ::GetCurrentThreadId(),
        [](HWND window, LPARAM data) -> BOOL {
          auto &wanted = *reinterpret_cast<Search *>(data);
          auto *const flyout = dynamic_cast<Flyout *>(ObjectOf(window));
          if (flyout != nullptr && wanted.fits(*flyout))
            wanted.found = flyout;
          return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    EXPECT_NE(nullptr, search.found);
    return *search.found;
  }

  DataProviderFlyout &ForYouFlyout() const {
    return FlyoutOf<DataProviderFlyout>([](const DataProviderFlyout &flyout) {
      return dynamic_cast<const SearchProviderFlyout *>(&flyout) == nullptr;
    });
  }

  static std::vector<std::wstring> HeadsOf(const FlyoutWindow &flyout) {
    std::vector<std::wstring> heads;
    for (const auto &item : flyout.GetItems())
      heads.push_back(item->GetElement().Head);
    return heads;
  }

  /// The colour of the For You button's middle becomes this.
  bool Shows(std::uint32_t color) const {
    const POINT middle = desk::MiddleOf(BarTree(*dock).forYouButton.GetHandle());
    return desk::PumpUntil([&] { return desk::PixelAt(middle) == (color & 0xFFFFFF); });
  }

  void ClickForYou() const {
    const HWND button = BarTree(*dock).forYouButton.GetHandle();
    ::SendMessageW(button, WM_COMMAND, 0, reinterpret_cast<LPARAM>(button));
  }

  const desk::EventLogSpy eventLog;
  wchar_t formerFolder[MAX_PATH] = {};
};

using Texts = std::vector<std::wstring>;

TEST_F(Updates, OfTheForYouListAreShownAndMarked) {
  StartUnwatched();
  EXPECT_EQ(Texts{}, HeadsOf(ForYouFlyout()));
  EXPECT_TRUE(Shows(idle));
  WriteForYou({L"One", L"Two"});
  EXPECT_EQ(1, Refresh(RefreshForYouMessage));
  EXPECT_EQ((Texts{L"One", L"Two"}), HeadsOf(ForYouFlyout()));
  EXPECT_TRUE(Shows(active));
}

TEST_F(Updates, ReachTheBarByThemselves) {
  StartUnwatched();
  WriteForYou({L"One"});
  EXPECT_TRUE(tests::PumpUntil([&] { return HeadsOf(ForYouFlyout()) == Texts{L"One"}; }));
  EXPECT_TRUE(Shows(active));
}

TEST_F(Updates, ThatStoodAtTheStartAreShownWithoutAMark) {
  ::CreateDirectoryW(folders.UserFolder().c_str(), nullptr);
  WriteForYou({L"Old"});
  Start();
  EXPECT_EQ(Texts{L"Old"}, HeadsOf(ForYouFlyout()));
  Refresh(RefreshForYouMessage);
  EXPECT_TRUE(Shows(idle));
}

TEST_F(Updates, WithAnOlderFileCauseNoMark) {
  WriteForYou({L"Old"});
  Start();
  WriteForYou({L"Older"});
  Age(-3600);
  Refresh(RefreshForYouMessage);
  EXPECT_EQ(Texts{L"Older"}, HeadsOf(ForYouFlyout()));
  EXPECT_TRUE(Shows(idle));
}

TEST_F(Updates, ADeletedListCausesNoMarkAndKeepsItsRows) {
  WriteForYou({L"Old"});
  Start();
  ASSERT_TRUE(::DeleteFileW(DocumentPath(forYouListName).c_str()));
  EXPECT_EQ(1, Refresh(RefreshForYouMessage));
  EXPECT_EQ(Texts{L"Old"}, HeadsOf(ForYouFlyout()));
  EXPECT_TRUE(Shows(idle));
  EXPECT_EQ(Texts{}, eventLog.Reports());
}

TEST_F(Updates, TheMarkIsClearedByAClickAndComesBackOnlyWithANewerFile) {
  WriteForYou({L"Old"});
  Start();
  Age(10);
  Refresh(RefreshForYouMessage);
  ASSERT_TRUE(Shows(active));
  ClickForYou();
  EXPECT_TRUE(Shows(idle));
  EXPECT_EQ(lumenor::Visibility::Visible, ForYouFlyout().Visibility.Get());
  Refresh(RefreshForYouMessage);
  EXPECT_TRUE(Shows(idle)) << "the same file";
  Age(10);
  Refresh(RefreshForYouMessage);
  EXPECT_TRUE(Shows(active));
}

TEST_F(Updates, ClosingTheListTakesTheMarkAwayToo) {
  StartUnwatched();
  ClickForYou();
  dock->SetForYouState(true);
  ClickForYou();
  EXPECT_EQ(lumenor::Visibility::Hidden, ForYouFlyout().Visibility.Get());
  EXPECT_TRUE(Shows(idle));
}

TEST_F(Updates, KeepAnOpenListAgainstABarAtTheBottom) {
  registry.SetText(L"DockPosition", L"Bottom");
  WriteForYou({L"One"});
  Start();
  ClickForYou();
  RECT place{};
  ::GetWindowRect(ForYouFlyout().handle, &place);
  EXPECT_EQ(947 - 2, place.bottom);
  EXPECT_EQ(80, place.bottom - place.top);
  WriteForYou({L"One", L"Two", L"Three"});
  Refresh(RefreshForYouMessage);
  ::GetWindowRect(ForYouFlyout().handle, &place);
  EXPECT_EQ(947 - 2, place.bottom);
  EXPECT_EQ(160, place.bottom - place.top);
}

TEST_F(Updates, KeepAnOpenChoiceOfSearchProvidersAgainstABarAtTheBottom) {
  registry.SetText(L"DockPosition", L"Bottom");
  WriteSearchProviders({L"First"});
  StartUnwatched();
  const HWND button = BarTree(*dock).searchProviderButton.GetHandle();
  ::SendMessageW(button, WM_COMMAND, 0, reinterpret_cast<LPARAM>(button));
  auto &flyout = FlyoutOf<SearchProviderFlyout>([](const SearchProviderFlyout &) { return true; });
  RECT before{}, after{};
  ::GetWindowRect(flyout.handle, &before);
  EXPECT_EQ(40, before.bottom - before.top);
  WriteSearchProviders({L"First", L"Second", L"Third"});
  Refresh(RefreshSearchProviderMessage);
  ::GetWindowRect(flyout.handle, &after);
  EXPECT_EQ(before.bottom, after.bottom);
  EXPECT_EQ(120, after.bottom - after.top);
}

TEST_F(Updates, LeaveAHiddenListHidden) {
  StartUnwatched();
  WriteForYou({L"One"});
  Refresh(RefreshForYouMessage);
  EXPECT_FALSE(::IsWindowVisible(ForYouFlyout().handle));
  EXPECT_EQ(lumenor::Visibility::Hidden, ForYouFlyout().Visibility.Get());
}

TEST_F(Updates, OfTheSearchProvidersAreShown) {
  StartUnwatched();
  auto &flyout = FlyoutOf<SearchProviderFlyout>([](const SearchProviderFlyout &) { return true; });
  EXPECT_EQ(Texts{}, HeadsOf(flyout));
  WriteSearchProviders({L"First", L"Second"});
  EXPECT_EQ(1, Refresh(RefreshSearchProviderMessage));
  EXPECT_EQ((Texts{L"First", L"Second"}), HeadsOf(flyout));
  EXPECT_EQ(Element(), dock->GetSelectedProvider()) << "the choice is the user's";
}

TEST_F(Updates, WhoseMarkCannotBeDecodedShowTheDefaultPicture) {
  StartUnwatched();
  WriteForYou({L"One"});
  tests::WriteText(ActivePicturePath(), L"no picture");
  EXPECT_EQ(1, Refresh(RefreshForYouMessage));
  EXPECT_NE(nullptr, dock->handle);
  EXPECT_EQ(Texts{}, eventLog.Reports());
}

LONG WINAPI RaiseInstead(const FILETIME *, const FILETIME *) { throw std::runtime_error("out of a comparison"); }

TEST_F(Updates, ThatFailAreReportedByTheirHandler) {
  StartUnwatched();
  WriteForYou({L"One"});
  const tests::ImportSlot compare(&__imp_CompareFileTime, &RaiseInstead);
  Refresh(RefreshForYouMessage);
  EXPECT_EQ(nullptr, dock->handle);
  EXPECT_EQ(Texts{L"caught an unhandled exception in OnRefresh"}, eventLog.Reports());
}

} // namespace

} // namespace lumenor
