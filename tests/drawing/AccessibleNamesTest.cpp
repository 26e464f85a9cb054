// What the windows of controls answer to the platform's proxies for screen readers, and what is annotated.

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <oleacc.h>

#include "drawing/ButtonOnScreen.h"
#include "support/ImportSlot.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"
#include "toolkit/Accessibility.h"
#include "toolkit/drawing/CheckBox.h"
#include "toolkit/TextBox.h"

extern "C" decltype(&::CoCreateInstance) __imp_CoCreateInstance;

namespace lumenor {

namespace {

/// A painter whose button shows a text.
class LabelPainter : public RecordingPainter {
public:
  explicit LabelPainter(std::wstring label) : label(std::move(label)) {}
  std::wstring GetLabel() const override { return label; }

private:
  std::wstring label;
};

/// What a window of this process answers to WM_GETTEXT, with room for `room` characters and the end.
std::wstring Answer(HWND window, std::size_t room = 99) {
  std::wstring text(room + 1, L'?');
  text.resize(
      static_cast<std::size_t>(::SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

LRESULT AnswerLength(HWND window) { return ::SendMessageW(window, WM_GETTEXTLENGTH, 0, 0); }

/// The events of a kind that this thread is told of while it lives: the object that each is about.
class WindowEvents {
public:
  explicit WindowEvents(DWORD event)
      : hook(::SetWinEventHook(event, event, nullptr, Note, ::GetCurrentProcessId(), 0, WINEVENT_OUTOFCONTEXT)) {
    noted.clear();
  }
  ~WindowEvents() { ::UnhookWinEvent(hook); }
  WindowEvents(const WindowEvents &) = delete;
  WindowEvents &operator=(const WindowEvents &) = delete;

  static bool Wait(HWND window) {
    return desk::PumpUntil([=] { return std::count(noted.begin(), noted.end(), window) == 1; });
  }

private:
  static void CALLBACK Note(HWINEVENTHOOK, DWORD, HWND window, LONG object, LONG child, DWORD, DWORD) {
    if (object == OBJID_CLIENT && child == CHILDID_SELF)
      noted.push_back(window);
  }

  static inline std::vector<HWND> noted;
  HWINEVENTHOOK hook;
};

class ButtonName : public ButtonOnScreen {};

TEST_F(ButtonName, IsItsLabelAndNotItsTip) {
  button.SetPainter(std::make_shared<LabelPainter>(L"Files"));
  button.Name.Set(L"Browse the files");
  EXPECT_EQ(Answer(button.handle), L"Files");
  EXPECT_EQ(AnswerLength(button.handle), 5);
}

TEST_F(ButtonName, IsItsTipWithoutALabel) {
  button.Name.Set(L"Close");
  EXPECT_EQ(Answer(button.handle), L"Close");
  button.Name.Set(L"Shut");
  EXPECT_EQ(Answer(button.handle), L"Shut");
}

TEST_F(ButtonName, HasNoAccessKey) {
  button.SetPainter(std::make_shared<LabelPainter>(L"R&D && more"));
  EXPECT_EQ(Answer(button.handle), L"R&&D &&&& more");
  EXPECT_EQ(AnswerLength(button.handle), 14);
}

TEST_F(ButtonName, IsCutToTheRoomThatThereIs) {
  button.Name.Set(L"Close");
  EXPECT_EQ(Answer(button.handle, 3), L"Clo");
  EXPECT_EQ(Answer(button.handle, 0), L"");
  EXPECT_EQ(button.Ask(WM_GETTEXT, 0, 0), unhandled);
}

TEST_F(ButtonName, GivesWayToATextOfTheWindow) {
  button.Name.Set(L"Close");
  ::SetWindowTextW(button.handle, L"given");
  EXPECT_EQ(Answer(button.handle), L"given");
  EXPECT_EQ(AnswerLength(button.handle), 5);
}

TEST_F(ButtonName, LeavesTheWindowWithoutAText) {
  button.Name.Set(L"Close");
  wchar_t text[8] = L"?";
  EXPECT_EQ(::InternalGetWindowText(button.handle, text, 8), 0);
}

TEST_F(ButtonName, TellsOfAChange) {
  const WindowEvents events(EVENT_OBJECT_NAMECHANGE);
  button.Name.Set(L"Close");
  EXPECT_TRUE(events.Wait(button.handle));
}

/// The canvas of a window that shows, and what is annotated of a control in it.
class Annotated : public ::testing::Test {
protected:
  void Show(UIElement &control) {
    control.SetBounds(&buttonBounds);
    root.onInitialize = [&] { root.canvas.AddChild(&control); };
    root.Create(nullptr);
    desk::PumpAll();
  }

  static auto RoleOf(HWND window) { return ::GetPropW(window, L"lumenor_services.role"); }

  static std::wstring NameOf(HWND window) {
    wchar_t name[256] = {};
    const auto atom = reinterpret_cast<ULONG_PTR>(::GetPropW(window, L"lumenor_services.name"));
    ::GlobalGetAtomNameW(static_cast<ATOM>(atom), name, 256);
    return name;
  }

  TestWindow root;
};

HRESULT WINAPI RefuseClass(REFCLSID, IUnknown *, DWORD, REFIID, void **) { return REGDB_E_CLASSNOTREG; }

TEST_F(Annotated, ControlIsNotWithoutTheService) {
  TextBox field(root.Target(), 7);
  Show(field);
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  {
    const tests::ImportSlot slot(&__imp_CoCreateInstance, &RefuseClass);
    AnnotateName(field.GetHandle(), L"Search");
  }
  EXPECT_EQ(log.Lines(),
            std::vector<std::string>{"ERROR: Accessibility: a control can't be annotated, error 80040154"});
  EXPECT_EQ(NameOf(field.GetHandle()), L"");
}

TEST_F(Annotated, CheckBoxIsOneAndTellsWhetherItIsChecked) {
  CheckBox box(std::make_shared<LabelPainter>(L"Update"));
  Show(box);
  EXPECT_EQ(RoleOf(box.handle), reinterpret_cast<HANDLE>(ROLE_SYSTEM_CHECKBUTTON));
  EXPECT_EQ(Answer(box.handle), L"Update");
  EXPECT_EQ(::SendMessageW(box.handle, BM_GETCHECK, 0, 0), BST_UNCHECKED);
  EXPECT_EQ(::SendMessageW(box.handle, BM_GETSTATE, 0, 0), 0);
  const WindowEvents events(EVENT_OBJECT_STATECHANGE);
  box.Checked.Set(1);
  EXPECT_EQ(::SendMessageW(box.handle, BM_GETCHECK, 0, 0), BST_CHECKED);
  box.IsPressed.Set(1);
  box.HasFocus.Set(1);
  EXPECT_EQ(::SendMessageW(box.handle, BM_GETSTATE, 0, 0), BST_CHECKED | BST_PUSHED | BST_FOCUS);
  EXPECT_TRUE(events.Wait(box.handle));
}

TEST_F(Annotated, OtherButtonsAreNone) {
  CheckedButton button(std::make_shared<LabelPainter>(L"Move"));
  button.Checked.Set(1);
  Show(button);
  EXPECT_EQ(RoleOf(button.handle), nullptr);
  EXPECT_EQ(::SendMessageW(button.handle, BM_GETCHECK, 0, 0), BST_UNCHECKED);
}

TEST_F(Annotated, FieldHasItsNameBesideItsTextUntilItGoes) {
  constexpr wchar_t name[] = L"What to look for";
  TextBox field(root.Target(), 7);
  field.Name.Set(L"Early");
  Show(field);
  EXPECT_EQ(NameOf(field.handle), L"Early");
  field.Name.Set(name);
  ::SetWindowTextW(field.handle, L"typed");
  EXPECT_EQ(NameOf(field.handle), name);
  EXPECT_EQ(Answer(field.handle), L"typed");
  EXPECT_NE(::GlobalFindAtomW(name), 0);
  ::DestroyWindow(field.handle);
  EXPECT_EQ(::GlobalFindAtomW(name), 0) << "the platform keeps what isn't cleared";
  EXPECT_EQ(::GlobalFindAtomW(L"Early"), 0);
}

} // namespace

} // namespace lumenor
