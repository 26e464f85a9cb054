// What a text box answers to each message, row by row.

#include "toolkit/TextBox.h"

#include <initializer_list>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <commctrl.h>

#include "support/ImportSlot.h"
#include "support/LogCapture.h"
#include "support/MessagePump.h"
#include "support/TestFolders.h"
#include "system/WindowException.h"
#include "toolkit/TextBoxScene.h"

// The slots through which the program calls these.
extern "C" decltype(&::SetTimer) __imp_SetTimer;
extern "C" decltype(&::KillTimer) __imp_KillTimer;
extern "C" decltype(&::GetCaretBlinkTime) __imp_GetCaretBlinkTime;
extern "C" decltype(&::InvalidateRect) __imp_InvalidateRect;

namespace lumenor {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using tests::HandledWith;
using tests::ImportSlot;
using tests::unhandled;

constexpr UINT_PTR blinkTimer = 5;
constexpr UINT blinkTime = 437;

std::vector<std::string> timerCalls;
std::vector<HWND> invalidated;
UINT answeredBlinkTime = blinkTime;

UINT_PTR WINAPI HearSetTimer(HWND, UINT_PTR id, UINT elapse, TIMERPROC procedure) {
  timerCalls.push_back("set " + std::to_string(id) + " " + std::to_string(elapse) +
                       (procedure == nullptr ? "" : " with a procedure"));
  return id;
}

BOOL WINAPI HearKillTimer(HWND, UINT_PTR id) {
  timerCalls.push_back("kill " + std::to_string(id));
  return TRUE;
}

UINT WINAPI AnswerBlinkTime() { return answeredBlinkTime; }

BOOL WINAPI HearInvalidate(HWND window, const RECT *, BOOL) {
  invalidated.push_back(window);
  return TRUE;
}

class TextBoxMessages : public tests::TextBoxScene {
protected:
  TextBoxMessages() {
    Open();
    box.ListenToAccept();
    Root().calls.clear();
    Settle();
  }

  /// As if the field had just been painted.
  void Settle() {
    box.needsRepaint = 0;
    Validate();
  }

  bool WantsRepaint() const { return box.needsRepaint == 1 && IsInvalid(); }
};

/// Hears of the timers instead of the platform.
class TextBoxBlink : public TextBoxMessages {
protected:
  TextBoxBlink() {
    timerCalls.clear();
    answeredBlinkTime = blinkTime;
  }

private:
  ImportSlot<decltype(&::SetTimer)> setTimer{&__imp_SetTimer, &HearSetTimer};
  ImportSlot<decltype(&::KillTimer)> killTimer{&__imp_KillTimer, &HearKillTimer};
  ImportSlot<decltype(&::GetCaretBlinkTime)> getCaretBlinkTime{&__imp_GetCaretBlinkTime, &AnswerBlinkTime};
};

} // namespace

TEST_F(TextBoxMessages, PaintClimbsToTheRootWhenARepaintIsDue) {
  box.needsRepaint = 1;
  EXPECT_EQ(box.Ask(WM_PAINT), (std::pair<BOOL, LRESULT>{FALSE, 0}));
  EXPECT_EQ(Repaints(), 1);
}

TEST_F(TextBoxMessages, PaintWithoutNeedStaysBelowTheRoot) {
  EXPECT_EQ(box.Ask(WM_PAINT), (std::pair<BOOL, LRESULT>{FALSE, 0}));
  EXPECT_EQ(Repaints(), 0);
}

TEST_F(TextBoxMessages, PaintLeavesNothingInvalid) {
  ::InvalidateRect(box.handle, nullptr, FALSE);
  box.received.clear();
  ::UpdateWindow(box.handle);
  EXPECT_THAT(box.received, ::testing::Contains(static_cast<UINT>(WM_PAINT)));
  EXPECT_FALSE(IsInvalid());
}

TEST_F(TextBoxMessages, PaintingTheElementEndsTheNeed) {
  box.needsRepaint = 1;
  Paint();
  EXPECT_EQ(box.needsRepaint, 0);
}

