// Drag and drop on the bar: what its notifications do, what dropped files become, and whole drags by a real hand.

#include <atomic>
#include <functional>
#include <thread>

#include <gtest/gtest.h>

#include "content/Documents.h"
#include "dock/BarFixture.h"
#include "dock/DragObjects.h"
#include "dock/DragState.h"
#include "support/Desk.h"
#include "support/FailingClass.h"
#include "support/ImportSlot.h"
#include "support/LogCapture.h"
#include "toolkit/drawing/WICHelper.h"

#include <shlobj.h>

extern "C" decltype(&::UpdateLayeredWindow) __imp_UpdateLayeredWindow;
extern "C" decltype(&::RegisterDragDrop) __imp_RegisterDragDrop;
extern "C" decltype(&::RevokeDragDrop) __imp_RevokeDragDrop;

namespace lumenor {

namespace {

using Texts = std::vector<std::wstring>;
using Microsoft::WRL::ComPtr;

constexpr POINT farAway = {640, 600};

// What the dock gives to the platform.

ComPtr<IDropTarget> registeredTarget;
HWND revokedWindow = nullptr;
HRESULT registrationResult = S_OK;
decltype(__imp_RegisterDragDrop) platformRegister = nullptr;
decltype(__imp_RevokeDragDrop) platformRevoke = nullptr;

HRESULT WINAPI NoteRegistration(HWND window, IDropTarget *target) {
  registeredTarget = target;
  return FAILED(registrationResult) ? registrationResult : platformRegister(window, target);
}

HRESULT WINAPI NoteRevocation(HWND window) {
  revokedWindow = window;
  return platformRevoke(window);
}

/// Where white stands in a row of the bar: the first pixel and the one behind the last; both -1 without any.
struct WhiteRun {
  int left = -1;
  int right = -1;

  bool operator==(const WhiteRun &) const = default;
};

std::ostream &operator<<(std::ostream &out, const WhiteRun &run) { return out << run.left << " to " << run.right; }

/// The marker as the bar's last picture has it.
struct Marker {
  WhiteRun topCap;
  WhiteRun aboveIt;
  WhiteRun stem;
  WhiteRun bottomCap;
  WhiteRun belowIt;
};

WhiteRun FindWhite(HDC picture, int width, int y) {
  WhiteRun run;
  for (int x = 0; x < width; ++x) {
    if (::GetPixel(picture, x, y) != RGB(255, 255, 255))
      continue;
    if (run.left < 0)
      run.left = x;
    run.right = x + 1;
  }
  return run;
}

HWND watchedBar = nullptr;
int pictures = 0;
Marker marker;
decltype(__imp_UpdateLayeredWindow) platformUpdate = nullptr;

BOOL WINAPI NotePicture(HWND window, HDC to, POINT *place, SIZE *size, HDC from, POINT *origin, COLORREF key,
                        BLENDFUNCTION *blend, DWORD flags) {
  if (window == watchedBar) {
    ++pictures;
    // Off the rows in which buttons have their pictures and texts, the bar itself has nothing white.
    marker = {FindWhite(from, size->cx, 4), FindWhite(from, size->cx, 3), FindWhite(from, size->cx, 10),
              FindWhite(from, size->cx, 74), FindWhite(from, size->cx, 75)};
  }
  return platformUpdate(window, to, place, size, from, origin, key, blend, flags);
}

class Drag : public BarFixture {
protected:
  Drag() {
    registeredTarget.Reset();
    revokedWindow = nullptr;
    registrationResult = S_OK;
    platformUpdate = updates.Former();
    platformRegister = registrations.Former();
    platformRevoke = revocations.Former();
    ForgetDrag();
    desk::MoveCursor(farAway);
  }
  ~Drag() override {
    ForgetDrag();
    registeredTarget.Reset();
    watchedBar = nullptr;
  }

  void StartWith(const ElementList &elements) {
    SaveDocument(elements, userDocument);
    Start();
    watchedBar = dock->handle;
  }

  void StartWith(int count) { StartWith(PictureElements(count)); }

