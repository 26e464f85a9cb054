// The user's row of buttons: adding, removing, moving.

#include <gtest/gtest.h>

#include "content/Documents.h"
#include "dock/bar/BarFixture.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "dock/TestBar.h"
#include "drawing/Pictures.h"
#include "support/Desk.h"
#include "toolkit/drawing/CommandNotFoundException.h"

namespace lumenor {

namespace {

using Texts = std::vector<std::wstring>;
using Ids = std::vector<int>;

class UserButtons : public BarFixture {
protected:
  CMainDlg &StartWith(const ElementList &elements) {
    SaveDocument(elements, userDocument);
    return Start();
  }

  CMainDlg &StartWith(int count) { return StartWith(PictureElements(count)); }

  Texts RecordHeads() const {
    Texts heads;
    for (const Element &element : dock->GetUserElements())
      heads.push_back(element.Head);
    return heads;
  }

  Texts ButtonHeads() const {
    Texts heads;
    for (const auto &button : dock->GetUserButtons())
      heads.push_back(button->GetElement().Head);
    return heads;
  }

  /// The labels on the row itself, in its order.
  Texts RowHeads() const {
    Texts heads;
    for (UIElement *const child : BarTree(*dock).userButtons.GetChildren())
      heads.push_back(dynamic_cast<DockButton &>(*child).GetElement().Head);
    return heads;
  }

  void ExpectAll(const Texts &heads) const {
    EXPECT_EQ(heads, RecordHeads());
    EXPECT_EQ(heads, ButtonHeads());
    EXPECT_EQ(heads, RowHeads());
  }

  Ids ButtonIds() const {
    Ids ids;
    for (const auto &button : dock->GetUserButtons())
      ids.push_back(::GetDlgCtrlID(button->GetHandle()));
    return ids;
  }

  HWND WindowOf(std::size_t index) const { return dock->GetUserButtons().at(index)->GetHandle(); }

