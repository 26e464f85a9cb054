#include "dock/dialogs/ResetConfirmationDialog.h"

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dock/Rectangles.h"
#include "dock/TestBar.h"
#include "drawing/Pictures.h"
#include "toolkit/drawing/Button.h"

namespace lumenor {

namespace {

constexpr RECT dialogBounds = {440, 77, 840, 249};
constexpr UINT_PTR stepTimer = 1;

/// The window that asks: it notes each request to reset, and whether the dialog was still there then.
class Asker {
public:
  Asker() {
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = ::GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"LumenorTestAsker";
    ::RegisterClassW(&windowClass);
    window = ::CreateWindowExW(0, windowClass.lpszClassName, L"", WS_POPUP | WS_VISIBLE, 10, 10, 50, 50, nullptr,
                               nullptr, windowClass.hInstance, nullptr);
    ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  ~Asker() { ::DestroyWindow(window); }
  Asker(const Asker &) = delete;
  Asker &operator=(const Asker &) = delete;

  HWND window;
  std::function<bool()> dialogStands;
  std::vector<bool> resets; // for each request, whether the dialog stood

private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto *const asker = reinterpret_cast<Asker *>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (asker != nullptr && message == 1039)
      asker->resets.push_back(asker->dialogStands());
    return ::DefWindowProcW(window, message, wParam, lParam);
  }
};

class ResetDialog : public ::testing::Test {
protected:
  ResetDialog() {
    WriteTexts(L"Start over?", L"Your buttons go and the factory content comes back.", L"Reset", L"Cancel");
    tests::MakeFolders(folders.Root() + L"\\Dock");
    tests::MakeFolders(folders.Root() + L"\\resources");
    tests::WritePicture(picture, tests::SolidPicture(48, 48, 0xFF0000FF));
    asker.dialogStands = [this] { return dialog != nullptr && ::IsWindow(dialog->handle); };
  }

  ~ResetDialog() override {
    if (dialog && ::IsWindow(dialog->handle))
      ::DestroyWindow(dialog->handle);
  }

  void WriteTexts(const std::wstring &title, const std::wstring &description, const std::wstring &reset,
                  const std::wstring &cancel) {
    const auto entry = [](const std::wstring &id, const std::wstring &text) {
      return L"<Element ID=\"ResetWindow." + id + L"\"><Head>" + text + L"</Head></Element>";
    };
    tests::WriteText(folders.UserFolder() + L"\\Lumenor.MainFrame.Windows.DockViewWindow.xml",
                     L"<?xml version=\"1.0\" encoding=\"utf-8\"?><UIRoot>"
                     L"<Lumenor.MainFrame.Windows.DockViewWindow><Elements>" +
                         entry(L"Title", title) + entry(L"Description", description) + entry(L"ResetButton", reset) +
                         entry(L"CancelButton", cancel) +
                         L"</Elements></Lumenor.MainFrame.Windows.DockViewWindow></UIRoot>");
  }

  void MakeDialog() { dialog = std::make_unique<ResetConfirmationDialog>(dialogBounds, asker.window); }

  /// Makes the dialog's window without running it.
  void OpenDialog() {
    tests::CurrentFolder current(folders.Root() + L"\\Dock");
    MakeDialog();
    ASSERT_NE(nullptr, dialog->Create(asker.window));
  }

  /// Runs the dialog, and `step` once it stands; returns what it ended with.
  INT_PTR RunDialog(std::function<void()> step) {
    tests::CurrentFolder current(folders.Root() + L"\\Dock");
    MakeDialog();
    pendingStep = std::move(step);
    running = this;
    ::SetTimer(asker.window, stepTimer, 50, [](HWND window, UINT, UINT_PTR, DWORD) {
      ::KillTimer(window, stepTimer);
      running->pendingStep();
    });
    return dialog->DoModal(asker.window);
  }

