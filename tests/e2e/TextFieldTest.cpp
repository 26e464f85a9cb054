// The search field under real keys and a real mouse.

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

namespace lumenor::e2e {
namespace {

class TextField : public ::testing::Test {
protected:
  TextField() {
    installation.WriteUsualStubs();
    installation.WriteSearchProviders({{.head = L"Prompt", .actionType = L"url", .actionParams = L"http://a/"}});
  }

  void SetUp() override {
    ASSERT_NE(nullptr, dock.Field());
    Click(dock.FieldPoint());
    MoveCursor(dock.Rest());
  }

  bool Holds(const std::wstring &text) {
    return WaitFor([&] { return dock.FieldText() == text; });
  }

  bool Selects(LONG start, LONG end) {
    return WaitFor([&] { return dock.FieldSelection().cx == start && dock.FieldSelection().cy == end; });
  }

  /// The part of the field from `from` to `to` pixels behind its left edge.
  RECT Part(int from, int to) const {
    const RECT field = dock.FieldRect();
    return {field.left + from, field.top, field.left + to, field.bottom};
  }

  const Installation installation;
  ShownDock dock{installation};
};

TEST_F(TextField, HoldsAndShowsWhatIsTyped) {
  // The caret may blink at the left end; the letters reach further.
  const Picture start = CaptureSettled(Part(8, 40)), end = CaptureSettled(Part(60, 84));

  TypeText(L"lamps");

  EXPECT_TRUE(Holds(L"lamps")) << tests::Utf8(dock.FieldText());
  EXPECT_TRUE(WaitFor([&] { return Capture(Part(8, 40)).Differences(start) > 20; }));
  SaveShot("typed");
  // Nothing is drawn where no letter is, but for the prompt, which goes.
  const Picture emptyEnd = CaptureSettled(Part(60, 84));
  EXPECT_LE(emptyEnd.Differences(end), end.Width() * end.Height() / 4);
}

TEST_F(TextField, ShiftAndArrowsSelectAndDeleteTakesTheSelectionAway) {
  TypeText(L"abcdef");
  ASSERT_TRUE(Holds(L"abcdef"));
  const Picture plain = CaptureSettled(dock.FieldRect());

  PressKeyWith(VK_SHIFT, VK_LEFT, 3);
  EXPECT_TRUE(Selects(3, 6));
  EXPECT_TRUE(WaitFor([&] { return Capture(dock.FieldRect()).Differences(plain) > 40; })) << "the selection shows";
  SaveShot("selected");

  PressKey(VK_DELETE);
  EXPECT_TRUE(Holds(L"abc"));
  PressKey(VK_BACK);
  EXPECT_TRUE(Holds(L"ab"));
}

TEST_F(TextField, TheMouseSelectsAndTypingReplacesTheSelection) {
  TypeText(L"mmmm");
  ASSERT_TRUE(Holds(L"mmmm"));
  const RECT field = dock.FieldRect();
  const LONG y = Center(field).y;
  Drag({field.right - 4, y}, {field.left + 1, y});
  EXPECT_TRUE(Selects(0, 4)) << dock.FieldSelection().cx << " to " << dock.FieldSelection().cy;
  TypeText(L"n");
  EXPECT_TRUE(Holds(L"n"));
}

TEST_F(TextField, TakesAHundredAndFiftyCharactersAndNoMore) {
  const std::wstring most(150, L'x');
  CopyToClipboard(most);
  PressKeyWith(VK_CONTROL, 'V');
  EXPECT_TRUE(Holds(most)) << dock.FieldText().size();

  PressKeyWith(VK_CONTROL, 'A');
  if (!Selects(0, 150)) { // the platform's field may not know this key
    PressKey(VK_HOME);
    PressKeyWith(VK_SHIFT, VK_END);
  }
  CopyToClipboard(std::wstring(150, L'y') + L"z");
  PressKeyWith(VK_CONTROL, 'V');
  EXPECT_TRUE(Holds(std::wstring(150, L'y'))) << dock.FieldText().size();

  TypeText(L"z");
  PressKey(VK_HOME);
  ASSERT_TRUE(Selects(0, 0)); // the letter before it has arrived too
  EXPECT_EQ(std::wstring(150, L'y'), dock.FieldText());
}

TEST_F(TextField, HomeAndEndMoveTheCaret) {
  TypeText(L"middle");
  ASSERT_TRUE(Selects(6, 6));
  PressKey(VK_HOME);
  EXPECT_TRUE(Selects(0, 0));
  TypeText(L"<");
  EXPECT_TRUE(Holds(L"<middle"));
  PressKey(VK_END);
  EXPECT_TRUE(Selects(7, 7));
  TypeText(L">");
  EXPECT_TRUE(Holds(L"<middle>"));
}

TEST_F(TextField, TakesACharacterOfTwoUnits) {
  TypeText(L"a\xD83D\xDE00z");
  EXPECT_TRUE(Holds(L"a\xD83D\xDE00z"));
  EXPECT_EQ(4u, dock.FieldText().size());
  EXPECT_TRUE(dock.IsRunning());
}

TEST_F(TextField, ShowsItsPromptOnlyWhileItIsEmpty) {
  TypeText(L" "); // a blank shows nothing, but it is text: the prompt goes
  ASSERT_TRUE(Holds(L" "));
  const Picture blank = CaptureSettled(Part(8, 60));
  PressKey(VK_BACK);
  ASSERT_TRUE(Holds(L""));
  OpenForYou(dock); // takes the focus away
  EXPECT_TRUE(WaitFor([&] { return Capture(Part(8, 60)).Differences(blank) > 20; }));
  SaveShot("prompt");
}

} // namespace
} // namespace lumenor::e2e