TEST_F(TextBoxMessages, CreateAsksLikePaint) {
  EXPECT_EQ(box.Ask(WM_CREATE), (std::pair<BOOL, LRESULT>{FALSE, 0}));
  EXPECT_EQ(Repaints(), 0);
  box.needsRepaint = 1;
  EXPECT_EQ(box.Ask(WM_CREATE), (std::pair<BOOL, LRESULT>{FALSE, 0}));
  EXPECT_EQ(Repaints(), 1);
}

TEST_F(TextBoxMessages, MoveTakesItsCoordinatesAsUnsigned) {
  tests::WatchedTextBox detached(surface.Target(), controlId);
  EXPECT_EQ(detached.Ask(WM_MOVE, 0, MAKELPARAM(7, 9)), unhandled);
  EXPECT_EQ(tests::BoxOf(detached), (tests::Box{7, 9, 0, 0}));
  EXPECT_EQ(detached.Ask(WM_MOVE, 0, MAKELPARAM(-5, -6)), unhandled);
  EXPECT_EQ(tests::BoxOf(detached), (tests::Box{65531, 65530, 0, 0}));
}

TEST_F(TextBoxMessages, SizeTakesBothWords) {
  tests::WatchedTextBox detached(surface.Target(), controlId);
  EXPECT_EQ(detached.Ask(WM_SIZE, 0, MAKELPARAM(7, 40000)), unhandled);
  EXPECT_EQ(tests::BoxOf(detached), (tests::Box{0, 0, 7, 40000}));
}

TEST_F(TextBoxMessages, MouseAndKeyUpAskForARepaint) {
  for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_MOUSEMOVE, WM_KEYUP}) {
    Settle();
    ASSERT_FALSE(WantsRepaint());
    EXPECT_EQ(box.Ask(message), unhandled) << message;
    EXPECT_TRUE(WantsRepaint()) << message;
    EXPECT_EQ(box.caretVisible, 0) << message;
  }
}

TEST_F(TextBoxMessages, WhatChangesTheTextOtherwiseAsksForARepaintToo) {
  for (const unsigned message : std::initializer_list<unsigned>{
           WM_SETTEXT, WM_CHAR, WM_IME_COMPOSITION, WM_CUT, WM_PASTE, WM_CLEAR, WM_UNDO, static_cast<UINT>(EM_UNDO),
           static_cast<UINT>(EM_REPLACESEL), static_cast<UINT>(EM_SETSEL), static_cast<UINT>(EM_SCROLLCARET)}) {
    Settle();
    EXPECT_EQ(box.Ask(message), unhandled) << message;
    EXPECT_TRUE(WantsRepaint()) << message;
  }
}

TEST_F(TextBoxMessages, OtherMessagesAndOtherMapsStayUnhandled) {
  for (const UINT message : {static_cast<UINT>(WM_GETTEXT), static_cast<UINT>(WM_NCHITTEST),
                             static_cast<UINT>(EM_GETSEL), static_cast<UINT>(WM_COMMAND)}) {
    EXPECT_EQ(box.Ask(message), unhandled) << message;
    EXPECT_FALSE(WantsRepaint()) << message;
  }
  LRESULT result = tests::WatchedTextBox::unset;
  EXPECT_FALSE(box.ProcessWindowMessage(box.handle, WM_TIMER, blinkTimer, 0, result, 1));
  EXPECT_EQ(box.caretVisible, 0);
}

TEST_F(TextBoxBlink, KeyDownRestartsThePhaseWithTheCaretOn) {
  box.caretVisible = 0;
  EXPECT_EQ(box.Ask(WM_KEYDOWN, 'A'), unhandled);
  EXPECT_THAT(timerCalls, ElementsAre("kill 5", "set 5 437"));
  EXPECT_EQ(box.caretVisible, 1);
  EXPECT_TRUE(WantsRepaint());
  EXPECT_EQ(box.HasFocus.Get(), 0);
}

TEST_F(TextBoxBlink, FocusSetsHasFocusAndStartsTheBlinking) {
  EXPECT_EQ(box.Ask(WM_SETFOCUS), unhandled);
  EXPECT_EQ(box.HasFocus.Get(), 1);
  EXPECT_THAT(timerCalls, ElementsAre("kill 5", "set 5 437"));
  EXPECT_EQ(box.caretVisible, 1);
  EXPECT_TRUE(WantsRepaint());
}