  /// The labels of records and buttons, which go together.
  Texts Heads() const {
    Texts records, buttons;
    for (const Element &element : dock->GetUserElements())
      records.push_back(element.Head);
    for (const auto &button : dock->GetUserButtons())
      buttons.push_back(button->GetElement().Head);
    EXPECT_EQ(records, buttons);
    return buttons;
  }

  HWND WindowOf(std::size_t index) const { return dock->GetUserButtons().at(index)->GetHandle(); }

  /// The place on the screen that is `right` pixels behind the left end of the row.
  POINT OnRow(LONG right, LONG down = 30) const {
    POINT point = {right, down};
    ::ClientToScreen(BarTree(*dock).userButtons.GetHandle(), &point);
    return point;
  }

  /// On the left or the right half of a button.
  POINT FirstHalf(int index) const { return OnRow(4 + 81 * index + 10); }
  POINT SecondHalf(int index) const { return OnRow(4 + 81 * index + 60); }

  LRESULT Notify(UINT code, UINT_PTR idFrom) const {
    const NMHDR header = {dock->handle, idFrom, code};
    return ::SendMessageW(dock->handle, WM_NOTIFY, reinterpret_cast<WPARAM>(dock->handle),
                          reinterpret_cast<LPARAM>(&header));
  }
  LRESULT Notify(UINT code, POINT screen) const {
    return Notify(code, static_cast<DWORD>(MAKELONG(screen.x, screen.y)));
  }
  LRESULT Over(POINT screen) const { return Notify(2, screen); }

  LRESULT Add(const std::wstring &path, POINT screen) const {
    return ::SendMessageW(dock->handle, DragAddMessage, reinterpret_cast<WPARAM>(path.c_str()),
                          MAKELONG(screen.x, screen.y));
  }

  /// A file that exists.
  std::wstring MakeFile(const std::wstring &name) const {
    const std::wstring path = folders.Root() + L"\\" + name;
    tests::WriteBytes(path, "content");
    return path;
  }

  /// Drags the files of these names from elsewhere to `screen` and drops them.
  HRESULT DropFiles(const Texts &names, POINT screen) const {
    Texts paths;
    for (const std::wstring &name : names)
      paths.push_back(MakeFile(name));
    return DropData(MakeFileData(paths).Get(), screen);
  }

  static HRESULT DropData(IDataObject *data, POINT screen) {
    DWORD effect = DROPEFFECT_COPY;
    registeredTarget->DragEnter(data, MK_LBUTTON, {screen.x, screen.y}, &effect);
    effect = DROPEFFECT_COPY;
    registeredTarget->DragOver(MK_LBUTTON, {screen.x, screen.y}, &effect);
    effect = DROPEFFECT_COPY;
    return registeredTarget->Drop(data, 0, {screen.x, screen.y}, &effect);
  }

  /// The places that the marker has for the left end `left` of its caps, if it is drawn whole.
  static void ExpectMarker(int left) {
    EXPECT_EQ((WhiteRun{left, left + 9}), marker.topCap);
    EXPECT_EQ((WhiteRun{left, left + 9}), marker.bottomCap);
    EXPECT_EQ(2, marker.stem.right - marker.stem.left);
    EXPECT_NEAR(left + 4.5, (marker.stem.left + marker.stem.right) / 2.0, 0.5);
    EXPECT_EQ(WhiteRun{}, marker.aboveIt);
    EXPECT_EQ(WhiteRun{}, marker.belowIt);
  }

  static void ExpectNoMarker() {
    EXPECT_EQ(WhiteRun{}, marker.topCap);
    EXPECT_EQ(WhiteRun{}, marker.stem);
    EXPECT_EQ(WhiteRun{}, marker.bottomCap);
  }

