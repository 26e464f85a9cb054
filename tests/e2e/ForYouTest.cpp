// The For You list and its mark: another program writes the list while the bar stands.

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/OtherProgram.h"
#include "e2e/OtherWindow.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"
#include "system/Handles.h"

namespace lumenor::e2e {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

using Texts = std::vector<std::wstring>;

constexpr RECT elsewhere = {300, 700, 900, 950};
constexpr UINT answerLimitMs = 10'000;
constexpr LONGLONG ticksPerHour = 36'000'000'000LL;

/// Shifts the time of the file's last write by `hours`.
void ShiftWriteTime(const std::wstring &path, int hours) {
  const FileHandle file(::CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ,
                                      nullptr, OPEN_EXISTING, 0, nullptr));
  FILETIME time = {};
  ASSERT_TRUE(::GetFileTime(file.Get(), nullptr, nullptr, &time));
  ULARGE_INTEGER ticks = {{time.dwLowDateTime, time.dwHighDateTime}};
  ticks.QuadPart += hours * ticksPerHour;
  time = {ticks.LowPart, ticks.HighPart};
  ASSERT_TRUE(::SetFileTime(file.Get(), nullptr, nullptr, &time));
}

class ForYou : public ::testing::Test {
protected:
  ForYou() {
    installation.WriteUsualStubs();
    installation.WriteDocument(forYouList, List(1, L"old"));
  }

  /// A list of `count` entries, which start the recorder with `word` and their number.
  std::vector<Entry> List(int count, const std::wstring &word) const {
    std::vector<Entry> entries;
    for (int i = 0; i < count; ++i)
      entries.push_back(installation.RecorderEntry(word + L" " + std::to_wstring(i), word + L" " + std::to_wstring(i)));
    return entries;
  }

  /// The same as a file that isn't watched.
  std::wstring ListAside(int count, const std::wstring &word) const {
    return installation.WriteAside(word + L".xml", DocumentXml(forYouList, List(count, word)));
  }

  std::wstring Path() const { return installation.DocumentPath(forYouList); }

  /// Replaces the list in a way that no watcher sees.
  void PutUnseen(const std::wstring &aside) const {
    ASSERT_TRUE(::MoveFileExW(aside.c_str(), Path().c_str(), MOVEFILE_REPLACE_EXISTING));
  }

  /// A change in the watched folder that has nothing to do with the list.
  void TouchFolder() const { WriteBytes(installation.UserFolder() + L"\\other.txt", "x"); }

  /// The height of the open list; 0 when none is open.
  static LONG ListHeight(const DockProcess &dock) {
    const auto popups = dock.Popups();
    return popups.size() == 1 ? HeightOf(popups[0]) : 0;
  }

  /// The For You button with the cursor away from it.
  static Picture ButtonPicture(const DockProcess &dock) {
    MoveCursor(dock.Rest());
    return CaptureSettled(dock.ForYouRect());
  }

  /// Waits until the bar has handled a change in the folder; false when it doesn't.
  bool HasNoticed(const DockProcess &dock, int readingsBefore) const {
    return WaitFor([&] { return installation.ForYouReadings() >= readingsBefore + 2; }) &&
           ::SendMessageTimeoutW(dock.Bar(), WM_NULL, 0, 0, SMTO_NORMAL, answerLimitMs, nullptr) != 0;
  }

  const Installation installation;
};

TEST_F(ForYou, TheListShowsWithinTwoSecondsWhatAnotherProgramWrote) {
  ShownDock dock(installation);
  const HWND popup = OpenForYou(dock);
  ASSERT_EQ(40 + 40, ListHeight(dock));
  const std::wstring aside = ListAside(3, L"new");

  ASSERT_TRUE(OtherProgramCopies(aside, Path()));

  EXPECT_TRUE(WaitFor([&] { return ListHeight(dock) == 40 + 3 * 40; }));
  const RECT flyout = RectOf(popup);
  EXPECT_EQ(1090 - 62, flyout.left);
  EXPECT_EQ(80, flyout.top);
  CaptureSettled(flyout);
  SaveShot("foryou");
  ClickRow(dock, 2);
  EXPECT_EQ(Texts{installation.RecorderCommand(L"new 2")}, installation.WaitForCommandLines(1));
  EXPECT_TRUE(dock.Popups().empty());
}

