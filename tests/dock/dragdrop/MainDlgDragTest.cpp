// Drag and drop on the bar: what its notifications do, and what dropped files become.

#include <gtest/gtest.h>

#include "dock/dragdrop/DragFixture.h"
#include "support/FailingClass.h"
#include "support/LogCapture.h"

#include <shellapi.h>

extern "C" decltype(&::SendInput) __imp_SendInput;
extern "C" decltype(&::SHGetLocalizedName) __imp_SHGetLocalizedName;

namespace lumenor {

namespace {

// The drop target's life.

TEST_F(Drag, IsPossibleWhileTheWindowExists) {
  StartWith(0);
  const HWND window = dock->handle;
  EXPECT_EQ(DRAGDROP_E_ALREADYREGISTERED, ::RegisterDragDrop(window, registeredTarget.Get()));
  ::DestroyWindow(window);
  EXPECT_EQ(window, revokedWindow);
  EXPECT_EQ(2U, CountReferences(registeredTarget.Get())) << "the dock's and this test's";
  dock.reset();
  EXPECT_EQ(1U, CountReferences(registeredTarget.Get()));
}

TEST_F(Drag, ThatCannotBeRegisteredFailsTheStart) {
  const desk::EventLogSpy events;
  registrationResult = E_OUTOFMEMORY;
  EXPECT_EQ(nullptr, Start().handle);
  EXPECT_EQ((Texts{L"caught an unhandled exception in OnInitDialog"}), events.Reports());
}

TEST_F(Drag, WithoutThePlatformsHelperFailsTheStart) {
  const desk::EventLogSpy events;
  const tests::FailingClass failing(CLSID_DragDropHelper, REGDB_E_CLASSNOTREG);
  EXPECT_EQ(nullptr, Start().handle);
  EXPECT_EQ((Texts{L"caught an unhandled exception in OnInitDialog"}), events.Reports());
}

// Notifications.

TEST_F(Drag, OverTheAreaOfTheRowIsOverTheButtons) {
  StartWith(1);
  const BarTree tree(*dock);
  RECT room = {};
  ::GetWindowRect(tree.scrollViewer.GetHandle(), &room);
  for (const LONG x : {room.left, room.right - 1}) {
    dragOutside = true;
    dragOverButtons = false;
    EXPECT_EQ(0, Over({x, 30}));
    EXPECT_TRUE(dragOverButtons);
    EXPECT_FALSE(dragOutside);
  }
  for (const LONG x : {room.left - 1, room.right}) {
    EXPECT_EQ(0, Over({x, 30}));
    EXPECT_FALSE(dragOverButtons);
    EXPECT_TRUE(dragOutside);
  }
}

TEST_F(Drag, IsFollowedFromItsEntryOn) {
  StartWith(2);
  draggedButton = WindowOf(0);
  EXPECT_EQ(0, Notify(1, SecondHalf(1)));
  EXPECT_TRUE(dragOverButtons);
  ExpectMarker(RowLeft() + 162 - 3);
}

TEST_F(Drag, ShowsItsMarkerBeforeAButton) {
  StartWith(3);
  Over(FirstHalf(0));
  ExpectMarker(RowLeft() + 4 - 6);
  Over(SecondHalf(1));
  ExpectMarker(RowLeft() + 166 - 6);
}

TEST_F(Drag, ShowsItsMarkerBehindTheLastButton) {
  StartWith(3);
  Over(SecondHalf(2));
  ExpectMarker(RowLeft() + 243 - 3);
  Over(OnRow(400));
  ExpectMarker(RowLeft() + 243 - 3);
}

TEST_F(Drag, ShowsNoMarkerWithoutButtons) {
  StartWith(0);
  Over(OnRow(100));
  EXPECT_TRUE(dragOverButtons);
  ExpectNoMarker();
}

TEST_F(Drag, ShowsNoMarkerOffTheRow) {
  StartWith(3);
  Over(FirstHalf(1));
  Over({1000, 30});
  ExpectNoMarker();
}

TEST_F(Drag, ShowsNoMarkerOnceAButtonIsAdded) {
  StartWith(3);
  Over(FirstHalf(1));
  ExpectMarker(RowLeft() + 85 - 6);
  dock->AddButton(PictureElement(L"New"), 0);
  dock->Invalidate();
  desk::PumpAll();
  ExpectNoMarker();
}

TEST_F(Drag, ShowsNoMarkerAtTheButtonsOwnPlace) {
  StartWith(4);
  draggedButton = WindowOf(1);
  for (const POINT own : {SecondHalf(0), FirstHalf(1), SecondHalf(1), OnRow(164), FirstHalf(2)}) {
    Over(own);
    ExpectNoMarker();
  }
  Over(FirstHalf(0));
  ExpectMarker(RowLeft() + 4 - 6);
  Over(SecondHalf(2));
  ExpectMarker(RowLeft() + 247 - 6);
}

TEST_F(Drag, OfTheLastButtonShowsNoMarkerBehindIt) {
  StartWith(2);
  draggedButton = WindowOf(1);
  Over(OnRow(300));
  ExpectNoMarker();
  Over(FirstHalf(0));
  ExpectMarker(RowLeft() + 4 - 6);
}

TEST_F(Drag, RepaintsTheBarOnceAMove) {
  StartWith(3);
  desk::PumpAll();
  for (const POINT place : {FirstHalf(1), SecondHalf(1), POINT{1000, 30}}) {
    const int before = pictures;
    Over(place);
    desk::PumpAll();
    EXPECT_EQ(1, pictures - before);
  }
}

TEST_F(Drag, ShowsNoMarkerWithTheBarAtTheBottom) {
  StartWith(3);
  ::SendMessageW(dock->handle, DockAtBottomMessage, 0, 0);
  Over(FirstHalf(1));
  EXPECT_TRUE(dragOverButtons);
  ExpectNoMarker();
}

TEST_F(Drag, OfAButtonThatLeavesIsOutside) {
  StartWith(2);
  draggedButton = WindowOf(0);
  Over(SecondHalf(1));
  EXPECT_EQ(0, Notify(3, ::HandleToULong(WindowOf(0))));
  EXPECT_TRUE(dragOutside);
  ExpectNoMarker();
}

TEST_F(Drag, OfFilesThatLeaveKeepsNothingOutside) {
  StartWith(2);
  Over(SecondHalf(1));
  EXPECT_EQ(0, Notify(3, 0));
  EXPECT_FALSE(dragOutside);
  ExpectNoMarker();
  Over({1000, 30});
  EXPECT_EQ(0, Notify(3, 0));
  EXPECT_FALSE(dragOutside) << "the bar may dim again";
}

TEST_F(Drag, OfAnotherButtonThatLeavesIsNotOutside) {
  StartWith(2);
  draggedButton = WindowOf(0);
  Over(SecondHalf(1));
  EXPECT_EQ(0, Notify(3, ::HandleToULong(WindowOf(1))));
  EXPECT_FALSE(dragOutside);
}

TEST_F(Drag, EndsByMovingTheButton) {
  StartWith(5);
  for (int from = 0; from < 5; ++from)
    for (int to = 0; to < 5; ++to) {
      Texts expected = Heads();
      const std::wstring moved = expected.at(static_cast<std::size_t>(from));
      expected.erase(expected.begin() + from);
      expected.insert(expected.begin() + to, moved);
      draggedButton = WindowOf(static_cast<std::size_t>(from));
      const POINT place = to > from ? SecondHalf(to) : FirstHalf(to);
      Over(place);
      EXPECT_EQ(0, Notify(4, place));
      EXPECT_EQ(expected, Heads()) << from << " to " << to;
    }
}

TEST_F(Drag, EndsBehindTheLastButton) {
  StartWith(3);
  draggedButton = WindowOf(0);
  Over(OnRow(500));
  Notify(4, OnRow(500));
  EXPECT_EQ((Texts{L"Head 1", L"Head 2", L"Head 0"}), Heads());
}

TEST_F(Drag, ThatEndsOffTheRowMovesNothing) {
  StartWith(3);
  draggedButton = WindowOf(0);
  Over({1000, 30});
  EXPECT_EQ(0, Notify(4, {1000, 30}));
  EXPECT_EQ((Texts{L"Head 0", L"Head 1", L"Head 2"}), Heads());
}

TEST_F(Drag, OfNoButtonMovesNothing) {
  StartWith(3);
  Over(FirstHalf(2));
  EXPECT_EQ(0, Notify(4, FirstHalf(2)));
  EXPECT_EQ((Texts{L"Head 0", L"Head 1", L"Head 2"}), Heads());
  draggedButton = dock->handle;
  EXPECT_EQ(0, Notify(4, FirstHalf(2)));
  EXPECT_EQ((Texts{L"Head 0", L"Head 1", L"Head 2"}), Heads());
}

TEST_F(Drag, HasNoWordInOtherNotifications) {
  StartWith(1);
  dragOutside = true;
  EXPECT_EQ(0, Notify(0, FirstHalf(0)));
  Notify(5, FirstHalf(0));
  EXPECT_TRUE(dragOutside);
  EXPECT_EQ(0, ::SendMessageW(dock->handle, WM_NOTIFY, 0, 0));
}

TEST_F(Drag, WhoseProgramDiesLeavesNoMarker) {
  StartWith(2);
  DWORD effect = DROPEFFECT_COPY;
  const auto files = MakeFileData({L"C:\\file"});
  const POINT place = FirstHalf(1);
  desk::MoveCursor(farAway);
  desk::PressLeftButton();
  registeredTarget->DragEnter(files.Get(), MK_LBUTTON, {place.x, place.y}, &effect);
  registeredTarget->DragOver(MK_LBUTTON, {place.x, place.y}, &effect);
  ::SendMessageW(dock->handle, WM_TIMER, FadeTimer, 0);
  ExpectMarker(RowLeft() + 85 - 6);
  registeredTarget->DragOver(MK_LBUTTON, {1000, place.y}, &effect);
  EXPECT_TRUE(dragOutside);
  registeredTarget->DragOver(MK_LBUTTON, {place.x, place.y}, &effect);
  dragOutside = true;
  desk::ReleaseLeftButton();
  ::SendMessageW(dock->handle, WM_TIMER, FadeTimer, 0);
  ExpectNoMarker();
  EXPECT_FALSE(dragOutside);
}

// Dropped files.

TEST_F(Drag, OfAFileLandsBeforeOrBehindAButtonByItsHalf) {
  StartWith(3);
  EXPECT_EQ(S_OK, DropFiles({L"Before.txt"}, FirstHalf(1)));
  EXPECT_EQ((Texts{L"Head 0", L"Before", L"Head 1", L"Head 2"}), Heads());
  EXPECT_EQ(S_OK, DropFiles({L"Behind.txt"}, SecondHalf(2)));
  EXPECT_EQ((Texts{L"Head 0", L"Before", L"Head 1", L"Behind", L"Head 2"}), Heads());
}

TEST_F(Drag, OfAFileLandsInAGap) {
  StartWith(2);
  DropFiles({L"New.txt"}, OnRow(83));
  EXPECT_EQ((Texts{L"Head 0", L"New", L"Head 1"}), Heads());
}

TEST_F(Drag, OfSeveralFilesLandsInReverseOrder) {
  StartWith(2);
  DropFiles({L"a.txt", L"b.txt", L"c.txt"}, FirstHalf(1));
  EXPECT_EQ((Texts{L"Head 0", L"c", L"b", L"a", L"Head 1"}), Heads());
  DropFiles({L"d.txt", L"e.txt"}, SecondHalf(0));
  EXPECT_EQ((Texts{L"Head 0", L"e", L"d", L"c", L"b", L"a", L"Head 1"}), Heads());
}

TEST_F(Drag, OfAFileLeftOfAllButtonsLandsFirst) {
  StartWith(2);
  DropFiles({L"New.txt"}, OnRow(1));
  EXPECT_EQ((Texts{L"New", L"Head 0", L"Head 1"}), Heads());
}

TEST_F(Drag, OfAFileRightOfAllButtonsLandsLast) {
  StartWith(2);
  DropFiles({L"New.txt"}, OnRow(500));
  EXPECT_EQ((Texts{L"Head 0", L"Head 1", L"New"}), Heads());
}

TEST_F(Drag, OfAFileToAnEmptyRowMakesItsFirstButton) {
  StartWith(0);
  DropFiles({L"New.txt"}, OnRow(300));
  EXPECT_EQ((Texts{L"New"}), Heads());
}

TEST_F(Drag, OfAFileMakesAWholeButton) {
  StartWith(0);
  DropFiles({L"New.txt"}, OnRow(300));
  const DockButton &button = *dock->GetUserButtons().at(0);
  EXPECT_EQ(folders.Root() + L"\\New.txt", button.Name.Get());
  EXPECT_EQ(L"\"" + folders.Root() + L"\\New.txt\"", button.GetElement().ActionParams);
  EXPECT_EQ(1, button.Draggable.Get());
  EXPECT_EQ(2000, ::GetDlgCtrlID(WindowOf(0)));
  ::SendMessageW(dock->handle, WM_CLOSE, 0, 0);
  EXPECT_EQ(1U, LoadDocument(userDocument, false).size());
}

TEST_F(Drag, OfAFolderAndOfARootMakeButtons) {
  StartWith(0);
  tests::MakeFolders(folders.Root() + L"\\A folder");
  EXPECT_EQ(S_OK, DropData(MakeFileData({folders.Root() + L"\\A folder", L"C:\\"}).Get(), OnRow(300)));
  ASSERT_EQ(2U, dock->GetUserButtons().size());
  EXPECT_EQ(L"A folder", dock->GetUserElements().at(0).Head);
  EXPECT_EQ(L"", dock->GetUserElements().at(1).Head);
}

TEST_F(Drag, OffTheRowAddsNothing) {
  StartWith(1);
  DropFiles({L"New.txt"}, {1000, 30});
  EXPECT_EQ((Texts{L"Head 0"}), Heads());
  EXPECT_EQ(1, Add(MakeFile(L"New.txt"), {1000, 30}));
  EXPECT_EQ((Texts{L"Head 0"}), Heads());
}

TEST_F(Drag, OfTextAddsNothing) {
  StartWith(1);
  EXPECT_EQ(E_FAIL, DropData(MakeTextData().Get(), FirstHalf(0)));
  EXPECT_EQ((Texts{L"Head 0"}), Heads());
}

TEST_F(Drag, OfAFileThatIsGoneIsLoggedAndItsRecordKept) {
  const tests::LogCapture log(folders);
  StartWith(1);
  log.Clear();
  Over(FirstHalf(0));
  EXPECT_EQ(1, Add(L"C:\\gone\\gone.exe", FirstHalf(0)));
  EXPECT_EQ((std::vector<std::string>{"ERROR: Could not add Button because the shortcut cannot be found"}),
            log.Lines());
  EXPECT_EQ(1U, dock->GetUserButtons().size());
  ASSERT_EQ(2U, dock->GetUserElements().size());
  EXPECT_EQ(L"gone", dock->GetUserElements().at(0).Head);
  ExpectNoMarker();
}

TEST_F(Drag, OfHostilePathsEndsNothing) {
  StartWith(1);
  Over(FirstHalf(0));
  const Texts paths = {L"", L"\"", L"\\", L"%", std::wstring(5000, L'x'), L"C:\\" + std::wstring(256, L'y'), L"*?<>|"};
  for (const std::wstring &path : paths)
    EXPECT_EQ(1, Add(path, FirstHalf(0))) << path.substr(0, 10);
  EXPECT_EQ(1, ::SendMessageW(dock->handle, DragAddMessage, 0, 0));
  EXPECT_TRUE(::IsWindow(dock->handle));
  EXPECT_EQ(L"Head 0", dock->GetUserElements().back().Head);
}

TEST_F(Drag, OfAnEmptyPathAddsNothing) {
  StartWith(1);
  Over(FirstHalf(0));
  EXPECT_EQ(1, Add(L"", FirstHalf(0)));
  EXPECT_EQ((Texts{L"Head 0"}), Heads());
}

TEST_F(Drag, OfAThirtyFirstFileIsRefusedInSilence) {
  const tests::LogCapture log(folders);
  StartWith(30);
  log.Clear();
  Over(FirstHalf(2));
  EXPECT_EQ(1, Add(MakeFile(L"New.txt"), FirstHalf(2)));
  EXPECT_EQ(30U, Heads().size());
  EXPECT_EQ((std::vector<std::string>{}), log.Lines());
  ExpectNoMarker();
}

/// Counts what a drop costs while it lives.
class DropCosts {
public:
  DropCosts() {
    keys = names = 0;
    platformInput = input.Former();
    platformName = name.Former();
    pictures = 0;
  }