  /// Removes a button and lets the message behind it through.
  void Remove(std::size_t index) {
    dock->RemoveButton(WindowOf(index));
    TakeQuitCode();
  }
};

TEST_F(UserButtons, AreAddedAtAPosition) {
  StartWith(2).AddButton(PictureElement(L"New"), 1);
  ExpectAll({L"Head 0", L"New", L"Head 1"});
}

TEST_F(UserButtons, AreAppendedAtTheCount) {
  StartWith(2).AddButton(PictureElement(L"New"), 2);
  ExpectAll({L"Head 0", L"Head 1", L"New"});
}

TEST_F(UserButtons, AreNotAddedBehindTheCount) {
  StartWith(2).AddButton(PictureElement(L"New"), 3);
  ExpectAll({L"Head 0", L"Head 1"});
  EXPECT_EQ((Ids{2000, 2001}), ButtonIds());
}

TEST_F(UserButtons, LookTheSameWhetherLoadedOrAdded) {
  StartWith(1).AddButton(PictureElement(L"New"), 1);
  EXPECT_EQ((std::vector<std::string>{"StackPanel 0 0 162 77", "  DockButton 4 4 77 73", "  DockButton 85 4 77 73"}),
            Describe(BarTree(*dock).userButtons));
  const DockButton &button = *dock->GetUserButtons().at(1);
  EXPECT_EQ((Margin{4, 0, 4, 0}), button.Margin.Get());
  EXPECT_EQ(1, button.Draggable.Get());
  EXPECT_EQ(L"Tip of New", button.Name.Get());
  EXPECT_TRUE(::IsWindowVisible(button.handle));
}

TEST_F(UserButtons, AnswerClicksWhenAdded) {
  StartWith(0).AddButton(PictureElement(L"nothing"), 0);
  ::SendMessageW(WindowOf(0), WM_COMMAND, 0, reinterpret_cast<LPARAM>(WindowOf(0)));
  EXPECT_EQ((std::vector<Launch>{{nullptr, L"open", L"C:\\windows\\nothing.exe", L"", SW_SHOW}}), shell.Launches());
}

TEST_F(UserButtons, TakeTheLowestFreeId) {
  StartWith(3);
  Remove(1);
  EXPECT_EQ((Ids{2000, 2002}), ButtonIds());
  dock->AddButton(PictureElement(L"New"), 0);
  EXPECT_EQ((Ids{2001, 2000, 2002}), ButtonIds());
  dock->AddButton(PictureElement(L"Newer"), 0);
  EXPECT_EQ(2003, ButtonIds().front());
}

TEST_F(UserButtons, AreThirtyAtMost) {
  StartWith(29);
  dock->AddButton(PictureElement(L"Thirtieth"), 29);
  Ids expected;
  for (int i = 0; i < 30; ++i)
    expected.push_back(2000 + i);
  EXPECT_EQ(expected, ButtonIds());
  dock->AddButton(PictureElement(L"Refused"), 0);
  EXPECT_EQ(30U, dock->GetUserElements().size());
  EXPECT_EQ(30U, dock->GetUserButtons().size());
  Remove(7);
  dock->AddButton(PictureElement(L"Taken"), 0);
  EXPECT_EQ(2007, ButtonIds().front());
}

TEST_F(UserButtons, ThatCannotBeMadeLeaveTheirRecordAndTheirId) {
  StartWith(1);
  EXPECT_THROW(dock->AddButton(VanishedElement(L"Gone"), 0), CommandNotFoundException);
  EXPECT_EQ((Texts{L"Gone", L"Head 0"}), RecordHeads());
  EXPECT_EQ((Texts{L"Head 0"}), ButtonHeads());
  dock->AddButton(PictureElement(L"New"), 1);
  EXPECT_EQ((Ids{2000, 2002}), ButtonIds());
}

TEST_F(UserButtons, LeaveTheRowAtOnceAndTheListLater) {
  StartWith(3);
  const HWND window = WindowOf(1);
  dock->RemoveButton(window);
  EXPECT_EQ(lumenor::Visibility::Collapsed, dock->GetUserButtons().at(1)->Visibility.Get());
  EXPECT_EQ("  DockButton 85 4 77 73", Describe(BarTree(*dock).userButtons).at(3));
  EXPECT_EQ(3U, dock->GetUserElements().size());
  TakeQuitCode();
  ExpectAll({L"Head 0", L"Head 2"});
  EXPECT_FALSE(::IsWindow(window));
}

TEST_F(UserButtons, OfNoWindowOrAStrangersAreNotRemoved) {
  StartWith(2);
  dock->RemoveButton(nullptr);
  dock->RemoveButton(dock->handle);
  TakeQuitCode();
  ExpectAll({L"Head 0", L"Head 1"});
}

TEST_F(UserButtons, RemovedTwiceGoOnce) {
  StartWith(3);
  const HWND window = WindowOf(0);
  dock->RemoveButton(window);
  dock->RemoveButton(window);
  TakeQuitCode();
  ExpectAll({L"Head 1", L"Head 2"});
}

TEST_F(UserButtons, AreGoneFromTheDocumentAfterTheEnd) {
  StartWith(3);
  Remove(0);
  ::SendMessageW(dock->handle, WM_CLOSE, 0, 0);
  const ElementList saved = LoadDocument(userDocument, false);
  EXPECT_EQ((ElementList{PictureElement(L"Head 1"), PictureElement(L"Head 2")}), saved);
}

TEST_F(UserButtons, TakeTheirOpenFlyoutAlong) {
  Element element = PictureElement(L"Folder");
  element.ActionType = L"xml";
  element.ActionParams = L"Flyout.One";
  StartWith({element});
  FlyoutWindow &flyout = *dock->GetUserButtons().at(0)->GetFlyout();
  flyout.ToggleVisibility();
  const HWND window = flyout.handle;
  ASSERT_TRUE(::IsWindowVisible(window));
  Remove(0);
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_FALSE(dock->IsKeptAwake());
}

TEST_F(UserButtons, MoveForward) {
  StartWith(4).MoveButton(0, 2);
  ExpectAll({L"Head 1", L"Head 2", L"Head 0", L"Head 3"});
}

TEST_F(UserButtons, MoveBackward) {
  StartWith(4).MoveButton(3, 0);
  ExpectAll({L"Head 3", L"Head 0", L"Head 1", L"Head 2"});
  EXPECT_EQ((Ids{2003, 2000, 2001, 2002}), ButtonIds());
}

TEST_F(UserButtons, MoveToTheEnd) {
  StartWith(3).MoveButton(0, 2);
  ExpectAll({L"Head 1", L"Head 2", L"Head 0"});
}

TEST_F(UserButtons, DoNotMoveFromBehindTheEnd) {
  StartWith(2).MoveButton(2, 0);
  ExpectAll({L"Head 0", L"Head 1"});
}

TEST_F(UserButtons, AreSavedInTheOrderThatTheyWereMovedTo) {
  StartWith(3).MoveButton(2, 0);
  ::SendMessageW(dock->handle, WM_CLOSE, 0, 0);
  EXPECT_EQ((ElementList{PictureElement(L"Head 2"), PictureElement(L"Head 0"), PictureElement(L"Head 1")}),
            LoadDocument(userDocument, false));
}

TEST_F(UserButtons, KeepTheirPositionsWhenMoved) {
  ElementList elements = PictureElements(2);
  elements[0].Position = 7;
  elements[1].Position = 9;
  StartWith(elements).MoveButton(1, 0);
  EXPECT_EQ(9U, dock->GetUserElements().at(0).Position);
  EXPECT_EQ(7U, dock->GetUserElements().at(1).Position);
}

TEST_F(UserButtons, BehindASkippedRecordActOnTheNeighboursRecord) {
  StartWith({VanishedElement(L"Gone"), PictureElement(L"First"), PictureElement(L"Second")});
  dock->MoveButton(0, 1);
  EXPECT_EQ((Texts{L"Second", L"First"}), ButtonHeads());
  EXPECT_EQ((Texts{L"First", L"Gone", L"Second"}), RecordHeads());
  Remove(1);
  EXPECT_EQ((Texts{L"First", L"Second"}), RecordHeads());
}

/// Makes the folder and returns its path.
class ForYouState : public UserButtons {
protected:
  ForYouState() {
    tests::MakeFolders(folders.Root() + L"\\resources");
    tests::WritePicture(folders.Root() + L"\\resources\\foryou_idle.png", tests::SolidPicture(32, 32, 0xFFFF0000));
    tests::WritePicture(folders.Root() + L"\\resources\\foryou_active.png", tests::SolidPicture(32, 32, 0xFF00FF00));
  }

  /// The colour of the For You button's middle becomes this.
  bool Shows(std::uint32_t color) const {
    const POINT middle = desk::MiddleOf(BarTree(*dock).forYouButton.GetHandle());
    return desk::PumpUntil([&] { return desk::PixelAt(middle) == color; });
  }

  const tests::CurrentFolder programFolder{folders.Root() + L"\\Dock"};
};

TEST_F(ForYouState, IsIdleAtTheStart) {
  StartWith(0);
  EXPECT_TRUE(Shows(0xFF0000));
}

TEST_F(ForYouState, ShowsNewItemsAndAClickTakesTheMarkAway) {
  StartWith(0);
  dock->SetForYouState(true);
  EXPECT_TRUE(Shows(0x00FF00));
  const HWND button = BarTree(*dock).forYouButton.GetHandle();
  ::SendMessageW(button, WM_COMMAND, 0, reinterpret_cast<LPARAM>(button));
  EXPECT_TRUE(Shows(0xFF0000));
}

} // namespace

} // namespace lumenor
