// A text box in a real window, under the program's kind of message loop, with real keys.

#include "toolkit/TextBox.h"

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/WindowOnScreen.h"
#include "support/ImportSlot.h"
#include "system/WindowException.h"
#include "toolkit/ColorRectangle.h"
#include "toolkit/EditReading.h"

// The slot through which the program asks for the blink time.
extern "C" decltype(&::GetCaretBlinkTime) __imp_GetCaretBlinkTime;

namespace lumenor {

namespace {

using ::testing::AllOf;
using ::testing::Ge;
using ::testing::Le;

UINT WINAPI BlinkOnceAMinute() { return 60000; }

class TextBoxOnScreen : public WindowOnScreen {
protected:
  TextBoxOnScreen() {
    window.onInitialize = [this] { Compose(); };
    window.Create(nullptr);
    box->Accept.AddListener(acceptListener.get());
    TakeTheFocus();
  }
  ~TextBoxOnScreen() override {
    ForgetWindowException();
    window.onInitialize = nullptr;
    ::DestroyWindow(window.handle); // ahead of the box
    desk::PumpAll();
  }

  // The display tells of a new foreground window later, and the first one of a program may still lose the focus to it.
  void TakeTheFocus() {
    desk::PumpAll();
    PumpDialogUntil([this] {
      ::SetForegroundWindow(window.handle);
      ::SetFocus(box->GetHandle());
      return HasTheFocus();
    });
    PumpDialog();
  }

  bool HasTheFocus() const { return ::GetForegroundWindow() == window.handle && ::GetFocus() == box->GetHandle(); }

  // On a plate, as the field of the bar: where a text makes more of a window visible, some versions of the platform
  // have all of it painted once more.
  void Compose() {
    const RECT bounds{20, 30, 104, 42};
    plate = std::make_unique<ColorRectangle>(bounds, window.Target(), Color{0, 0, 0, 1});
    plate->SetBounds(&bounds);
    window.canvas.AddChild(plate.get());
    box = std::make_unique<TextBox>(window.Target(), 111);
    box->SetBounds(&bounds);
    box->MaxLength = 150;
    window.canvas.AddChild(box.get());
    box->ApplySystemFont();
  }

