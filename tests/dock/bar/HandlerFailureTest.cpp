// What becomes of the dock when a handler of its window fails: no bar, one report under the handler's name, a living
// process. The same while a dialog is open, within the loop of a drag, and while the bar fades.

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "content/Documents.h"
#include "dock/bar/BarFixture.h"
#include "dock/TestBar.h"
#include "support/Desk.h"
#include "support/ImportSlot.h"
#include "system/ComObject.h"
#include "system/WindowException.h"
#include "toolkit/AnimationServices.h"

#include <commctrl.h>
#include <ole2.h>

extern "C" {
extern decltype(&::DialogBoxParamW) __imp_DialogBoxParamW;
extern decltype(&::DoDragDrop) __imp_DoDragDrop;
extern decltype(&::ShellExecuteW) __imp_ShellExecuteW;
}

namespace lumenor {

namespace {

/// A dock whose next picture fails when it is told so.
class UnpaintableDock : public CMainDlg {
public:
  bool failsToPaint = false;

  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override {
    if (std::exchange(failsToPaint, false))
      throw std::runtime_error("paint");
    CMainDlg::Paint(target, rect);
  }
};

/// Runs `action` once, out of a message of the loop that the thread is in, as soon as `isTime`.
class FromTheLoop {
public:
  FromTheLoop(std::function<bool()> itsTime, std::function<void()> itsAction) {
    isTime = std::move(itsTime);
    action = std::move(itsAction);
  }
  ~FromTheLoop() { ::KillTimer(nullptr, timer); }
  FromTheLoop(const FromTheLoop &) = delete;
  FromTheLoop &operator=(const FromTheLoop &) = delete;

  static bool HasRun() { return action == nullptr; }

private:
  static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD) {
    if (action != nullptr && isTime())
      std::exchange(action, nullptr)();
  }

  static inline std::function<bool()> isTime;
  static inline std::function<void()> action;
  const UINT_PTR timer = ::SetTimer(nullptr, 0, 20, &Look);
};

const wchar_t resetTitle[] = L"Lumenor Dock Reset";
const wchar_t welcomeTitle[] = L"Welcome to Lumenor Dock";

bool IsOpen(const wchar_t *title) { return ::IsWindowVisible(::FindWindowW(nullptr, title)) != FALSE; }

using Texts = std::vector<std::wstring>;

class HandlerFailure : public BarFixture {
protected:
  ~HandlerFailure() override {
    ForgetWindowException();
    desk::MoveCursor({640, 600});
  }

  UnpaintableDock &StartUnpaintable() {
    desk::MoveCursor({640, 600});
    auto failing = std::make_unique<UnpaintableDock>();
    UnpaintableDock &result = *failing;
    dock = std::move(failing);
    dock->Create(nullptr);
    ::KillTimer(dock->handle, FadeTimer); // its steps are sent by hand
    desk::PumpAll();
    return result;
  }

  static void Press(HWND button) { ::SendMessageW(button, WM_COMMAND, 0, reinterpret_cast<LPARAM>(button)); }

  void Step(int count = 1) const {
    for (int i = 0; i < count; ++i)
      ::SendMessageW(dock->handle, WM_TIMER, FadeTimer, 0);
  }

  /// Dispatches until no animation plays any more; raises what is raised meanwhile.
  static bool PumpUntilAnimationsEnd() {
    return desk::PumpUntil([] { return GetAnimationServices().Timer()->IsEnabled() == S_FALSE; });
  }

  /// The dock is gone as told, and nothing comes after it.
  void ExpectNoBarButAProcess(const Texts &reports) const {
    EXPECT_EQ(nullptr, dock->handle);
    EXPECT_NO_THROW(RethrowWindowException()) << "the loop would end the cycle";
    EXPECT_NO_THROW(EXPECT_TRUE(PumpUntilAnimationsEnd()));
    std::optional<int> quitCode;
    EXPECT_NO_THROW(quitCode = TakeQuitCode());
    EXPECT_EQ(std::nullopt, quitCode);
    EXPECT_EQ(reports, eventLog.Reports());
  }

  const desk::EventLogSpy eventLog;
};

/// A handler, and a message that makes it fail.
struct FailingHandler {
  const wchar_t *report;
  std::function<void(UnpaintableDock &)> send;
};

void SendNotify(UnpaintableDock &dock) {
  const NMHDR header = {dock.handle, 0, DragOverNotification};
  dock.failsToPaint = true;
  ::SendMessageW(dock.handle, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&header));
}

void SendDragAdd(UnpaintableDock &dock) {
  dock.failsToPaint = true;
  SendAddress(dock.handle, DragAddMessage, L"C:\\nowhere.txt");
}

