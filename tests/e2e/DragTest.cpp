// Drag and drop with a real mouse: the user's buttons along the row and off the bar, and files from another program.

#include <algorithm>
#include <utility>

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/DragProgram.h"
#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"
#include "support/DisplayMode.h"
#include "support/Shortcut.h"

namespace lumenor::e2e {
namespace {

using Ids = std::vector<int>;
using Texts = std::vector<std::wstring>;

constexpr POINT farAway = {640, 700};
constexpr wchar_t folder[] = L"C:\\drag";

class Drags : public ::testing::Test {
protected:
  Drags() {
    installation.WriteUsualStubs();
    ::CreateDirectoryW(folder, nullptr);
    MoveCursor(farAway);
  }
  ~Drags() override {
    ReleaseLeftButton();
    tests::ChangeDisplay(nullptr);
  }

  /// `count` buttons of the user's, "Head 0" and so on.
  void WriteButtons(int count) const {
    std::vector<Entry> entries;
    for (int i = 0; i < count; ++i)
      entries.push_back(installation.RecorderEntry(L"Head " + std::to_wstring(i), L"user " + std::to_wstring(i), i));
    installation.WriteDocument(userDocument, entries);
  }

  static std::wstring MakeFile(const std::wstring &name) {
    const std::wstring path = std::wstring(folder) + L"\\" + name;
    WriteBytes(path, "a file");
    return path;
  }

  /// The ids of the user's buttons that show, from left to right.
  static Ids Order(const DockProcess &dock) {
    std::vector<std::pair<LONG, int>> places;
    for (int id = 2000; id < 2030; ++id)
      if (const HWND button = dock.Control(id); button != nullptr && ::IsWindowVisible(button))
        places.emplace_back(RectOf(button).left, id);
    std::sort(places.begin(), places.end());
    Ids ids;
    for (const auto &[left, id] : places)
      ids.push_back(id);
    return ids;
  }

  static bool ComesTo(const DockProcess &dock, const Ids &order) {
    return WaitFor([&] { return Order(dock) == order; });
  }
  static bool StaysAt(const DockProcess &dock, const Ids &order) {
    return ComesTo(dock, order) && HoldsFor([&] { return Order(dock) == order; }, std::chrono::milliseconds(500));
  }

  /// On the left and on the right half of the button that stands at `index`.
  static POINT FirstHalf(const DockProcess &dock, int index) { return At(dock, index, Scaled(15)); }
  static POINT SecondHalf(const DockProcess &dock, int index) { return At(dock, index, Scaled(60)); }

  static POINT At(const DockProcess &dock, int index, LONG right) {
    const Ids order = Order(dock);
    if (static_cast<std::size_t>(index) >= order.size())
      return farAway;
    const RECT button = RectOf(dock.Control(order[static_cast<std::size_t>(index)]));
    return {button.left + right, (button.top + button.bottom) / 2};
  }

  /// Closes the dock; the labels of the document that it leaves, in their order.
  Texts SavedHeads(DockProcess &dock) const {
    EXPECT_EQ(0U, CloseByButton(dock));
    const std::string document = ReadBytes(installation.DocumentPath(userDocument));
    Texts heads;
    constexpr std::string_view begin = "<Head>", end = "</Head>";
    for (std::size_t at = document.find(begin); at != std::string::npos; at = document.find(begin, at)) {
      at += begin.size();
      heads.push_back(tests::FromUtf8(document.substr(at, document.find(end, at) - at)));
    }
    return heads;
  }

  /// True where the marker stands on the screen with its stem about `x`.
  static bool IsMarked(const DockProcess &dock, LONG x) {
    const RECT bar = dock.BarRect();
    const Picture cap = Capture({x - 12, bar.top + 4, x + 12, bar.top + 5});
    int white = 0;
    for (int i = 0; i < cap.Width(); ++i)
      white += cap.At(i, 0) == 0xFFFFFF;
    return white == 9;
  }