TEST_F(TextBoxBlink, LosingTheFocusEndsTheBlinkingWithTheCaretOff) {
  box.Ask(WM_SETFOCUS);
  timerCalls.clear();
  Settle();
  EXPECT_EQ(box.Ask(WM_KILLFOCUS), unhandled);
  EXPECT_EQ(box.HasFocus.Get(), 0);
  EXPECT_THAT(timerCalls, ElementsAre("kill 5"));
  EXPECT_EQ(box.caretVisible, 0);
  EXPECT_TRUE(WantsRepaint());
}

TEST_F(TextBoxBlink, CaretThatTheUserWantsStillGetsNoTimer) {
  for (const UINT none : {INFINITE, 0U}) {
    answeredBlinkTime = none;
    timerCalls.clear();
    box.caretVisible = 0;
    box.Ask(WM_KEYDOWN, 'A');
    EXPECT_THAT(timerCalls, ElementsAre("kill 5")) << none;
    EXPECT_EQ(box.caretVisible, 1) << none;
  }
}

TEST_F(TextBoxMessages, TimerTurnsTheCaretOver) {
  for (const int phase : {1, 0, 1}) {
    Settle();
    EXPECT_EQ(box.Ask(WM_TIMER, blinkTimer), HandledWith(0));
    EXPECT_EQ(box.caretVisible, phase);
    EXPECT_TRUE(WantsRepaint());
  }
}

TEST_F(TextBoxMessages, OtherTimersAreTheControls) {
  EXPECT_EQ(box.Ask(WM_TIMER, 0), unhandled);
  EXPECT_EQ(box.Ask(WM_TIMER, blinkTimer + 1), unhandled);
  EXPECT_EQ(box.caretVisible, 0);
  EXPECT_FALSE(WantsRepaint());
}

TEST_F(TextBoxMessages, CaretBlinksOnlyWhileTheFieldHasTheFocus) {
  EXPECT_FALSE(::KillTimer(box.handle, blinkTimer)) << "no timer before";
  Focus();
  EXPECT_EQ(box.HasFocus.Get(), 1);
  EXPECT_EQ(box.caretVisible, 1);
  EXPECT_TRUE(tests::PumpUntil([&] { return box.caretVisible == 0; }));
  EXPECT_TRUE(tests::PumpUntil([&] { return box.caretVisible == 1; }));
  Unfocus();
  EXPECT_EQ(box.HasFocus.Get(), 0);
  EXPECT_EQ(box.caretVisible, 0);
  EXPECT_FALSE(::KillTimer(box.handle, blinkTimer)) << "no timer after";
}

TEST_F(TextBoxMessages, ReturnInTheDialogCodeRequestFiresAccept) {
  EXPECT_EQ(box.Ask(WM_GETDLGCODE, VK_RETURN), unhandled);
  EXPECT_THAT(box.senders, ElementsAre(&box));
  EXPECT_TRUE(WantsRepaint());
  box.Ask(WM_GETDLGCODE, VK_RETURN);
  EXPECT_THAT(box.senders, ElementsAre(&box, &box)) << "once for each request";
}

TEST_F(TextBoxMessages, RequestsForOtherKeysFireNothing) {
  for (const WPARAM key : {0, VK_TAB, VK_ESCAPE, VK_SPACE, VK_PROCESSKEY, 14})
    EXPECT_EQ(box.Ask(WM_GETDLGCODE, key), unhandled);
  EXPECT_THAT(box.senders, IsEmpty());
  EXPECT_FALSE(WantsRepaint());
}

TEST_F(TextBoxMessages, OnlyTheKeyThatGoesDownStartsAPress) {
  const auto ask = [&](UINT message, LPARAM state) {
    MSG source{box.handle, message, VK_RETURN, state, 0, {}};
    box.Ask(WM_GETDLGCODE, VK_RETURN, reinterpret_cast<LPARAM>(&source));
    return box.senders.size();
  };
  EXPECT_EQ(ask(WM_KEYDOWN, 1), 1U);
  EXPECT_EQ(ask(WM_CHAR, 1), 1U) << "the character of the same press";
  EXPECT_EQ(ask(WM_KEYDOWN, 0x40000001), 1U) << "the key is held down";
  EXPECT_EQ(ask(WM_KEYUP, 0xC0000001), 1U);
  EXPECT_EQ(ask(WM_KEYDOWN, 1), 2U);
}