  /// One turn of the program's loop; false when nothing waits.
  bool DispatchOne() {
    MSG message{};
    if (!::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
      return false;
    if (message.message == WM_KEYDOWN)
      lastPressed = message.wParam;
    if (!::IsDialogMessageW(window.handle, &message)) {
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
    }
    RethrowWindowException();
    return true;
  }

  template <typename Condition> bool PumpDialogUntil(Condition condition, ULONGLONG limitMs = 60000) {
    const ULONGLONG deadline = ::GetTickCount64() + limitMs;
    while (::GetTickCount64() < deadline) {
      if (DispatchOne())
        continue;
      if (condition())
        return true;
      ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
    return false;
  }

  /// Until the window has nothing left to do.
  void PumpDialog() {
    PumpDialogUntil([this] { return !::GetUpdateRect(box->GetHandle(), nullptr, FALSE); });
  }

  /// Presses a key until the field has seen it: one that comes while the display has the focus elsewhere is lost. A key
  /// that is only late is waited for, since a second press would be a second letter. The platform may keep one in its
  /// queue until other input comes, so the mouse is moved a little.
  bool Press(WORD key) {
    for (int tries = 0; tries < 5; ++tries) {
      paintsBeforePress = window.paints;
      lastPressed = 0;
      desk::PressKey(key);
      for (const LONG x : {6, 5}) {
        if (PumpDialogUntil([&] { return lastPressed == key || !HasTheFocus(); }, 5000))
          break;
        desk::MoveCursor({x, 5});
      }
      if (lastPressed == key || PumpDialogUntil([&] { return lastPressed == key; }, 1000))
        return true;
      desk::ReleaseKey(key);
      TakeTheFocus();
    }
    return false;
  }

  /// Presses and releases a key, and pumps until the field has seen both.
  void Type(WORD key) {
    ASSERT_TRUE(Press(key));
    PumpDialog();
    desk::ReleaseKey(key);
    ASSERT_TRUE(PumpDialogUntil([&] { return ::GetKeyState(key) >= 0; }));
    PumpDialog();
  }

  std::wstring Text() const { return ReadWindowText(box->GetHandle()); }

  /// The columns of the field that the user sees anything white in, between two of its rows.
  std::vector<LONG> WhiteColumns(LONG fromRow, LONG toRow) const {
    RECT rect{};
    ::GetWindowRect(box->GetHandle(), &rect);
    std::vector<LONG> columns;
    for (LONG x = rect.left; x < rect.right; ++x)
      for (LONG y = rect.top + fromRow; y < rect.top + toRow; ++y)
        if (desk::PixelAt({x, y}) == 0xFFFFFF && (columns.empty() || columns.back() != x - rect.left))
          columns.push_back(x - rect.left);
    return columns;
  }

  void OnAccept(TextBoxEventArgs *args) {
    senders.push_back(args->sender);
    if (onAccept)
      onAccept();
  }

  tests::ImportSlot<decltype(&::GetCaretBlinkTime)> blinkTime{&__imp_GetCaretBlinkTime, &BlinkOnceAMinute};
  std::unique_ptr<ColorRectangle> plate;
  std::unique_ptr<TextBox> box;
  int paintsBeforePress = 0;
  WPARAM lastPressed = 0; // the key of the last press that came
  std::vector<TextBox *> senders;
  std::function<void()> onAccept;
  std::shared_ptr<TypedEventListener<TextBoxOnScreen, TextBoxEventArgs>> acceptListener =
      MakeListener(this, &TextBoxOnScreen::OnAccept);
};

} // namespace

TEST_F(TextBoxOnScreen, TakesTypedText) {
  Type('A');
  Type('B');
  EXPECT_EQ(Text(), L"ab");
  EXPECT_EQ(box->HasFocus.Get(), 1);
}

TEST_F(TextBoxOnScreen, KeyPressCostsAtMostTwoRepaints) {
  for (const WORD key : std::initializer_list<WORD>{'A', 'B', VK_BACK, VK_HOME, VK_DELETE}) {
    Type(key);
    EXPECT_THAT(window.paints - paintsBeforePress, AllOf(Ge(1), Le(2))) << key;
  }
  EXPECT_EQ(Text(), L"");
}

TEST_F(TextBoxOnScreen, TypedTextIsSeenBeforeTheKeyIsReleased) {
  ASSERT_TRUE(Press('A'));
  ASSERT_TRUE(PumpDialogUntil([&] { return Text() == L"a"; }));
  const std::optional<RECT> caret = ReadEditCaret(box->GetHandle());
  ASSERT_TRUE(caret.has_value());
  ASSERT_GT(caret->left, 4);
  EXPECT_TRUE(PumpDialogUntil([&] { return WhiteColumns(0, 1) == std::vector<LONG>{caret->left}; })) << "the caret";
  const std::vector<LONG> all = WhiteColumns(0, 12);
  EXPECT_THAT(all, ::testing::SizeIs(Ge(3))) << "and the letter";
  EXPECT_THAT(all, ::testing::Each(Le(caret->left)));
  desk::ReleaseKey('A');
  PumpDialogUntil([&] { return ::GetKeyState('A') >= 0; });
}

TEST_F(TextBoxOnScreen, NothingRepaintsWhileNothingHappens) {
  Type('A');
  const int before = window.paints;
  EXPECT_FALSE(PumpDialogUntil([&] { return window.paints != before; }, 300));
}

TEST_F(TextBoxOnScreen, TextSetFromOutsideIsShown) {
  const int before = window.paints;
  ::SetWindowTextW(box->GetHandle(), L"told");
  PumpDialog();
  EXPECT_EQ(window.paints, before + 1);
}

TEST_F(TextBoxOnScreen, ReturnAcceptsExactlyOnceAPress) {
  Type(VK_RETURN);
  EXPECT_EQ(senders, std::vector<TextBox *>{box.get()});
  Type(VK_RETURN);
  EXPECT_EQ(senders.size(), 2U);
  EXPECT_EQ(Text(), L"");
}

TEST_F(TextBoxOnScreen, ReturnThatIsHeldDownAcceptsOnce) {
  desk::PressKey(VK_RETURN);
  desk::PressKey(VK_RETURN);
  desk::PressKey(VK_RETURN);
  Type(VK_RETURN);
  EXPECT_EQ(senders.size(), 1U);
}

TEST_F(TextBoxOnScreen, ExceptionOfAnAcceptListenerReachesTheLoop) {
  onAccept = [] { throw std::runtime_error("accept"); };
  desk::PressKey(VK_RETURN);
  EXPECT_THROW(PumpDialogUntil([&] { return !senders.empty(); }), std::runtime_error);
  desk::ReleaseKey(VK_RETURN);
  PumpDialogUntil([&] { return ::GetKeyState(VK_RETURN) >= 0; });
}

TEST_F(TextBoxOnScreen, ClickPutsTheCaretWhereThePointerIs) {
  ::SetWindowTextW(box->GetHandle(), L"Hello world");
  POINT point{(static_cast<short>(LOWORD(::SendMessageW(box->GetHandle(), EM_POSFROMCHAR, 6, 0)))) + 1, 5};
  ::ClientToScreen(box->GetHandle(), &point);
  desk::MoveCursor(point);
  desk::PressLeftButton();
  desk::ReleaseLeftButton();
  DWORD start = 0;
  EXPECT_TRUE(PumpDialogUntil([&] {
    ::SendMessageW(box->GetHandle(), EM_GETSEL, reinterpret_cast<WPARAM>(&start), 0);
    return start == 6;
  })) << start;
}

} // namespace lumenor
