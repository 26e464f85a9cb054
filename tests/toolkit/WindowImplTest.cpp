#include "toolkit/WindowImpl.h"

#include <memory>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "support/HandleCounts.h"
#include "support/MessagePump.h"
#include "system/WindowException.h"
#include "toolkit/MessageRecorder.h"
#include "toolkit/TestElements.h"

namespace lumenor {

namespace {

using tests::ButtonRecorder;
using tests::PlainRecorder;
using tests::TopLevel;

std::wstring ClassNameOf(HWND window) {
  wchar_t name[64]{};
  ::GetClassNameW(window, name, 64);
  return name;
}

class WindowImpl : public ::testing::Test {
protected:
  HWND Create(CWindow &object, const wchar_t *superClassName = nullptr) {
    return CreateObjectWindow(&object, superClassName, WS_CHILD | WS_VISIBLE, 0, top.GetHandle(), nullptr, nullptr);
  }

  TopLevel top;
};

TEST_F(WindowImpl, CreatesAChildWithItsTraitsRectangleAndTitle) {
  PlainRecorder object;
  const RECT rectangle{5, 6, 25, 36};
  const HWND window = object.Create(top.GetHandle(), &rectangle, L"title");
  EXPECT_EQ(window, object.handle);
  EXPECT_EQ(::GetParent(window), top.GetHandle());
  EXPECT_EQ(tests::BoxOf(window), (tests::Box{5, 6, 20, 30}));
  EXPECT_EQ(::GetWindowLongW(window, GWL_STYLE), WS_CHILD | WS_VISIBLE | BS_OWNERDRAW);
  EXPECT_EQ(::GetWindowLongW(window, GWL_EXSTYLE) & ~WS_EX_NOPARENTNOTIFY, 0);
  wchar_t title[16]{};
  ::GetWindowTextW(window, title, 16);
  EXPECT_STREQ(title, L"title");
}

TEST_F(WindowImpl, WithoutRectangleTheWindowIsEmpty) {
  PlainRecorder object;
  EXPECT_EQ(tests::BoxOf(object.Create(top.GetHandle())), (tests::Box{0, 0, 0, 0}));
}

TEST_F(WindowImpl, SeesEveryMessageFromTheCreationOn) {
  PlainRecorder object;
  const HWND window = object.Create(top.GetHandle());
  ASSERT_FALSE(object.received.empty());
  EXPECT_EQ(object.received[0].message, static_cast<UINT>(WM_NCCREATE));
  EXPECT_TRUE(object.Received(WM_CREATE));
  EXPECT_EQ(object.windows[0], window);
}

TEST_F(WindowImpl, WithoutParentTheChildCantBeMadeAndTheObjectStaysEmpty) {
  PlainRecorder object;
  EXPECT_EQ(object.Create(nullptr), nullptr);
  EXPECT_EQ(object.handle, nullptr);
}

TEST_F(WindowImpl, PartsFromTheWindowWithItsLastMessage) {
  PlainRecorder object;
  const HWND window = object.Create(top.GetHandle());
  ::DestroyWindow(window);
  EXPECT_EQ(object.received.back().message, static_cast<UINT>(WM_NCDESTROY));
  EXPECT_EQ(object.windows.back(), window);
  EXPECT_EQ(object.handle, nullptr);
  EXPECT_EQ(object.finalWindow, window);
  EXPECT_EQ(object.handleAtFinal, nullptr) << "the final message comes after the parting";
}

TEST_F(WindowImpl, GoesWithItsParentWindow) {
  PlainRecorder object;
  auto parent = std::make_unique<TopLevel>();
  object.Create(parent->GetHandle());
  parent.reset();
  EXPECT_EQ(object.handle, nullptr);
  EXPECT_NE(object.finalWindow, nullptr);
}

TEST_F(WindowImpl, CanBeMadeAgain) {
  PlainRecorder object;
  ::DestroyWindow(object.Create(top.GetHandle()));
  const HWND second = object.Create(top.GetHandle());
  EXPECT_TRUE(::IsWindow(second));
  EXPECT_EQ(object.handle, second);
}

TEST_F(WindowImpl, ObjectThatGoesFirstTakesItsWindowAlong) {
  auto object = std::make_unique<PlainRecorder>();
  const HWND window = object->Create(top.GetHandle());
  object.reset();
  EXPECT_FALSE(::IsWindow(window));
}

TEST_F(WindowImpl, HandledMessageAnswersWithItsResult) {
  PlainRecorder object;
  const HWND window = object.Create(top.GetHandle());
  object.answer = [](UINT message, LRESULT &result) -> BOOL {
    result = 42;
    return message == WM_USER;
  };
  EXPECT_EQ(::SendMessageW(window, WM_USER, 0, 0), 42);
  EXPECT_EQ(::SendMessageW(window, WM_USER + 1, 0, 0), 0) << "what isn't handled is answered by default";
}

TEST_F(WindowImpl, SuperclassKeepsThePlatformsBehaviour) {
  ButtonRecorder object;
  const HWND window = Create(object, L"BUTTON");
  EXPECT_TRUE(object.Received(WM_CREATE));
  EXPECT_EQ(ClassNameOf(window), L"LumenorBUTTON");
  EXPECT_NE(::SendMessageW(window, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON, 0);
  object.answer = [](UINT message, LRESULT &result) -> BOOL {
    result = 7;
    return message == WM_GETDLGCODE;
  };
  EXPECT_EQ(::SendMessageW(window, WM_GETDLGCODE, 0, 0), 7);
}

TEST_F(WindowImpl, SuperclassIsLocalToTheProgram) {
  ButtonRecorder object;
  object.Create(top.GetHandle());
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  ASSERT_TRUE(::GetClassInfoExW(::GetModuleHandleW(nullptr), L"LumenorBUTTON", &description));
  EXPECT_EQ(description.style & CS_GLOBALCLASS, 0U);
}

TEST_F(WindowImpl, ClassOfItsOwnShowsTheArrowAndNoBackground) {
  PlainRecorder object;
  EXPECT_EQ(ClassNameOf(object.Create(top.GetHandle())), L"LumenorPanel");
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  ASSERT_TRUE(::GetClassInfoExW(::GetModuleHandleW(nullptr), L"LumenorPanel", &description));
  EXPECT_EQ(description.hbrBackground, nullptr);
  EXPECT_EQ(description.hCursor, ::LoadCursorW(nullptr, IDC_ARROW));
}

TEST_F(WindowImpl, UnknownPlatformClassRaises) {
  PlainRecorder object;
  EXPECT_ANY_THROW(Create(object, L"NoSuchClass"));
  EXPECT_EQ(object.handle, nullptr);
}

TEST_F(WindowImpl, ExceptionOfAHandlerIsKeptForTheLoop) {
  PlainRecorder object;
  const HWND window = object.Create(top.GetHandle());
  object.answer = [](UINT message, LRESULT &) -> BOOL {
    if (message == WM_USER)
      throw std::runtime_error("handler");
    return FALSE;
  };
  EXPECT_EQ(::SendMessageW(window, WM_USER, 0, 0), 0);
  EXPECT_THROW(RethrowWindowException(), std::runtime_error);
  ::PostMessageW(window, WM_USER, 0, 0);
  EXPECT_THROW(tests::PumpMessages(), std::runtime_error);
  EXPECT_TRUE(::IsWindow(window));
}

TEST_F(WindowImpl, MessageWhoseHandlerFailedIsAnsweredByDefault) {
  PlainRecorder object;
  const RECT rectangle{0, 0, 20, 20};
  const HWND window = object.Create(top.GetHandle(), &rectangle);
  object.answer = [](UINT message, LRESULT &) -> BOOL {
    if (message == WM_PAINT)
      throw std::runtime_error("paint");
    return FALSE;
  };
  ::InvalidateRect(window, nullptr, FALSE);
  ::UpdateWindow(window);
  EXPECT_THROW(RethrowWindowException(), std::runtime_error);
  EXPECT_FALSE(::GetUpdateRect(window, nullptr, FALSE)) << "else the window would ask to be painted for ever";
}

TEST_F(WindowImpl, ExceptionDuringTheCreationComesOutOfIt) {
  for (const UINT failing : {static_cast<UINT>(WM_CREATE), static_cast<UINT>(WM_SIZE)}) {
    PlainRecorder object;
    object.answer = [&](UINT message, LRESULT &) -> BOOL {
      if (message == failing)
        throw std::runtime_error("creation");
      return FALSE;
    };
    EXPECT_THROW(object.Create(top.GetHandle()), std::runtime_error);
    EXPECT_EQ(object.handle == nullptr, failing == WM_CREATE) << "without WM_CREATE done there is no window";
  }
}

TEST_F(WindowImpl, CreationRaisesNothingThatWasKeptBefore) {
  PlainRecorder failing, sound;
  failing.Create(top.GetHandle());
  failing.answer = [](UINT message, LRESULT &) -> BOOL {
    if (message == WM_USER)
      throw std::runtime_error("earlier");
    return FALSE;
  };
  ::SendMessageW(failing.handle, WM_USER, 0, 0);
  EXPECT_NO_THROW(EXPECT_TRUE(::IsWindow(sound.Create(top.GetHandle()))));
  EXPECT_THROW(RethrowWindowException(), std::runtime_error) << "it waits on";
}

TEST_F(WindowImpl, HandlerMayDestroyItsWindow) {
  PlainRecorder object;
  const HWND window = object.Create(top.GetHandle());
  object.answer = [&](UINT message, LRESULT &) -> BOOL {
    if (message == WM_USER)
      ::DestroyWindow(window);
    return FALSE;
  };
  EXPECT_EQ(::SendMessageW(window, WM_USER, 0, 0), 0);
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_EQ(object.handle, nullptr);
}

/// Deletes itself on WM_USER.
class Suicide : public CWindowImpl<Suicide, CWindow, CWinTraits<WS_CHILD, 0>> {
public:
  ~Suicide() override = default;
  BOOL ProcessWindowMessage(HWND, UINT message, WPARAM, LPARAM, LRESULT &, DWORD = 0) override {
    if (message == WM_USER)
      delete this;
    return FALSE;
  }
};

TEST_F(WindowImpl, HandlerMayDestroyItsObject) {
  const HWND window = (new Suicide)->Create(top.GetHandle());
  EXPECT_EQ(::SendMessageW(window, WM_USER, 0, 0), 0);
  EXPECT_FALSE(::IsWindow(window));
}

/// Runs under a procedure of its own.
class OwnProcedure : public PlainRecorder {
public:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return message == WM_USER ? 13 : ::DefWindowProcW(window, message, wParam, lParam);
  }
  WNDPROC GetWindowProc() override { return Procedure; }
};

TEST_F(WindowImpl, RunsUnderTheProcedureThatItNames) {
  OwnProcedure object;
  const HWND window = object.Create(top.GetHandle());
  EXPECT_EQ(::SendMessageW(window, WM_USER, 0, 0), 13);
}

TEST_F(WindowImpl, LeavesNoWindowsAndNoHandlesBehind) {
  const auto makeAndDestroy = [&] {
    ButtonRecorder button;
    PlainRecorder plain;
    button.Create(top.GetHandle());
    plain.Create(top.GetHandle());
    ::DestroyWindow(button.handle);
  };
  makeAndDestroy();
  const int windows = tests::CountWindows();
  const int objects = tests::CountGdiObjects();
  const int handles = tests::CountKernelHandles();
  for (int i = 0; i < 10; ++i)
    makeAndDestroy();
  EXPECT_EQ(tests::CountWindows(), windows);
  EXPECT_EQ(tests::CountGdiObjects(), objects);
  EXPECT_EQ(tests::CountKernelHandles(), handles);
}

} // namespace

} // namespace lumenor