/// As a window procedure whose object has failed.
void KeepFailure(const char *text) {
  try {
    throw std::runtime_error(text);
  } catch (...) {
    KeepWindowException();
  }
}

WNDPROC fieldProcedure = nullptr;

UINT failingMessage = WM_NULL;

LRESULT CALLBACK FailAtOneMessage(HWND field, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == failingMessage)
    KeepFailure("field");
  return ::CallWindowProcW(fieldProcedure, field, message, wParam, lParam);
}

/// Makes the search field fail at each `message` from now on.
void FailAt(UINT message, HWND field) {
  failingMessage = message;
  fieldProcedure = reinterpret_cast<WNDPROC>(
      ::SetWindowLongPtrW(field, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&FailAtOneMessage)));
}

void SendSetSearchProvider(UnpaintableDock &dock) {
  FailAt(EM_SETCUEBANNER, BarTree(dock).textBox.GetHandle());
  Element provider;
  provider.Head = L"Another cue";
  SendAddress(dock.handle, SetSearchProviderMessage, &provider);
}

/// What the loop of a dialog does in which a window procedure fails.
INT_PTR WINAPI FailInTheLoop(HINSTANCE, LPCWSTR, HWND, DLGPROC, LPARAM) {
  KeepFailure("dialog");
  return -1;
}

void SendShowWelcome(UnpaintableDock &dock) {
  const tests::ImportSlot dialogs(&__imp_DialogBoxParamW, &FailInTheLoop);
  ::SendMessageW(dock.handle, ShowWelcomeMessage, 0, 0);
}

const FailingHandler failingHandlers[] = {
    {L"caught an unhandled exception in OnNotify", SendNotify},
    {L"caught an unhandled exception in OnDragAdd", SendDragAdd},
    {L"caught an unhandled exception in OnSetSearchProvider", SendSetSearchProvider},
    {L"caught an unhandled exception in OnShowWelcome", SendShowWelcome},
};

class OfEachHandler : public HandlerFailure, public ::testing::WithParamInterface<int> {
protected:
  const FailingHandler &handler = failingHandlers[GetParam()];
};

TEST_P(OfEachHandler, LeavesNoBarOneReportAndALivingProcess) {
  handler.send(StartUnpaintable());
  ExpectNoBarButAProcess({handler.report});
}

TEST_P(OfEachHandler, LeavesTheSameWhileADialogIsOpen) {
  UnpaintableDock &failing = StartUnpaintable();
  const FromTheLoop inTheDialog([] { return IsOpen(resetTitle); }, [&] { handler.send(failing); });
  Press(BarTree(*dock).resetButton.GetHandle()); // comes back with the dialog's end
  EXPECT_TRUE(inTheDialog.HasRun());
  EXPECT_EQ(nullptr, ::FindWindowW(nullptr, resetTitle));
  EXPECT_NO_THROW(RethrowWindowException());
  ExpectNoBarButAProcess({handler.report});
}

TEST_P(OfEachHandler, LeavesTheSameWhileTheBarFades) {
  UnpaintableDock &failing = StartUnpaintable();
  Step(22); // every tick of the fade is still to come
  handler.send(failing);
  ExpectNoBarButAProcess({handler.report});
}

INSTANTIATE_TEST_SUITE_P(HandlerFailure, OfEachHandler, ::testing::Range(0, 4));

TEST_F(HandlerFailure, IsReportedOnceThoughTheDestructionFailsToo) {
  UnpaintableDock &failing = StartUnpaintable();
  FailAt(WM_DESTROY, BarTree(failing).textBox.GetHandle());
  SendNotify(failing);
  ExpectNoBarButAProcess({L"caught an unhandled exception in OnNotify"});
}

TEST_F(HandlerFailure, OfAnUnendedFadeBringsNoTickAfterTheWindow) {
  StartUnpaintable();
  Step(22); // the first tick is still to come
  ::SendMessageW(dock->handle, WM_CLOSE, 0, 0);
  EXPECT_EQ(nullptr, dock->handle);
  EXPECT_NO_THROW(EXPECT_TRUE(PumpUntilAnimationsEnd()));
  EXPECT_EQ(190, dock->Opacity.Get()) << "the ticks did come";
  EXPECT_EQ(Texts{}, eventLog.Reports());
}

HINSTANCE WINAPI FailToLaunch(HWND, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, INT) { throw std::runtime_error("launch"); }

/// A button of the user's whose click fails.
class LaunchFailure : public HandlerFailure {
protected:
  UnpaintableDock &StartWithAButton() {
    Element element = PictureElement(L"Mine");
    element.ActionType = L"url";
    element.ActionParams = L"http://nowhere.invalid/";
    SaveDocument({element}, userDocument);
    return StartUnpaintable();
  }