  /// The dialog's child element number `child` of its row number `row`.
  UIElement *ElementAt(std::size_t row, std::size_t child) {
    auto *const root = dynamic_cast<DockPanel *>(dialog->GetChild());
    auto *const rows = dynamic_cast<StackPanel *>(root->GetChildren().at(1));
    return dynamic_cast<DockPanel *>(rows->GetChildren().at(row))->GetChildren().at(child);
  }
  TextElement &Title() { return dynamic_cast<TextElement &>(*ElementAt(0, 0)); }
  UIElement &Picture() { return *ElementAt(1, 0); }
  TextElement &Description() { return dynamic_cast<TextElement &>(*ElementAt(1, 1)); }
  HWND CancelButton() { return ElementAt(2, 0)->GetHandle(); }
  HWND ResetButton() { return ElementAt(2, 1)->GetHandle(); }

  /// Where an element of a row is on the screen.
  RECT Place(std::size_t row, std::size_t child) {
    const UIElement *const element = ElementAt(row, child);
    const RECT panel = ScreenRect(ElementAt(row, child)->parent->GetHandle());
    return {panel.left + element->Left.Get(), panel.top + element->Top.Get(),
            panel.left + element->Left.Get() + element->Width.Get(),
            panel.top + element->Top.Get() + element->Height.Get()};
  }

  /// A click that arrives through the dialog's own message loop, and nothing that pumps beside it.
  static void Click(HWND button) {
    ::PostMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
    ::PostMessageW(button, WM_LBUTTONUP, 0, MAKELPARAM(10, 10));
  }

