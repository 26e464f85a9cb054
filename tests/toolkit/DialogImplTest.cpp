#include "toolkit/DialogImpl.h"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/MessagePump.h"
#include "system/WindowException.h"
#include "toolkit/TestElements.h"

namespace lumenor {

namespace {

enum : WORD { dialogTemplate = 100, missingTemplate = 999 };
enum { secondControl = 202 };

class TestDialog : public CDialogImpl<TestDialog> {
public:
  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM, LPARAM, LRESULT &result, DWORD = 0) override {
    received.push_back(message);
    windows.push_back(window);
    return answer ? answer(message, result) : FALSE;
  }
  void OnFinalMessage(HWND window) override { finalWindow = window; }

  WORD dialogId = dialogTemplate;
  std::function<BOOL(UINT message, LRESULT &result)> answer;
  std::vector<UINT> received;
  std::vector<HWND> windows;
  HWND finalWindow = nullptr;
};

std::size_t Find(const std::vector<UINT> &messages, UINT message) {
  return static_cast<std::size_t>(std::find(messages.begin(), messages.end(), message) - messages.begin());
}

TEST(DialogImpl, CreatesTheWindowOfItsTemplate) {
  TestDialog dialog;
  const HWND window = dialog.Create(nullptr);
  ASSERT_TRUE(::IsWindow(window));
  EXPECT_EQ(dialog.handle, window);
  wchar_t title[32]{};
  ::GetWindowTextW(window, title, 32);
  EXPECT_STREQ(title, L"Dialog under test");
  EXPECT_TRUE(::IsWindow(::GetDlgItem(window, secondControl)));
}

TEST(DialogImpl, LosesNoMessageBeforeInitDialog) {
  TestDialog dialog;
  const HWND window = dialog.Create(nullptr);
  EXPECT_LT(Find(dialog.received, WM_SETFONT), Find(dialog.received, WM_INITDIALOG));
  EXPECT_LT(Find(dialog.received, WM_INITDIALOG), dialog.received.size());
  EXPECT_EQ(dialog.windows, std::vector<HWND>(dialog.windows.size(), window));
}

TEST(DialogImpl, WindowIsKnownFromTheFirstMessageOn) {
  TestDialog dialog;
  std::vector<HWND> handles;
  dialog.answer = [&](UINT, LRESULT &) -> BOOL {
    handles.push_back(dialog.handle);
    return FALSE;
  };
  const HWND window = dialog.Create(nullptr);
  EXPECT_EQ(handles, std::vector<HWND>(handles.size(), window));
}

TEST(DialogImpl, MissingTemplateGivesNoWindowAndDoesNoHarmToTheNext) {
  TestDialog broken, sound;
  broken.dialogId = missingTemplate;
  EXPECT_EQ(broken.Create(nullptr), nullptr);
  EXPECT_EQ(broken.DoModal(nullptr), -1);
  EXPECT_EQ(broken.handle, nullptr);
  EXPECT_TRUE(::IsWindow(sound.Create(nullptr)));
  EXPECT_EQ(broken.received.size(), 0U);
}

TEST(DialogImpl, DialogMadeWhileAnotherStartsGetsItsOwnMessages) {
  TestDialog outer, inner;
  outer.answer = [&](UINT message, LRESULT &result) -> BOOL {
    if (message != WM_INITDIALOG)
      return FALSE;
    inner.Create(outer.handle);
    result = 1;
    return TRUE;
  };
  outer.Create(nullptr);
  ASSERT_NE(inner.handle, nullptr);
  EXPECT_NE(inner.handle, outer.handle);
  EXPECT_EQ(inner.windows, std::vector<HWND>(inner.windows.size(), inner.handle));
  EXPECT_EQ(outer.windows, std::vector<HWND>(outer.windows.size(), outer.handle));
}

TEST(DialogImpl, HandledMessageAnswersWithItsResult) {
  TestDialog dialog;
  const HWND window = dialog.Create(nullptr);
  dialog.answer = [](UINT message, LRESULT &result) -> BOOL {
    result = 42;
    return message == WM_APP || message == WM_QUERYENDSESSION;
  };
  EXPECT_EQ(::SendMessageW(window, WM_APP, 0, 0), 42);
  EXPECT_EQ(::SendMessageW(window, WM_QUERYENDSESSION, 0, 0), 42);
  EXPECT_EQ(HIWORD(::SendMessageW(window, DM_GETDEFID, 0, 0)), DC_HASDEFID) << "the rest is the platform's";
}

TEST(DialogImpl, HandledWithZeroIsZero) {
  TestDialog dialog;
  const HWND window = dialog.Create(nullptr);
  dialog.answer = [](UINT message, LRESULT &result) -> BOOL {
    result = 0;
    return message == WM_QUERYENDSESSION; // which the platform would answer with 1
  };
  EXPECT_EQ(::SendMessageW(window, WM_QUERYENDSESSION, 0, 0), 0);
}

TEST(DialogImpl, FewMessagesAnswerDirectly) {
  TestDialog dialog;
  const HWND window = dialog.Create(nullptr);
  dialog.answer = [](UINT, LRESULT &result) -> BOOL {
    result = 42;
    return TRUE;
  };
  const DLGPROC procedure = dialog.GetDialogProc();
  for (const UINT message :
       {WM_INITDIALOG, WM_COMPAREITEM, WM_VKEYTOITEM, WM_CHARTOITEM, WM_QUERYDRAGICON, WM_CTLCOLORMSGBOX,
        WM_CTLCOLOREDIT, WM_CTLCOLORLISTBOX, WM_CTLCOLORBTN, WM_CTLCOLORDLG, WM_CTLCOLORSCROLLBAR, WM_CTLCOLORSTATIC})
    EXPECT_EQ(procedure(window, message, 0, 0), 42) << message;
  EXPECT_EQ(procedure(window, WM_APP, 0, 0), TRUE);
  EXPECT_EQ(::GetWindowLongPtrW(window, DWLP_MSGRESULT), 42);
  dialog.answer = nullptr;
  EXPECT_EQ(procedure(window, WM_INITDIALOG, 0, 0), FALSE);
  EXPECT_EQ(procedure(window, WM_APP, 0, 0), FALSE);
}

TEST(DialogImpl, PartsFromTheWindowWithItsLastMessage) {
  TestDialog dialog;
  const HWND window = dialog.Create(nullptr);
  ::DestroyWindow(window);
  EXPECT_EQ(dialog.received.back(), static_cast<UINT>(WM_NCDESTROY));
  EXPECT_EQ(dialog.handle, nullptr);
  EXPECT_EQ(dialog.finalWindow, window);
}

TEST(DialogImpl, ObjectThatGoesFirstTakesItsWindowAlong) {
  auto dialog = std::make_unique<TestDialog>();
  const HWND window = dialog->Create(nullptr);
  dialog.reset();
  EXPECT_FALSE(::IsWindow(window));
}

TEST(DialogImpl, WindowDestroyedWhileItIsMadeGivesNull) {
  TestDialog dialog;
  dialog.answer = [&](UINT message, LRESULT &) -> BOOL {
    if (message == WM_INITDIALOG)
      ::DestroyWindow(dialog.handle);
    return FALSE;
  };
  EXPECT_EQ(dialog.Create(nullptr), nullptr);
  EXPECT_EQ(dialog.handle, nullptr);
}

TEST(DialogImpl, ExceptionOfAHandlerIsKeptForTheLoop) {
  TestDialog dialog;
  const HWND window = dialog.Create(nullptr);
  dialog.answer = [](UINT message, LRESULT &) -> BOOL {
    if (message == WM_APP)
      throw std::runtime_error("handler");
    return FALSE;
  };
  EXPECT_EQ(::SendMessageW(window, WM_APP, 0, 0), 0);
  EXPECT_THROW(RethrowWindowException(), std::runtime_error);
}

TEST(DialogImpl, ExceptionDuringTheCreationComesOutOfIt) {
  TestDialog dialog;
  dialog.answer = [](UINT message, LRESULT &) -> BOOL {
    if (message == WM_INITDIALOG)
      throw std::runtime_error("creation");
    return FALSE;
  };
  EXPECT_THROW(dialog.Create(nullptr), std::runtime_error);
}

void KeepAnEarlierFailure() {
  try {
    throw std::logic_error("earlier");
  } catch (...) {
    KeepWindowException();
  }
}

TEST(DialogImpl, CreationRaisesNothingThatWasKeptBefore) {
  KeepAnEarlierFailure();
  TestDialog dialog;
  EXPECT_NO_THROW(EXPECT_TRUE(::IsWindow(dialog.Create(nullptr))));
  EXPECT_THROW(RethrowWindowException(), std::logic_error) << "it waits on";
}

TEST(DialogImpl, CreationRaisesItsOwnFailureAndLeavesTheEarlierOne) {
  KeepAnEarlierFailure();
  TestDialog dialog;
  dialog.answer = [](UINT message, LRESULT &) -> BOOL {
    if (message == WM_INITDIALOG)
      throw std::runtime_error("creation");
    return FALSE;
  };
  EXPECT_THROW(dialog.Create(nullptr), std::runtime_error);
  EXPECT_THROW(RethrowWindowException(), std::logic_error);
  EXPECT_NO_THROW(RethrowWindowException());
}

TEST(DialogImpl, ModalDialogRaisesNothingThatWasKeptBefore) {
  KeepAnEarlierFailure();
  TestDialog dialog;
  dialog.answer = [&](UINT message, LRESULT &) -> BOOL {
    if (message == WM_INITDIALOG)
      return ::PostMessageW(dialog.handle, WM_APP, 0, 0);
    return message == WM_APP && ::EndDialog(dialog.handle, 17);
  };
  EXPECT_NO_THROW(EXPECT_EQ(17, dialog.DoModal(nullptr)));
  EXPECT_THROW(RethrowWindowException(), std::logic_error) << "it waits on";
}

TEST(DialogImpl, ModalDialogReturnsWhatItWasEndedWith) {
  tests::TopLevel owner;
  TestDialog dialog;
  bool ownerEnabled = true;
  dialog.answer = [&](UINT message, LRESULT &result) -> BOOL {
    result = 1;
    if (message == WM_INITDIALOG)
      return ::PostMessageW(dialog.handle, WM_APP, 0, 0);
    if (message != WM_APP)
      return FALSE;
    ownerEnabled = ::IsWindowEnabled(owner.GetHandle());
    return ::EndDialog(dialog.handle, 17);
  };
  EXPECT_EQ(dialog.DoModal(owner.GetHandle()), 17);
  EXPECT_FALSE(ownerEnabled);
  EXPECT_TRUE(::IsWindowEnabled(owner.GetHandle()));
  EXPECT_EQ(dialog.handle, nullptr);
}

TEST(DialogImpl, ModalDialogEndsWhenItsWindowIsDestroyed) {
  TestDialog dialog;
  dialog.answer = [&](UINT message, LRESULT &) -> BOOL {
    if (message == WM_INITDIALOG)
      return ::PostMessageW(dialog.handle, WM_APP, 0, 0);
    if (message == WM_APP)
      ::DestroyWindow(dialog.handle);
    return FALSE;
  };
  dialog.DoModal(nullptr);
  EXPECT_EQ(dialog.handle, nullptr);
  EXPECT_NE(dialog.finalWindow, nullptr);
}

TEST(DialogImpl, ExceptionOfAModalDialogComesOutAtItsEnd) {
  TestDialog dialog;
  dialog.answer = [&](UINT message, LRESULT &) -> BOOL {
    if (message == WM_INITDIALOG)
      return ::PostMessageW(dialog.handle, WM_APP, 0, 0);
    if (message != WM_APP)
      return FALSE;
    ::EndDialog(dialog.handle, 1);
    throw std::runtime_error("modal");
  };
  EXPECT_THROW(dialog.DoModal(nullptr), std::runtime_error);
}

} // namespace

} // namespace lumenor