  /// The row's left end in the bar's coordinates.
  int RowLeft() const {
    POINT point = OnRow(0);
    ::ScreenToClient(dock->handle, &point);
    return point.x;
  }

private:
  const tests::ImportSlot<decltype(&::UpdateLayeredWindow)> updates{&__imp_UpdateLayeredWindow, &NotePicture};
  const tests::ImportSlot<decltype(&::RegisterDragDrop)> registrations{&__imp_RegisterDragDrop, &NoteRegistration};
  const tests::ImportSlot<decltype(&::RevokeDragDrop)> revocations{&__imp_RevokeDragDrop, &NoteRevocation};
};

// The drop target's life.

TEST_F(Drag, IsPossibleAsLongAsTheWindowStands) {
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

TEST_F(Drag, OverTheRoomOfTheRowIsOverTheButtons) {
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

TEST_F(Drag, OfFilesBringsTheBarToTheFront) {
  const desk::Backdrop other({300, 300, 500, 400}, RGB(10, 20, 30));
  StartWith(1);
  ::SetForegroundWindow(other.Get());
  ASSERT_EQ(other.Get(), ::GetForegroundWindow());
  DropFiles({L"New.txt"}, FirstHalf(0));
  EXPECT_EQ(dock->handle, ::GetForegroundWindow());
}

// Whole drags. The hand is a thread of its own: the platform's loop of a drag runs inside a message of the button.

void SendMouse(DWORD flags, POINT point = {}) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dx = ::MulDiv(point.x, 65536, ::GetSystemMetrics(SM_CXSCREEN)) + 1;
  input.mi.dy = ::MulDiv(point.y, 65536, ::GetSystemMetrics(SM_CYSCREEN)) + 1;
  input.mi.dwFlags = flags;
  ::SendInput(1, &input, sizeof input);
  ::Sleep(50); // a hand's pace
}

void MoveHand(POINT point) { SendMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, point); }

void PressEscape() {
  desk::PressKey(VK_ESCAPE);
  desk::ReleaseKey(VK_ESCAPE);
  ::Sleep(50);
}

/// Lets a hand do `steps` while this thread pumps; in the end nothing is pressed any more.
void ByHand(const std::function<void()> &steps) {
  std::atomic<bool> isDone = false;
  std::thread hand([&] {
    steps();
    SendMouse(MOUSEEVENTF_LEFTUP);
    isDone = true;
  });
  desk::PumpUntil([&] { return isDone.load(); }, std::chrono::seconds(30));
  hand.join();
  desk::PumpAll();
}

/// The platform's loop of a drag takes the place of whatever message comes for the cursor's, and one that has waited
/// tells an old place: so the hand isn't still before it lets go.
void Tremble(POINT place) {
  for (int i = 1; i < 5; ++i)
    MoveHand({place.x + i % 2, place.y});
}

/// Presses at `from`, moves through `places` and lets go.
void DragByHand(POINT from, const std::vector<POINT> &places) {
  ByHand([&] {
    MoveHand(from);
    SendMouse(MOUSEEVENTF_LEFTDOWN);
    MoveHand({from.x + 6, from.y});
    for (const POINT place : places)
      MoveHand(place);
    Tremble(places.back());
    SendMouse(MOUSEEVENTF_LEFTUP);
  });
}

class ButtonDrag : public Drag {
protected:
  /// Nothing of a drag is left, and every button is there to be seen.
  void ExpectAtRest() const {
    EXPECT_EQ(nullptr, draggedButton);
    EXPECT_FALSE(dragOutside);
    EXPECT_FALSE(dragOverButtons);
    ExpectNoMarker();
    for (const auto &button : dock->GetUserButtons()) {
      EXPECT_EQ(lumenor::Visibility::Visible, button->Visibility.Get());
      EXPECT_EQ(0, button->IsPressed.Get());
      EXPECT_TRUE(::IsWindowVisible(button->GetHandle()));
    }
  }
};

TEST_F(ButtonDrag, MovesTheButton) {
  StartWith(4);
  DragByHand(FirstHalf(0), {FirstHalf(2), SecondHalf(2)});
  EXPECT_EQ((Texts{L"Head 1", L"Head 2", L"Head 0", L"Head 3"}), Heads());
  ExpectAtRest();
  DragByHand(FirstHalf(3), {SecondHalf(1), FirstHalf(1)});
  EXPECT_EQ((Texts{L"Head 1", L"Head 3", L"Head 2", L"Head 0"}), Heads());
  ExpectAtRest();
  EXPECT_TRUE(shell.Launches().empty()) << "a drag is no click";
}

TEST_F(ButtonDrag, HidesTheButtonAndShowsTheMarkerMeanwhile) {
  StartWith(4);
  std::atomic<bool> wasHidden = false;
  std::atomic<bool> wasMarked = false;
  ByHand([&] {
    MoveHand(FirstHalf(0));
    SendMouse(MOUSEEVENTF_LEFTDOWN);
    MoveHand(SecondHalf(0));
    MoveHand(SecondHalf(2));
    for (int i = 0; i < 40 && marker.topCap.left < 0; ++i)
      ::Sleep(50);
    wasMarked = marker.topCap.left >= 0;
    wasHidden = !::IsWindowVisible(WindowOf(0));
    SendMouse(MOUSEEVENTF_LEFTUP);
  });
  EXPECT_TRUE(wasHidden);
  EXPECT_TRUE(wasMarked);
  ExpectAtRest();
}

TEST_F(ButtonDrag, ToItsOwnPlaceChangesNothing) {
  StartWith(3);
  const ElementList before = dock->GetUserElements();
  DragByHand(FirstHalf(1), {SecondHalf(2), SecondHalf(1)});
  EXPECT_EQ(before, dock->GetUserElements());
  EXPECT_EQ((Texts{L"Head 0", L"Head 1", L"Head 2"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, IsUndoneByEscape) {
  StartWith(3);
  ByHand([&] {
    MoveHand(FirstHalf(0));
    SendMouse(MOUSEEVENTF_LEFTDOWN);
    MoveHand(SecondHalf(0));
    MoveHand(SecondHalf(2));
    PressEscape();
  });
  EXPECT_EQ((Texts{L"Head 0", L"Head 1", L"Head 2"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, OutOfTheBarRemovesTheButton) {
  StartWith(3);
  DragByHand(FirstHalf(1), {SecondHalf(1), farAway});
  EXPECT_EQ((Texts{L"Head 0", L"Head 2"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, ToAnotherPlaceOfTheBarRemovesTheButtonToo) {
  StartWith(3);
  DragByHand(FirstHalf(1), {SecondHalf(1), {1000, 70}});
  EXPECT_EQ((Texts{L"Head 0", L"Head 2"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, OutOfTheBarAndBackAgainRemovesNothing) {
  StartWith(3);
  DragByHand(FirstHalf(1), {SecondHalf(1), farAway, {640, 300}, FirstHalf(0)});
  EXPECT_EQ((Texts{L"Head 1", L"Head 0", L"Head 2"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, OutOfTheBarAndEscapeRemovesNothing) {
  StartWith(3);
  ByHand([&] {
    MoveHand(FirstHalf(0));
    SendMouse(MOUSEEVENTF_LEFTDOWN);
    MoveHand(SecondHalf(0));
    MoveHand(farAway);
    PressEscape();
  });
  EXPECT_EQ((Texts{L"Head 0", L"Head 1", L"Head 2"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, OfAVanishedTargetRemovesTheButtonAtOnce) {
  Element element = PictureElement(L"Vanishing");
  element.Image.clear();
  element.ActionParams = L"\"" + MakeFile(L"target.txt") + L"\"";
  StartWith({PictureElement(L"First"), element, PictureElement(L"Last")});
  ASSERT_EQ(3U, Heads().size());
  tests::DeleteTree(folders.Root() + L"\\target.txt");
  ::DeleteFileW((folders.Root() + L"\\target.txt").c_str());
  ByHand([&] {
    MoveHand(FirstHalf(1));
    SendMouse(MOUSEEVENTF_LEFTDOWN);
    MoveHand(SecondHalf(1));
  });
  EXPECT_EQ((Texts{L"First", L"Last"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, OfAVanishedTargetWithAPictureGoesOn) {
  StartWith(2); // the programs of these have never been there
  DragByHand(FirstHalf(0), {SecondHalf(1)});
  EXPECT_EQ((Texts{L"Head 1", L"Head 0"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, OfAnUnreadablePictureGoesOn) {
  StartWith(2);
  tests::WriteText(PicturePath(), L"no picture any more");
  DragByHand(FirstHalf(0), {SecondHalf(1)});
  EXPECT_EQ((Texts{L"Head 1", L"Head 0"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, OfAnIconGoesOn) {
  Element element = PictureElement(L"Icon");
  element.Image.clear();
  element.ActionParams = L"C:\\windows\\notepad.exe";
  StartWith({element, PictureElement(L"Other")});
  DragByHand(FirstHalf(0), {SecondHalf(1)});
  EXPECT_EQ((Texts{L"Other", L"Icon"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, ThatCannotBeginLeavesTheButtonAndRaises) {
  StartWith(2);
  const tests::FailingClass failing(CLSID_DragDropHelper, REGDB_E_CLASSNOTREG);
  ButtonEventArgs args{dock->GetUserButtons().at(0).get()};
  draggedButton = WindowOf(0);
  EXPECT_ANY_THROW(dock->GetUserButtons().at(0)->DragBegin.Fire(&args));
  ExpectAtRest();
  EXPECT_EQ((Texts{L"Head 0", L"Head 1"}), Heads());
}

TEST_F(ButtonDrag, OfNobodyIsIgnored) {
  StartWith(1);
  ButtonEventArgs args;
  dock->GetUserButtons().at(0)->DragBegin.Fire(&args);
  ExpectAtRest();
}

TEST_F(ButtonDrag, OfAButtonThatIsNotDraggableNeverBegins) {
  SaveDocument(PictureElements(1), mainDocument);
  StartWith(2);
  const BarTree tree(*dock);
  for (const HWND window : {tree.mainButtons.GetChildren().at(0)->GetHandle(), tree.resetButton.GetHandle(),
                            tree.forYouButton.GetHandle()}) {
    ByHand([&] {
      POINT middle = desk::MiddleOf(window);
      MoveHand(middle);
      SendMouse(MOUSEEVENTF_LEFTDOWN);
      MoveHand({middle.x + 2, middle.y});
      EXPECT_EQ(nullptr, draggedButton);
      EXPECT_TRUE(::IsWindowVisible(window));
      MoveHand(farAway);
    });
  }
  ExpectAtRest();
}

TEST_F(ButtonDrag, OfAnAddedButtonWorksToo) {
  StartWith(2);
  DropFiles({L"New.txt"}, OnRow(500));
  DragByHand(FirstHalf(2), {FirstHalf(0)});
  EXPECT_EQ((Texts{L"New", L"Head 0", L"Head 1"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, DuringWhichTheDisplayChangesGoesOn) {
  StartWith(3);
  ByHand([&] {
    MoveHand(FirstHalf(0));
    SendMouse(MOUSEEVENTF_LEFTDOWN);
    MoveHand(SecondHalf(0));
    ::SendMessageW(dock->handle, WM_DISPLAYCHANGE, 32, MAKELPARAM(1280, 1024));
    MoveHand(SecondHalf(2));
  });
  EXPECT_EQ((Texts{L"Head 1", L"Head 2", L"Head 0"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, DuringWhichTheBarClosesEndsWithIt) {
  StartWith(3);
  const HWND window = dock->handle;
  std::optional<int> quitCode;
  std::thread hand([&] {
    MoveHand(FirstHalf(0));
    SendMouse(MOUSEEVENTF_LEFTDOWN);
    MoveHand(SecondHalf(0));
    MoveHand(SecondHalf(2));
    ::SendMessageW(window, WM_CLOSE, 0, 0);
    SendMouse(MOUSEEVENTF_LEFTUP);
  });
  MSG message = {};
  while (::GetMessageW(&message, nullptr, 0, 0) > 0)
    ::DispatchMessageW(&message);
  hand.join();
  EXPECT_EQ(WM_QUIT, message.message);
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_EQ(nullptr, draggedButton);
  EXPECT_EQ((ElementList{PictureElements(3)}), LoadDocument(userDocument, false));
}

TEST_F(ButtonDrag, LeavesNothingBehind) {
  StartWith(3);
  DragByHand(FirstHalf(0), {SecondHalf(1)});
  const ULONG references = CountReferences(registeredTarget.Get());
  for (int i = 0; i < 3; ++i)
    DragByHand(FirstHalf(0), {SecondHalf(1)});
  EXPECT_EQ(references, CountReferences(registeredTarget.Get()));
}

} // namespace

} // namespace lumenor