  const Installation installation;
};

TEST_F(Drags, PutAButtonAtEveryOtherPlaceOfItsRow) {
  WriteButtons(5);
  ShownDock dock(installation);
  Ids expected = {2000, 2001, 2002, 2003, 2004};
  ASSERT_EQ(expected, Order(dock));
  for (int from = 0; from < 5; ++from)
    for (int to = 0; to < 5; ++to) {
      if (from == to)
        continue;
      const int moved = expected[static_cast<std::size_t>(from)];
      expected.erase(expected.begin() + from);
      expected.insert(expected.begin() + to, moved);
      DragThrough({FirstHalf(dock, from), to > from ? SecondHalf(dock, to) : FirstHalf(dock, to)});
      ASSERT_TRUE(ComesTo(dock, expected)) << from << " to " << to;
    }
  SaveShot("dragged");
  EXPECT_TRUE(installation.RecordedCommandLines().empty()) << "a drag is no click";
  Texts heads;
  for (const int id : expected)
    heads.push_back(L"Head " + std::to_wstring(id - 2000));
  EXPECT_EQ(heads, SavedHeads(dock));
}

TEST_F(Drags, OffTheBarRemoveTheButtonAndFreeItsId) {
  WriteButtons(5);
  ShownDock dock(installation);
  DragThrough({FirstHalf(dock, 1), SecondHalf(dock, 1), farAway});
  EXPECT_TRUE(StaysAt(dock, {2000, 2002, 2003, 2004}));
  EXPECT_TRUE(WaitFor([&] { return dock.Control(2001) == nullptr; }));

  const DragProgram other(Texts{MakeFile(L"New.txt")});
  ASSERT_TRUE(other.IsUp());
  other.DragTo(FirstHalf(dock, 0));
  EXPECT_TRUE(ComesTo(dock, {2001, 2000, 2002, 2003, 2004}));
  EXPECT_EQ((Texts{L"New", L"Head 0", L"Head 2", L"Head 3", L"Head 4"}), SavedHeads(dock));
}

TEST_F(Drags, ToAnotherPartOfTheBarRemoveTheButtonToo) {
  WriteButtons(3);
  ShownDock dock(installation);
  DragThrough({FirstHalf(dock, 1), SecondHalf(dock, 1), dock.Rest()});
  EXPECT_TRUE(StaysAt(dock, {2000, 2002}));
}

TEST_F(Drags, ThatEscapeEndsPutTheButtonBack) {
  WriteButtons(5);
  ShownDock dock(installation);
  MoveCursor(FirstHalf(dock, 0));
  PressLeftButton();
  MoveCursor(SecondHalf(dock, 0));
  EXPECT_TRUE(WaitFor([&] { return !::IsWindowVisible(dock.Control(2000)); })) << "it leaves a gap";
  MoveCursor(FirstHalf(dock, 2));
  PressKey(VK_ESCAPE);
  EXPECT_TRUE(ComesTo(dock, {2000, 2001, 2002, 2003, 2004}));
  ReleaseLeftButton();
  EXPECT_TRUE(StaysAt(dock, {2000, 2001, 2002, 2003, 2004}));
  Click(FirstHalf(dock, 1));
  EXPECT_EQ(Texts{installation.RecorderCommand(L"user 1")}, installation.WaitForCommandLines(1));
}

TEST_F(Drags, ToTheButtonsOwnPlaceChangeNothing) {
  WriteButtons(5);
  ShownDock dock(installation);
  const POINT grip = FirstHalf(dock, 2);
  const POINT ownPlace = SecondHalf(dock, 2);
  DragThrough({grip, FirstHalf(dock, 3), ownPlace});
  EXPECT_TRUE(StaysAt(dock, {2000, 2001, 2002, 2003, 2004}));
  DragThrough({grip, ownPlace});
  EXPECT_TRUE(StaysAt(dock, {2000, 2001, 2002, 2003, 2004}));
  EXPECT_TRUE(installation.RecordedCommandLines().empty());
  EXPECT_EQ((Texts{L"Head 0", L"Head 1", L"Head 2", L"Head 3", L"Head 4"}), SavedHeads(dock));
}

TEST_F(Drags, ShowTheMarkerWhereTheButtonWouldLand) {
  WriteButtons(5);
  ShownDock dock(installation);
  const LONG edge = RectOf(dock.Control(2003)).left;
  const POINT grip = FirstHalf(dock, 0);
  const POINT target = FirstHalf(dock, 3);
  MoveCursor(grip);
  PressLeftButton();
  MoveCursor({grip.x + 6, grip.y});
  MoveCursor(target);
  EXPECT_TRUE(WaitFor([&] { return IsMarked(dock, edge); }));
  SaveShot("drag-marker");
  ReleaseLeftButton();
  EXPECT_TRUE(WaitFor([&] { return !IsMarked(dock, edge); }));
}

TEST_F(Drags, OfFilesAddButtonsByTheHalfThatTheyAreDroppedOn) {
  WriteButtons(3);
  ShownDock dock(installation);
  {
    const DragProgram other(Texts{MakeFile(L"Before.txt")});
    ASSERT_TRUE(other.IsUp());
    other.DragTo(FirstHalf(dock, 1));
    EXPECT_TRUE(ComesTo(dock, {2000, 2003, 2001, 2002}));
  }
  {
    const DragProgram other(Texts{MakeFile(L"Behind.txt")});
    ASSERT_TRUE(other.IsUp());
    other.DragTo(SecondHalf(dock, 2));
    EXPECT_TRUE(ComesTo(dock, {2000, 2003, 2001, 2004, 2002}));
  }
  SaveShot("dropped");
  EXPECT_EQ((Texts{L"Head 0", L"Before", L"Head 1", L"Behind", L"Head 2"}), SavedHeads(dock));
}

TEST_F(Drags, OfFiveFilesAddThemInReverseOrder) {
  WriteButtons(2);
  ShownDock dock(installation);
  const DragProgram other(
      {MakeFile(L"a.txt"), MakeFile(L"b.txt"), MakeFile(L"c.txt"), MakeFile(L"d.txt"), MakeFile(L"e.txt")});
  ASSERT_TRUE(other.IsUp());
  other.DragTo(FirstHalf(dock, 1));
  EXPECT_TRUE(ComesTo(dock, {2000, 2006, 2005, 2004, 2003, 2002, 2001}));
  EXPECT_EQ((Texts{L"Head 0", L"e", L"d", L"c", L"b", L"a", L"Head 1"}), SavedHeads(dock));
}

TEST_F(Drags, OfAShortcutAddAButtonThatOpensIt) {
  WriteButtons(1);
  const std::wstring shortcut = std::wstring(folder) + L"\\My shortcut.lnk";
  tests::MakeShortcut(shortcut, {.target = installation.Recorder()});
  ShownDock dock(installation);
  {
    const DragProgram other(Texts{shortcut});
    ASSERT_TRUE(other.IsUp());
    other.DragTo(FirstHalf(dock, 0));
    ASSERT_TRUE(ComesTo(dock, {2001, 2000}));
  }
  Click(FirstHalf(dock, 0));
  EXPECT_EQ(1U, installation.WaitForCommandLines(1).size());
  EXPECT_EQ((Texts{L"My shortcut", L"Head 0"}), SavedHeads(dock));
}

TEST_F(Drags, OfAFolderAddAButton) {
  WriteButtons(1);
  ::CreateDirectoryW((std::wstring(folder) + L"\\A folder").c_str(), nullptr);
  ShownDock dock(installation);
  const DragProgram other(Texts{std::wstring(folder) + L"\\A folder"});
  ASSERT_TRUE(other.IsUp());
  other.DragTo(SecondHalf(dock, 0));
  EXPECT_TRUE(ComesTo(dock, {2000, 2001}));
  EXPECT_EQ((Texts{L"Head 0", L"A folder"}), SavedHeads(dock));
}

TEST_F(Drags, OfAPathOf259CharactersAddAButton) {
  WriteButtons(1);
  const std::wstring name(259 - std::wstring(folder).size() - 5, L'n');
  const std::wstring path = MakeFile(name + L".txt");
  ASSERT_EQ(259U, path.size());
  ASSERT_TRUE(Exists(path));
  ShownDock dock(installation);
  const DragProgram other(Texts{path});
  ASSERT_TRUE(other.IsUp());
  other.DragTo(SecondHalf(dock, 0));
  EXPECT_TRUE(ComesTo(dock, {2000, 2001}));
  EXPECT_EQ((Texts{L"Head 0", name}), SavedHeads(dock));
}

TEST_F(Drags, OfAFileThatIsNotThereAddNoButtonAndKeepItsRecord) {
  WriteButtons(1);
  ShownDock dock(installation);
  const DragProgram other(Texts{L"C:\\drag\\nowhere.txt"});
  ASSERT_TRUE(other.IsUp());
  other.DragTo(SecondHalf(dock, 0));
  EXPECT_TRUE(StaysAt(dock, {2000}));
  EXPECT_EQ((Texts{L"Head 0", L"nowhere"}), SavedHeads(dock));
}

TEST_F(Drags, OfTextAddNothing) {
  WriteButtons(2);
  ShownDock dock(installation);
  const DragProgram other(Texts{});
  ASSERT_TRUE(other.IsUp());
  other.DragTo(FirstHalf(dock, 1));
  EXPECT_EQ(L"40100 0", other.WaitForResult()) << "dropped, with no effect";
  EXPECT_TRUE(StaysAt(dock, {2000, 2001}));
}

TEST_F(Drags, OfAThirtyFirstFileAreRefused) {
  WriteButtons(30);
  ShownDock dock(installation);
  const DragProgram other(Texts{MakeFile(L"New.txt")});
  ASSERT_TRUE(other.IsUp());
  const LONG edge = RectOf(dock.Control(2001)).left;
  other.DragTo(FirstHalf(dock, 1));
  EXPECT_EQ(L"40100 0", other.WaitForResult());
  EXPECT_TRUE(WaitFor([&] { return !IsMarked(dock, edge); }));
  EXPECT_EQ(30U, SavedHeads(dock).size());
}

TEST_F(Drags, WhoseProgramDiesLeaveTheBarAsItWas) {
  WriteButtons(3);
  ShownDock dock(installation);
  const LONG edge = RectOf(dock.Control(2001)).left;
  {
    DragProgram dying(Texts{MakeFile(L"Lost.txt")});
    ASSERT_TRUE(dying.IsUp());
    dying.Grab();
    MoveCursor(FirstHalf(dock, 1));
    EXPECT_TRUE(WaitFor([&] { return IsMarked(dock, edge); }));
    dying.Kill();
    ReleaseLeftButton();
  }
  EXPECT_TRUE(WaitFor([&] { return !IsMarked(dock, edge); }));
  EXPECT_TRUE(StaysAt(dock, {2000, 2001, 2002}));

  const DragProgram other(Texts{MakeFile(L"New.txt")});
  ASSERT_TRUE(other.IsUp());
  other.DragTo(FirstHalf(dock, 1));
  EXPECT_TRUE(ComesTo(dock, {2000, 2003, 2001, 2002}));
}

TEST_F(Drags, WithAFlyoutOpenCloseItAndAddTheButton) {
  WriteButtons(1);
  ShownDock dock(installation);
  OpenForYou(dock);
  const DragProgram other(Texts{MakeFile(L"New.txt")});
  ASSERT_TRUE(other.IsUp());
  other.DragTo(FirstHalf(dock, 0));
  EXPECT_TRUE(ComesTo(dock, {2001, 2000}));
  EXPECT_TRUE(dock.WaitForNoPopup());
}

TEST_F(Drags, DuringWhichTheDisplayChangesGoOn) {
  WriteButtons(3);
  ShownDock dock(installation);
  MoveCursor(FirstHalf(dock, 0));
  PressLeftButton();
  MoveCursor(SecondHalf(dock, 0));
  ASSERT_EQ(DISP_CHANGE_SUCCESSFUL, tests::MakeDisplaySmall());
  EXPECT_TRUE(WaitFor([&] { return dock.BarRect().right - dock.BarRect().left == 694; }));
  const RECT last = RectOf(dock.Control(2002));
  LetGo({last.left + 60, 40});
  EXPECT_TRUE(ComesTo(dock, {2001, 2002, 2000}));
  EXPECT_EQ((Texts{L"Head 1", L"Head 2", L"Head 0"}), SavedHeads(dock));
}

} // namespace
} // namespace lumenor::e2e