  void ClickButton() const { Press(dock->GetUserButtons().at(0)->GetHandle()); }

private:
  const tests::ImportSlot<decltype(&::ShellExecuteW)> noLaunch{&__imp_ShellExecuteW, &FailToLaunch};
};

TEST_F(LaunchFailure, BehindTheWelcomeScreenIsThatOfItsHandlerAndOfNoOther) {
  StartWithAButton();
  registry.SetText(L"ShowWelcomePage", L"1");
  const FromTheLoop inTheDialog([] { return IsOpen(welcomeTitle); },
                                [&] {
                                  ClickButton();
                                  Step(3);
                                  EXPECT_EQ(Texts{}, eventLog.Reports()) << "the timer's handler didn't fail";
                                  EXPECT_TRUE(::IsWindow(dock->handle));
                                  EXPECT_TRUE(IsOpen(welcomeTitle));
                                  ::EndDialog(::FindWindowW(nullptr, welcomeTitle), 0);
                                });
  ::SendMessageW(dock->handle, ShowWelcomeMessage, 0, 0);
  EXPECT_TRUE(inTheDialog.HasRun());
  EXPECT_EQ(L"0", registry.Text(L"ShowWelcomePage")) << "shown is shown";
  EXPECT_FALSE(dock->IsKeptAwake());
  ExpectNoBarButAProcess({L"caught an unhandled exception in OnShowWelcome"});
}

TEST_F(LaunchFailure, BehindTheWelcomeScreenAndAnotherHandlersAreReportedOnceEach) {
  UnpaintableDock &failing = StartWithAButton();
  const FromTheLoop inTheDialog([] { return IsOpen(welcomeTitle); },
                                [&] {
                                  ClickButton();
                                  SendNotify(failing);
                                });
  ::SendMessageW(dock->handle, ShowWelcomeMessage, 0, 0);
  ExpectNoBarButAProcess(
      {L"caught an unhandled exception in OnNotify", L"caught an unhandled exception in OnShowWelcome"});
}

TEST_F(HandlerFailure, OfTheWelcomeScreenStillClearsTheMarkOfTheFirstStart) {
  UnpaintableDock &failing = StartUnpaintable();
  registry.SetText(L"ShowWelcomePage", L"1");
  SendShowWelcome(failing);
  EXPECT_EQ(L"0", registry.Text(L"ShowWelcomePage"));
  ExpectNoBarButAProcess({L"caught an unhandled exception in OnShowWelcome"});
}

TEST_F(HandlerFailure, OfATickWithinADialogIsNotThatOfTheNextHandler) {
  UnpaintableDock &failing = StartUnpaintable();
  Step(22); // the first tick comes within the dialog
  const FromTheLoop inTheDialog([&] { return IsOpen(resetTitle) && dock->Opacity.Get() < 255; },
                                [&] {
                                  EXPECT_FALSE(failing.failsToPaint) << "the tick has failed";
                                  Step(3);
                                  EXPECT_EQ(Texts{}, eventLog.Reports());
                                  EXPECT_TRUE(::IsWindow(dock->handle));
                                  ::EndDialog(::FindWindowW(nullptr, resetTitle), 0);
                                });
  failing.failsToPaint = true;
  Press(BarTree(*dock).resetButton.GetHandle());
  EXPECT_TRUE(inTheDialog.HasRun());
  EXPECT_THROW(RethrowWindowException(), std::runtime_error) << "the click was no handler's: the loop hears of it";
  EXPECT_EQ(Texts{}, eventLog.Reports());
}

std::function<void()> drag;

HRESULT WINAPI RunDrag(IDataObject *, IDropSource *, DWORD, DWORD *) {
  drag();
  return DRAGDROP_S_CANCEL;
}

TEST_F(HandlerFailure, OfTheLoopOfADragIsNotThatOfTheNextHandler) {
  SaveDocument(PictureElements(1), userDocument);
  StartUnpaintable();
  const tests::ImportSlot drags(&__imp_DoDragDrop, &RunDrag);
  drag = [&] {
    Shielded([]() -> HRESULT { throw std::runtime_error("of the drag's objects"); });
    Step(3);
    EXPECT_EQ(Texts{}, eventLog.Reports());
    EXPECT_TRUE(::IsWindow(dock->handle));
  };
  const auto button = dock->GetUserButtons().at(0);
  ButtonEventArgs args{button.get()};
  button->DragBegin.Fire(&args);
  EXPECT_THROW(RethrowWindowException(), std::runtime_error);
  EXPECT_EQ(Texts{}, eventLog.Reports());
  EXPECT_TRUE(::IsWindow(dock->handle));
}

} // namespace

} // namespace lumenor