TEST_F(TextBoxMessages, AddressOutOfAnotherThreadIsntLookedAt) {
  const HWND window = box.handle;
  const auto send = [](void *target) -> DWORD {
    // A request with this message would be the second of its press. An address that means nothing even where it is sent
    // can't be taken: the platform itself may read it.
    MSG character{static_cast<HWND>(target), WM_CHAR, VK_RETURN, 0, 0, {}};
    ::SendMessageW(static_cast<HWND>(target), WM_GETDLGCODE, VK_RETURN, reinterpret_cast<LPARAM>(&character));
    return 0;
  };
  const KernelHandle thread(::CreateThread(nullptr, 0, send, window, 0, nullptr));
  EXPECT_TRUE(tests::PumpUntil([&] { return ::WaitForSingleObject(thread.Get(), 0) == WAIT_OBJECT_0; }));
  EXPECT_THAT(box.senders, ElementsAre(&box));
}

TEST_F(TextBoxMessages, DialogCodeStaysTheControls) {
  EXPECT_EQ(::SendMessageW(box.handle, WM_GETDLGCODE, VK_RETURN, 0), DLGC_WANTCHARS | DLGC_HASSETSEL | DLGC_WANTARROWS);
}

TEST_F(TextBoxMessages, ExceptionOfAnAcceptListenerIsKeptForTheLoop) {
  box.onAccept = [] { throw std::runtime_error("accept"); };
  ::SendMessageW(box.handle, WM_GETDLGCODE, VK_RETURN, 0);
  EXPECT_THROW(RethrowWindowException(), std::runtime_error);
  EXPECT_TRUE(::IsWindow(box.handle));
}

TEST_F(TextBoxMessages, AcceptListenerMayDestroyTheWindow) {
  box.onAccept = [&] { ::DestroyWindow(box.handle); };
  invalidated.clear();
  const ImportSlot<decltype(&::InvalidateRect)> spy(&__imp_InvalidateRect, &HearInvalidate);
  ::SendMessageW(box.handle, WM_GETDLGCODE, VK_RETURN, 0);
  EXPECT_EQ(box.handle, nullptr);
  for (const HWND window : invalidated)
    EXPECT_NE(window, nullptr) << "null means every window of the desktop";
}

TEST_F(TextBoxMessages, RightToLeftReadingIsTakenOutOfTheStyle) {
  STYLESTRUCT styles{0, 0xFFFFFFFF};
  EXPECT_EQ(box.Ask(WM_STYLECHANGING, static_cast<WPARAM>(GWL_EXSTYLE), reinterpret_cast<LPARAM>(&styles)),
            HandledWith(0));
  EXPECT_EQ(styles.styleNew, 0xFFFFDFFFU);
  styles = {0, 0xFFFFFFFF};
  EXPECT_EQ(box.Ask(WM_STYLECHANGING, static_cast<WPARAM>(GWL_STYLE), reinterpret_cast<LPARAM>(&styles)), unhandled);
  EXPECT_EQ(styles.styleNew, 0xFFFFFFFFU);
}

TEST_F(TextBoxMessages, WindowNeverGetsRightToLeftReading) {
  const LONG former = ::GetWindowLongW(box.handle, GWL_EXSTYLE);
  ::SetWindowLongW(box.handle, GWL_EXSTYLE, former | WS_EX_RTLREADING);
  EXPECT_EQ(::GetWindowLongW(box.handle, GWL_EXSTYLE), former);
}

namespace {

std::wstring CueBannerOf(HWND window) {
  wchar_t text[64]{};
  ::SendMessageW(window, EM_GETCUEBANNER, reinterpret_cast<WPARAM>(text), 64);
  return text;
}

} // namespace