  static inline ResetDialog *running = nullptr;

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const std::wstring picture = folders.Root() + L"\\resources\\ResetImage.png";
  Asker asker;
  std::unique_ptr<ResetConfirmationDialog> dialog;
  std::function<void()> pendingStep;
};

TEST_F(ResetDialog, StandsAtItsBounds) {
  OpenDialog();
  EXPECT_EQ(dialogBounds, ScreenRect(dialog->handle));
  EXPECT_EQ(131, dialog->dialogId);
}

TEST_F(ResetDialog, SetsTitlePictureTextAndButtonsInRows) {
  OpenDialog();
  EXPECT_EQ(Rect(440, 85, 832, 135), Place(0, 0));
  EXPECT_EQ(Rect(448, 144, 496, 192), Place(1, 0));
  EXPECT_EQ(Rect(504, 143, 832, 193), Place(1, 1));
  EXPECT_EQ(Rect(752, 201, 832, 241), Place(2, 0));
  EXPECT_EQ(Rect(664, 201, 744, 241), Place(2, 1));
}

TEST_F(ResetDialog, WritesItsTitle) {
  OpenDialog();
  EXPECT_EQ(L"Start over?", Title().Text.Get());
  EXPECT_EQ(16.0F, Title().FontSize.Get());
  EXPECT_EQ(DWRITE_FONT_WEIGHT_SEMI_BOLD, Title().FontWeight.Get());
  EXPECT_EQ((Color{1, 1, 1, 1}), Title().Color.Get());
  EXPECT_EQ(DWRITE_TEXT_ALIGNMENT_TRAILING, Title().TextAlignment.Get());
  EXPECT_EQ((Margin{0, 8, 8, 8}), Title().Margin.Get());
  EXPECT_EQ(50, Title().DesiredHeight.Get());
}

TEST_F(ResetDialog, WritesItsDescriptionWrapped) {
  OpenDialog();
  EXPECT_EQ(L"Your buttons go and the factory content comes back.", Description().Text.Get());
  EXPECT_EQ(12.0F, Description().FontSize.Get());
  EXPECT_EQ(DWRITE_FONT_WEIGHT_MEDIUM, Description().FontWeight.Get());
  EXPECT_EQ((Color{1, 1, 1, 1}), Description().Color.Get());
  EXPECT_EQ(DWRITE_WORD_WRAPPING_WRAP, Description().WordWrapping.Get());
  EXPECT_EQ(DWRITE_TEXT_ALIGNMENT_LEADING, Description().TextAlignment.Get());
}

TEST_F(ResetDialog, GivesBothButtonsTheSameId) {
  OpenDialog();
  EXPECT_EQ(1003, ::GetDlgCtrlID(ResetButton()));
  EXPECT_EQ(1003, ::GetDlgCtrlID(CancelButton()));
}

TEST_F(ResetDialog, KeepsItsRowsForAPictureThatIsTooBig) {
  tests::WritePicture(picture, tests::SolidPicture(300, 200, 0xFF0000FF));
  OpenDialog();
  EXPECT_EQ(Rect(448, 143, 523, 193), Place(1, 0));
  EXPECT_EQ(Rect(531, 143, 832, 193), Place(1, 1));
  EXPECT_EQ(Rect(752, 201, 832, 241), Place(2, 0));
}

TEST_F(ResetDialog, ShowsTheDefaultPictureForAMissingOne) {
  ::DeleteFileW(picture.c_str());
  OpenDialog();
  EXPECT_EQ(48, Picture().DesiredWidth.Get());
  EXPECT_EQ(48, Picture().DesiredHeight.Get());
}

TEST_F(ResetDialog, ComesUpWithoutTexts) {
  ::DeleteFileW((folders.UserFolder() + L"\\Lumenor.MainFrame.Windows.DockViewWindow.xml").c_str());
  OpenDialog();
  EXPECT_EQ(L"", Title().Text.Get());
  EXPECT_EQ(Rect(664, 201, 744, 241), Place(2, 1));
}

TEST_F(ResetDialog, AsksForAResetAndEnds) {
  EXPECT_EQ(0, RunDialog([this] { Click(ResetButton()); }));
  EXPECT_TRUE(asker.resets.empty()); // posted, and so not before the dialog has gone
  EXPECT_EQ(nullptr, dialog->handle);
  desk::PumpAll();
  EXPECT_EQ(std::vector<bool>({false}), asker.resets);
}

TEST_F(ResetDialog, EndsWithoutAResetWhenItIsCancelled) {
  EXPECT_EQ(0, RunDialog([this] { Click(CancelButton()); }));
  EXPECT_EQ(nullptr, dialog->handle);
  desk::PumpAll();
  EXPECT_TRUE(asker.resets.empty());
}

TEST_F(ResetDialog, StaysWhenNoButtonIsPressed) {
  bool stood = false;
  RunDialog([this, &stood] {
    ClickAt({460, 90});
    stood = ::IsWindowVisible(dialog->handle);
    Click(CancelButton());
  });
  EXPECT_TRUE(stood);
  desk::PumpAll();
  EXPECT_TRUE(asker.resets.empty());
}

TEST_F(ResetDialog, EndsWithoutAResetWhenItCannotBeComposed) {
  tests::WriteBytes(picture, "no picture at all");
  const desk::EventLogSpy eventLog;
  RunDialog([] {});
  EXPECT_EQ(std::vector<std::wstring>({L"caught an unhandled exception in OnInitDialog"}), eventLog.Reports());
  EXPECT_EQ(nullptr, dialog->handle);
  desk::PumpAll();
  EXPECT_TRUE(asker.resets.empty());
}

/// The brightness of the button's upper border, where its outline runs.
std::uint32_t BorderOf(HWND button) {
  const RECT rect = ScreenRect(button);
  return desk::PixelAt({(rect.left + rect.right) / 2, rect.top}) & 0xFF;
}

/// The brightness of the button's surface beside its label.
std::uint32_t SurfaceOf(HWND button) {
  const RECT rect = ScreenRect(button);
  return desk::PixelAt({rect.left + 6, (rect.top + rect.bottom) / 2}) & 0xFF;
}

TEST_F(ResetDialog, ShowsTheHoverAndPressedLooksOfBothButtons) {
  const desk::Backdrop behind({430, 70, 850, 260}, RGB(255, 255, 255));
  OpenDialog();
  desk::PumpAll();
  for (const HWND button : {ResetButton(), CancelButton()}) {
    desk::MoveCursor({460, 90});
    desk::PumpAll();
    const std::uint32_t border = BorderOf(button), idle = SurfaceOf(button);
    desk::MoveCursor(desk::MiddleOf(button));
    EXPECT_TRUE(desk::PumpUntil([&] { return SurfaceOf(button) != idle && BorderOf(button) != border; }));
    const std::uint32_t hover = SurfaceOf(button);
    desk::PressLeftButton();
    EXPECT_TRUE(desk::PumpUntil([&] { return SurfaceOf(button) != hover && SurfaceOf(button) != idle; }));
    desk::MoveCursor({460, 90});
    desk::ReleaseLeftButton();
  }
}

} // namespace

} // namespace lumenor