TEST_F(ForYou, AtTheBottomEdgeTheListOpensAboveTheBar) {
  SetDockValue(L"DockPosition", L"Bottom");
  ShownDock dock(installation);
  const HWND popup = OpenForYou(dock);
  EXPECT_EQ(1024 - 77 - 2, RectOf(popup).bottom);
  EXPECT_EQ(1024 - 77 - 2 - 80, RectOf(popup).top);
}

TEST_F(ForYou, ANewerListMarksTheButtonUntilItIsClickedAndThenOnlyANewerOneAgain) {
  const OtherWindow other(elsewhere);
  ShownDock dock(installation);
  const Picture idle = ButtonPicture(dock);

  ASSERT_TRUE(OtherProgramCopies(ListAside(2, L"second"), Path()));
  EXPECT_TRUE(WaitFor([&] { return Capture(dock.ForYouRect()).Differences(idle) > 20; }));
  const Picture marked = CaptureSettled(dock.ForYouRect());
  SaveShot("foryou-mark");

  OpenForYou(dock);
  Click(Center(elsewhere));
  ASSERT_TRUE(dock.WaitForNoPopup());
  MoveCursor(dock.Rest());
  EXPECT_TRUE(WaitFor([&] { return Capture(dock.ForYouRect()) == idle; }));

  const int readings = installation.ForYouReadings();
  TouchFolder(); // the list is as old as it was
  ASSERT_TRUE(HasNoticed(dock, readings));
  EXPECT_EQ(idle, ButtonPicture(dock));

  ASSERT_TRUE(OtherProgramCopies(ListAside(1, L"third"), Path()));
  EXPECT_TRUE(WaitFor([&] { return Capture(dock.ForYouRect()) == marked; }));
}

TEST_F(ForYou, AnOlderListIsShownWithoutAMark) {
  ShownDock dock(installation);
  const Picture idle = ButtonPicture(dock);
  const int readings = installation.ForYouReadings();
  const std::wstring aside = ListAside(2, L"older");
  ShiftWriteTime(aside, -1);

  PutUnseen(aside);
  TouchFolder();

  ASSERT_TRUE(HasNoticed(dock, readings));
  EXPECT_EQ(idle, ButtonPicture(dock));
  OpenForYou(dock);
  EXPECT_EQ(40 + 2 * 40, ListHeight(dock));
}

TEST_F(ForYou, ADeletedListGivesNoMarkAndStaysAsItWas) {
  ShownDock dock(installation);
  const Picture idle = ButtonPicture(dock);
  const int readings = installation.ForYouReadings();

  ASSERT_TRUE(OtherProgramDeletes(Path()));
  TouchFolder();

  ASSERT_TRUE(HasNoticed(dock, readings));
  EXPECT_EQ(idle, ButtonPicture(dock));
  OpenForYou(dock);
  EXPECT_EQ(40 + 40, ListHeight(dock));
}

TEST_F(ForYou, WithoutAListTheFlyoutHasItsTitleOnlyUntilOneIsWritten) {
  ::DeleteFileW(Path().c_str());
  ShownDock dock(installation);
  OpenForYou(dock);
  EXPECT_EQ(40, ListHeight(dock));
  ASSERT_TRUE(OtherProgramCopies(ListAside(2, L"first"), Path()));
  EXPECT_TRUE(WaitFor([&] { return ListHeight(dock) == 40 + 2 * 40; }));
}

} // namespace
} // namespace lumenor::e2e