TEST_F(TextBoxMessages, CueBannerMessageSetsBothProperties) {
  EXPECT_EQ(box.Ask(EM_SETCUEBANNER, 7, reinterpret_cast<LPARAM>(L"cue")), unhandled);
  EXPECT_EQ(box.WatermarkShownOnFocus.Get(), 7);
  EXPECT_EQ(box.WatermarkText.Get(), L"cue");
  EXPECT_TRUE(WantsRepaint());
}

TEST_F(TextBoxMessages, CueBannerReachesTheControl) {
  EXPECT_EQ(::SendMessageW(box.handle, EM_SETCUEBANNER, 1, reinterpret_cast<LPARAM>(L"first")), TRUE);
  EXPECT_EQ(CueBannerOf(box.handle), L"first");
  box.WatermarkText.Set(L"second");
  EXPECT_EQ(CueBannerOf(box.handle), L"second");
}

TEST_F(TextBoxMessages, CueBannerWithoutTextIsEmpty) {
  box.WatermarkText.Set(L"cue");
  EXPECT_EQ(box.Ask(EM_SETCUEBANNER, 0, 0), unhandled);
  EXPECT_EQ(box.WatermarkText.Get(), L"");
}

TEST_F(TextBoxMessages, CueBannerAtAnAddressThatCannotBeReadIsLoggedAndIgnored) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  box.WatermarkText.Set(L"cue");
  for (const LPARAM wild : {LPARAM{8}, LPARAM{0x7FFF'FFFF'0000}, LPARAM{-2}}) {
    EXPECT_EQ(::SendMessageW(box.handle, EM_SETCUEBANNER, 1, wild), FALSE) << wild;
    EXPECT_THAT(log.Lines(), ElementsAre("ERROR: Message 5377 with an address that can't be read")) << wild;
    log.Clear();
  }
  EXPECT_EQ(box.WatermarkText.Get(), L"cue");
  EXPECT_EQ(CueBannerOf(box.handle), L"cue");
  EXPECT_EQ(box.WatermarkShownOnFocus.Get(), 0);
}

TEST_F(TextBoxMessages, WatermarkListenerAndCueBannerDontChaseEachOther) {
  box.received.clear();
  box.WatermarkText.Set(L"cue");
  EXPECT_EQ(box.CountOf(EM_SETCUEBANNER), 1);
  box.received.clear();
  ::SendMessageW(box.handle, EM_SETCUEBANNER, 0, reinterpret_cast<LPARAM>(L"other"));
  EXPECT_EQ(box.CountOf(EM_SETCUEBANNER), 2) << "the message, and the one of the listener";
  EXPECT_EQ(box.WatermarkText.Get(), L"other");
  box.received.clear();
  ::SendMessageW(box.handle, EM_SETCUEBANNER, 1, reinterpret_cast<LPARAM>(L"third"));
  EXPECT_EQ(box.WatermarkText.Get(), L"third");
  EXPECT_EQ(box.WatermarkShownOnFocus.Get(), 1);
  EXPECT_EQ(CueBannerOf(box.handle), L"third");
  EXPECT_LE(box.CountOf(EM_SETCUEBANNER), 3);
}

TEST_F(TextBoxMessages, CueBannerMayComeOutOfThePropertyItself) {
  box.WatermarkText.Set(L"a text that is too long for a small string");
  ::SendMessageW(box.handle, EM_SETCUEBANNER, 1, reinterpret_cast<LPARAM>(box.WatermarkText.Get().c_str() + 2));
  EXPECT_EQ(box.WatermarkText.Get(), L"text that is too long for a small string");
}

TEST_F(TextBoxMessages, CueBannerMayBeTheEndOfThePropertyItself) {
  box.WatermarkText.Set(L"a text that is too long for a small string");
  const std::wstring &text = box.WatermarkText.Get();
  ::SendMessageW(box.handle, EM_SETCUEBANNER, 1, reinterpret_cast<LPARAM>(text.c_str() + text.size()));
  EXPECT_EQ(box.WatermarkText.Get(), L"");
}

TEST_F(TextBoxMessages, WatermarkShownOnFocusGoesToTheControl) {
  box.received.clear();
  box.WatermarkShownOnFocus.Set(1);
  EXPECT_EQ(box.CountOf(EM_SETCUEBANNER), 1);
}

} // namespace lumenor
