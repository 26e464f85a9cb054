// Whole drags of the user's buttons by a real hand.

#include <atomic>
#include <functional>
#include <thread>

#include <gtest/gtest.h>

#include "dock/dragdrop/DragFixture.h"
#include "resources/resource.h"
#include "support/AnsweringWindow.h"
#include "support/FailingClass.h"
#include "support/InputEvents.h"

extern "C" decltype(&::LoadCursorW) __imp_LoadCursorW;
extern "C" decltype(&::DestroyCursor) __imp_DestroyCursor;

namespace lumenor {

namespace {

// The hand is a thread of its own: the platform's loop of a drag runs inside a message of the button.

std::atomic<HWND> receiver; // a window of the thread that the hand works on

void Send(INPUT input) {
  ::SendInput(1, &input, sizeof input);
  ::Sleep(50); // a hand's pace
  tests::WaitUntilInputIsTaken(receiver);
}

void SendButton(DWORD change) { Send(tests::MouseInput(change)); }

// A late report of the display may take the cursor back once.
void MoveHand(POINT point) {
  for (int i = 0; i == 0 || (i < 20 && !tests::IsCursorAt(point)); ++i)
    Send(tests::MoveInput(point));
}

void PressEscape() {
  desk::PressKey(VK_ESCAPE);
  desk::ReleaseKey(VK_ESCAPE);
  ::Sleep(50);
}

/// Lets a hand do `steps` while this thread pumps; in the end nothing is pressed any more.
void ByHand(const std::function<void()> &steps) {
  const tests::AnsweringWindow ofThisThread([](UINT, WPARAM, LPARAM) { return LRESULT{0}; });
  receiver = ofThisThread.Get();
  std::atomic<bool> isDone = false;
  std::thread hand([&] {
    steps();
    SendButton(MOUSEEVENTF_LEFTUP);
    isDone = true;
  });
  desk::PumpUntil([&] { return isDone.load(); });
  hand.join();
  receiver = nullptr;
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
    SendButton(MOUSEEVENTF_LEFTDOWN);
    MoveHand({from.x + 6, from.y});
    for (const POINT place : places)
      MoveHand(place);
    Tremble(places.back());
    SendButton(MOUSEEVENTF_LEFTUP);
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

/// Notes the cursors that are loaded from the program and those that are destroyed while it lives.
class CursorSpy {
public:
  CursorSpy() {
    loaded.clear();
    destroyed.clear();
    platformLoad = load.Former();
    platformDestroy = destroy.Former();
  }

  static inline std::vector<HCURSOR> loaded;
  static inline std::vector<HCURSOR> destroyed;

private:
  static HCURSOR WINAPI NoteLoading(HINSTANCE module, LPCWSTR name) {
    const HCURSOR cursor = platformLoad(module, name);
    if (name == MAKEINTRESOURCEW(DragCursorId))
      loaded.push_back(cursor);
    return cursor;
  }
  static BOOL WINAPI NoteDestruction(HCURSOR cursor) {
    destroyed.push_back(cursor);
    return platformDestroy(cursor);
  }

  static inline decltype(&::LoadCursorW) platformLoad;
  static inline decltype(&::DestroyCursor) platformDestroy;

  const tests::ImportSlot<decltype(&::LoadCursorW)> load{&__imp_LoadCursorW, &NoteLoading};
  const tests::ImportSlot<decltype(&::DestroyCursor)> destroy{&__imp_DestroyCursor, &NoteDestruction};
};

// The platform shares a loaded cursor among all who load it, and nobody may destroy it.
TEST_F(ButtonDrag, DestroysACursorOfItsOwnAndNotTheOneThatThePlatformShares) {
  StartWith(2);
  const CursorSpy cursors;
  DragByHand(FirstHalf(0), {SecondHalf(1)});
  ASSERT_EQ(1U, CursorSpy::loaded.size());
  ASSERT_EQ(1U, CursorSpy::destroyed.size());
  EXPECT_NE(nullptr, CursorSpy::destroyed[0]);
  EXPECT_NE(CursorSpy::loaded[0], CursorSpy::destroyed[0]);
}

TEST_F(ButtonDrag, MovesAButtonThatWasAddedToo) {
  StartWith(2);
  dock->AddButton(PictureElement(L"New"), 2);
  DragByHand(FirstHalf(2), {SecondHalf(1), FirstHalf(0)});
  EXPECT_EQ((Texts{L"New", L"Head 0", L"Head 1"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, LeavesNoGlowOnAButtonThatTheCursorIsNotOver) {
  StartWith(4);
  DragByHand(FirstHalf(0), {FirstHalf(2), FirstHalf(3)});
  ASSERT_EQ((Texts{L"Head 1", L"Head 2", L"Head 0", L"Head 3"}), Heads());
  EXPECT_EQ(0, dock->GetUserButtons().at(2)->IsMouseOver.Get());
}

TEST_F(ButtonDrag, HidesTheButtonAndShowsTheMarkerMeanwhile) {
  StartWith(4);
  std::atomic<bool> wasHidden = false;
  std::atomic<bool> wasMarked = false;
  ByHand([&] {
    MoveHand(FirstHalf(0));
    SendButton(MOUSEEVENTF_LEFTDOWN);
    MoveHand(SecondHalf(0));
    MoveHand(SecondHalf(2));
    for (int i = 0; i < 40 && marker.topCap.left < 0; ++i)
      ::Sleep(50);
    wasMarked = marker.topCap.left >= 0;
    wasHidden = !::IsWindowVisible(WindowOf(0));
    SendButton(MOUSEEVENTF_LEFTUP);
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
    SendButton(MOUSEEVENTF_LEFTDOWN);
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
    SendButton(MOUSEEVENTF_LEFTDOWN);
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
    SendButton(MOUSEEVENTF_LEFTDOWN);
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
  dock->GetUserButtons().at(0)->IsPressed.Set(1);
  EXPECT_ANY_THROW(dock->GetUserButtons().at(0)->DragBegin.Fire(&args));
  ExpectAtRest();
  EXPECT_EQ((Texts{L"Head 0", L"Head 1"}), Heads());
}

TEST_F(ButtonDrag, WithoutASenderIsIgnored) {
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
      SendButton(MOUSEEVENTF_LEFTDOWN);
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
    SendButton(MOUSEEVENTF_LEFTDOWN);
    MoveHand(SecondHalf(0));
    ::SendMessageW(dock->handle, WM_DISPLAYCHANGE, 32, MAKELPARAM(1280, 1024));
    MoveHand(SecondHalf(2));
  });
  EXPECT_EQ((Texts{L"Head 1", L"Head 2", L"Head 0"}), Heads());
  ExpectAtRest();
}

TEST_F(ButtonDrag, DuringWhichTheBarClosesEndsWithIt) {
  StartWith(3);
  dock->AddButton(PictureElement(L"New"), 3); // isn't in the document yet
  const HWND window = dock->handle;
  std::thread hand([&] {
    MoveHand(FirstHalf(0));
    SendButton(MOUSEEVENTF_LEFTDOWN);
    MoveHand(SecondHalf(0));
    MoveHand(SecondHalf(2));
    ::SendMessageW(window, WM_CLOSE, 0, 0);
    SendButton(MOUSEEVENTF_LEFTUP);
  });
  MSG message = {};
  while (::GetMessageW(&message, nullptr, 0, 0) > 0)
    ::DispatchMessageW(&message);
  hand.join();
  EXPECT_EQ(WM_QUIT, message.message);
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_EQ(nullptr, draggedButton);
  ElementList expected = PictureElements(3);
  expected.push_back(PictureElement(L"New"));
  EXPECT_EQ(expected, LoadDocument(userDocument, false));
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