  static inline int keys;
  static inline int names;

private:
  static UINT WINAPI NoteKey(UINT count, INPUT *inputs, int size) {
    ++keys;
    return platformInput(count, inputs, size);
  }
  static HRESULT WINAPI NoteName(PCWSTR path, PWSTR module, UINT size, int *id) {
    ++names;
    return platformName(path, module, size, id);
  }

  static inline decltype(&::SendInput) platformInput;
  static inline decltype(&::SHGetLocalizedName) platformName;

  const tests::ImportSlot<decltype(&::SendInput)> input{&__imp_SendInput, &NoteKey};
  const tests::ImportSlot<decltype(&::SHGetLocalizedName)> name{&__imp_SHGetLocalizedName, &NoteName};
};

/// So many paths of one file.
Texts SamePath(const std::wstring &path, std::size_t count) { return Texts(count, path); }

/// Drops files that have been over the place before, so that all that is counted is the drop's.
void DropFromOver(const Texts &paths, POINT screen) {
  const auto data = MakeFileData(paths);
  DWORD effect = DROPEFFECT_COPY;
  registeredTarget->DragEnter(data.Get(), MK_LBUTTON, {screen.x, screen.y}, &effect);
  effect = DROPEFFECT_COPY;
  registeredTarget->DragOver(MK_LBUTTON, {screen.x, screen.y}, &effect);
  desk::PumpAll();
  pictures = 0;
  effect = DROPEFFECT_COPY;
  EXPECT_EQ(S_OK, registeredTarget->Drop(data.Get(), 0, {screen.x, screen.y}, &effect));
}

TEST_F(Drag, OfSeveralFilesRepaintsTheBarOnceAndPressesOneKey) {
  StartWith(1);
  const Texts paths = SamePath(MakeFile(L"New.txt"), 5);
  const DropCosts costs;
  DropFromOver(paths, SecondHalf(0));
  EXPECT_EQ(6U, Heads().size());
  EXPECT_EQ(5, DropCosts::names);
  EXPECT_EQ(1, DropCosts::keys);
  EXPECT_EQ(1, pictures);
  desk::PumpAll();
  EXPECT_EQ(1, pictures) << "nothing of the new buttons is left to be painted";
  ExpectNoMarker();
}

TEST_F(Drag, OfMoreFilesThanTheBarTakesLooksAtThoseOnlyThatItTakes) {
  StartWith(28);
  const Texts paths = SamePath(MakeFile(L"New.txt"), 500);
  const DropCosts costs;
  DropFromOver(paths, FirstHalf(2));
  EXPECT_EQ(30U, Heads().size());
  EXPECT_EQ(2, DropCosts::names);
  EXPECT_EQ(1, DropCosts::keys);
  EXPECT_EQ(1, pictures);
}

TEST_F(Drag, OfFilesToAFullBarCostsNoMoreThanTheLookAtItsEnd) {
  StartWith(30);
  const Texts paths = SamePath(MakeFile(L"New.txt"), 500);
  const DropCosts costs;
  DropFromOver(paths, FirstHalf(2));
  EXPECT_EQ(30U, Heads().size());
  EXPECT_EQ(0, DropCosts::names);
  EXPECT_EQ(1, DropCosts::keys);
  EXPECT_EQ(1, pictures);
  ExpectNoMarker();
}

TEST_F(Drag, OfFilesAmongWhichOneIsGoneIsFinished) {
  StartWith(1);
  const DropCosts costs;
  DropFromOver({MakeFile(L"New.txt"), L"C:\\gone\\gone.exe"}, SecondHalf(0));
  EXPECT_EQ(2U, dock->GetUserButtons().size());
  EXPECT_EQ(1, pictures);
  Over(FirstHalf(0));
  EXPECT_EQ(2, pictures) << "the bar is painted again";
}

TEST_F(Drag, OfOneFileAfterTheOtherFinishesEach) {
  StartWith(1);
  const std::wstring path = MakeFile(L"New.txt");
  Over(SecondHalf(0));
  const DropCosts costs;
  for (int file = 1; file <= 3; ++file) {
    EXPECT_EQ(1, Add(path, SecondHalf(0)));
    EXPECT_EQ(file, pictures);
    EXPECT_EQ(file, DropCosts::keys);
  }
}

TEST_F(Drag, OfFilesBringsTheBarToTheFront) {
  const desk::Backdrop other({300, 300, 500, 400}, RGB(10, 20, 30));
  StartWith(1);
  ::SetForegroundWindow(other.Get());
  ASSERT_EQ(other.Get(), ::GetForegroundWindow());
  DropFiles({L"New.txt"}, FirstHalf(0));
  EXPECT_EQ(dock->handle, ::GetForegroundWindow());
}

} // namespace

} // namespace lumenor
