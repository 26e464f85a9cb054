#include "dock/dialogs/WelcomeScreenDialog.h"

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "dock/bar/BarFixture.h"
#include "dock/dialogs/UserLocale.h"
#include "dock/flyouts/DockButton.h"
#include "dock/Rectangles.h"
#include "dock/TestBar.h"
#include "drawing/Pictures.h"
#include "toolkit/Scale.h"

namespace lumenor {

namespace {

constexpr RECT barAndTop = {190, 77, 1090, 0};
constexpr wchar_t startupPath[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr wchar_t dockPath[] = L"SOFTWARE\\Tarnwick\\Lumenor";
constexpr wchar_t startupValue[] = L"LumenorDock";
constexpr wchar_t updateValue[] = L"AllowToUpdate";

/// The elements of a composed dialog, found by their places in the tree.
struct DialogTree {
  explicit DialogTree(WelcomeScreenDialog &dialog)
      : mainStack(At<StackPanel>(*dialog.GetChild(), {0, 1})), title(At<TextElement>(mainStack, {0})),
        tourText(At<TextElement>(mainStack, {1, 0, 1, 0, 0})), tourButton(At<DockButton>(mainStack, {1, 0, 1, 1, 0})),
        featureStack(At<StackPanel>(mainStack, {1, 1})), featuresHeading(At<TextElement>(featureStack, {0})),
        buttonStack(At<StackPanel>(*dialog.GetChild(), {0, 2, 0})), closeButton(At<Button>(buttonStack, {0})),
        updateCheckBox(At<CheckedButton>(buttonStack, {1})), startupCheckBox(At<CheckedButton>(buttonStack, {2})),
        preferences(At<TextElement>(buttonStack, {3})) {}

  template <typename Child> static Child &At(UIElement &element, std::initializer_list<std::size_t> path) {
    UIElement *found = &element;
    for (const std::size_t index : path)
      found = ChildrenOf(*found).at(index);
    return dynamic_cast<Child &>(*found);
  }

  TextElement &Headline(std::size_t row) { return At<TextElement>(featureStack, {row, 1, 0}); }
  TextElement &Sentence(std::size_t row) { return At<TextElement>(featureStack, {row, 1, 1}); }

  StackPanel &mainStack;
  TextElement &title;
  TextElement &tourText;
  DockButton &tourButton;
  StackPanel &featureStack;
  TextElement &featuresHeading;
  StackPanel &buttonStack;
  Button &closeButton;
  CheckedButton &updateCheckBox;
  CheckedButton &startupCheckBox;
  TextElement &preferences;
};

class WelcomeScreen : public testing::Test {
protected:
  WelcomeScreen() {
    for (const tests::KeptRegistryKey *key : {&startup, &registry}) {
      key->Delete();
      key->Create();
    }
    tests::MakeFolders(folders.Root() + L"\\Dock");
    tests::MakeFolders(folders.Root() + L"\\resources");
    WritePicture(L"backgroundwindow", 760, 450);
    WritePicture(L"arrowIcon", 24, 20);
    WritePicture(L"handswithIconsGraphic", 560, 320);
    WritePicture(L"LaunchVideo", 48, 16);
    WriteTexts();
  }

  ~WelcomeScreen() override {
    if (dialog && ::IsWindow(dialog->handle))
      ::DestroyWindow(dialog->handle);
  }

  std::wstring PicturePath(const std::wstring &name) const {
    return folders.Root() + L"\\resources\\" + name + L".png";
  }
  void WritePicture(const std::wstring &name, int width, int height) const {
    tests::WritePicture(PicturePath(name), tests::SolidPicture(width, height, 0xFF203050));
  }

  /// Each text is its own id, but for the close button's label where there is another.
  void WriteTexts(const std::wstring &closeLabel = L"TextBlock.ButtonClose") const {
    std::wstring elements;
    for (const wchar_t *id :
         {L"TextBlock.WindowTitle", L"TextBlock.FeaturesHeading", L"TextBlock.Feature1a", L"TextBlock.Feature1b",
          L"TextBlock.Feature2a", L"TextBlock.Feature2b", L"TextBlock.Feature3a", L"TextBlock.Feature3b",
          L"TextBlock.Feature4a", L"TextBlock.Feature4b", L"TextBlock.ViewTour", L"TextBlock.OptOutPreferences",
          L"TextBlock.AllowToUpdate", L"TextBlock.OptOutLabel", L"Button.Tooltip.Close"})
      elements += L"<Element ID=\"" + std::wstring(id) + L"\"><Head>" + id + L"</Head></Element>";
    elements += L"<Element ID=\"TextBlock.ButtonClose\"><Head>" + closeLabel + L"</Head></Element>";
    tests::WriteText(folders.UserFolder() + L"\\Lumenor.MainFrame.Controls.WelcomeWindow.xml",
                     L"<UIRoot><Lumenor.MainFrame.Controls.WelcomeWindow><Elements>" + elements +
                         L"</Elements></Lumenor.MainFrame.Controls.WelcomeWindow></UIRoot>");
  }

  /// Makes the dialog's window without running it.
  DialogTree OpenDialog(const RECT &bounds = barAndTop) {
    tests::CurrentFolder current(folders.Root() + L"\\Dock");
    dialog = std::make_unique<WelcomeScreenDialog>(bounds);
    dialog->Create(nullptr);
    return DialogTree(*dialog);
  }

  /// Runs the dialog, and `step` once it stands; returns what it ended with.
  INT_PTR RunDialog(std::function<void()> step) {
    tests::CurrentFolder current(folders.Root() + L"\\Dock");
    dialog = std::make_unique<WelcomeScreenDialog>(barAndTop);
    pendingStep = std::move(step);
    running = this;
    ::SetTimer(nullptr, 0, 50, [](HWND, UINT, UINT_PTR timer, DWORD) {
      ::KillTimer(nullptr, timer);
      running->pendingStep();
    });
    return dialog->DoModal(nullptr);
  }

  /// A click that arrives through the dialog's own message loop, and nothing that pumps beside it.
  static void Click(Button &button) {
    ::PostMessageW(button.GetHandle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    ::PostMessageW(button.GetHandle(), WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
  }

  /// Runs the dialog, clicks the check boxes that are asked for, and closes it with its button.
  void CloseDialog(bool clickStartup, bool clickUpdate) {
    EXPECT_EQ(0, RunDialog([this, clickStartup, clickUpdate] {
                DialogTree tree(*dialog);
                if (clickStartup)
                  Click(tree.startupCheckBox);
                if (clickUpdate)
                  Click(tree.updateCheckBox);
                Click(tree.closeButton);
              }));
    EXPECT_EQ(nullptr, dialog->handle);
  }

  void ExpectStored(bool startsWithSession, const wchar_t *allowed) const {
    if (startsWithSession)
      EXPECT_EQ(folders.InstallFolder() + L"\\Dock\\LumenorDock.exe", startup.Text(startupValue));
    else
      EXPECT_EQ(std::nullopt, startup.Text(startupValue));
    EXPECT_EQ(allowed, registry.Text(updateValue));
  }

  void ExpectNothingStored() const {
    EXPECT_EQ(std::nullopt, startup.Text(startupValue));
    EXPECT_EQ(std::nullopt, registry.Text(updateValue));
  }

  static inline WelcomeScreen *running = nullptr;

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const tests::KeptRegistryKey startup{HKEY_CURRENT_USER, startupPath};
  const tests::KeptRegistryKey registry{HKEY_CURRENT_USER, dockPath};
  const ShellSpy shell;
  const tests::UserLocale user{tests::english, tests::unitedStates};
  std::unique_ptr<WelcomeScreenDialog> dialog;
  std::function<void()> pendingStep;
};

// Where it stands.

TEST_F(WelcomeScreen, StandsBelowTheBarAtItsMiddle) {
  OpenDialog();
  EXPECT_EQ(Rect(260, 77, 1020, 527), ScreenRect(dialog->handle));
  EXPECT_EQ(134, dialog->dialogId);
}

TEST_F(WelcomeScreen, IsNoWiderThanItsBackgroundUnderABarOfAnyWidth) {
  WritePicture(L"backgroundwindow", 500, 400);
  OpenDialog({0, 90, 1280, 0});
  EXPECT_EQ(Rect(390, 90, 890, 490), ScreenRect(dialog->handle));
}

using Lines = std::vector<std::string>;

const Lines composedDialog = {
    "DockPanel 0 0 760 450",
    "  DockPanel 0 0 760 450",
    "    ImageElement 0 0 760 450",
    "    StackPanel 32 0 728 434",
    "      TextElement 0 8 720 50",
    "      DockPanel 0 66 728 220",
    "        StackPanel 428 0 300 220",
    "          ImageElement 0 0 280 160",
    "          StackPanel 0 160 300 60",
    "            StackPanel 0 0 220 60",
    "              TextElement 0 0 220 32",
    "            DockPanel 220 0 60 60",
    "              DockButton 0 8 50 16",
    "              ColorRectangle 0 0 60 60",
    "        StackPanel 0 0 428 220",
    "          TextElement 0 0 428 40",
    "          DockPanel 0 40 428 35",
    "            ImageElement 0 7 24 20",
    "            StackPanel 24 0 404 35",
    "              TextElement 0 0 398 17",
    "              TextElement 0 17 404 18",
    "          DockPanel 0 80 428 35",
    "            ImageElement 0 7 24 20",
    "            StackPanel 24 0 404 35",
    "              TextElement 0 0 398 17",
    "              TextElement 0 17 404 18",
    "          DockPanel 0 120 428 35",
    "            ImageElement 0 7 24 20",
    "            StackPanel 24 0 404 35",
    "              TextElement 0 0 398 17",
    "              TextElement 0 17 404 18",
    "          DockPanel 0 160 428 35",
    "            ImageElement 0 7 24 20",
    "            StackPanel 24 0 404 35",
    "              TextElement 0 0 398 17",
    "              TextElement 0 17 404 18",
    "    DockPanel 32 334 696 116",
    "      StackPanel 0 0 696 116",
    "        Button 576 8 120 40",
    "        CheckBox 0 0 420 28",
    "        CheckBox 0 28 420 28",
    "        TextElement 20 64", // as wide and high as its font makes it
};

// At 144 dots per inch. The picture, the tour and the arrows have the same size in pixels at every density.
const Lines composedDenseDialog = {
    "DockPanel 0 0 1140 675",
    "  DockPanel 0 0 1140 675",
    "    ImageElement 0 0 1140 675",
    "    StackPanel 48 0 1092 651",
    "      TextElement 0 12 1080 75",
    "      DockPanel 0 99 1092 304",
    "        StackPanel 792 0 300 304",
    "          ImageElement 0 0 280 160",
    "          StackPanel 0 160 300 60",
    "            StackPanel 0 0 220 60",
    "              TextElement 0 0 220 32",
    "            DockPanel 220 0 60 60",
    "              DockButton 0 8 50 16",
    "              ColorRectangle 0 0 60 60",
    "        StackPanel 0 0 792 304",
    "          TextElement 0 0 792 60",
    "          DockPanel 0 60 792 53",
    "            ImageElement 0 16 24 20",
    "            StackPanel 24 0 768 53",
    "              TextElement 0 0 759 26",
    "              TextElement 0 26 768 27",
    "          DockPanel 0 121 792 53",
    "            ImageElement 0 16 24 20",
    "            StackPanel 24 0 768 53",
    "              TextElement 0 0 759 26",
    "              TextElement 0 26 768 27",
    "          DockPanel 0 182 792 53",
    "            ImageElement 0 16 24 20",
    "            StackPanel 24 0 768 53",
    "              TextElement 0 0 759 26",
    "              TextElement 0 26 768 27",
    "          DockPanel 0 243 792 53",
    "            ImageElement 0 16 24 20",
    "            StackPanel 24 0 768 53",
    "              TextElement 0 0 759 26",
    "              TextElement 0 26 768 27",
    "    DockPanel 48 501 1044 174",
    "      StackPanel 0 0 1044 174",
    "        Button 864 12 180 60",
    "        CheckBox 0 0 630 42",
    "        CheckBox 0 42 630 42",
    "        TextElement 20 96",
};

TEST_F(WelcomeScreen, IsComposedInItsOrder) {
  const DialogTree tree = OpenDialog();
  Lines expected = ScaleY(100) == 100 ? composedDialog : composedDenseDialog;
  expected.back() += ' ' + std::to_string(tree.preferences.DesiredWidth.Get()) + ' ' +
                     std::to_string(tree.preferences.DesiredHeight.Get());
  EXPECT_THAT(Describe(*dialog->GetChild()), testing::ElementsAreArray(expected));
}

/// Every window of a tree stands where its element does.
void ExpectWindowsInPlace(UIElement &element, POINT parentCorner) {
  const POINT corner = {parentCorner.x + element.Left.Get(), parentCorner.y + element.Top.Get()};
  if (element.GetHandle() != nullptr) {
    EXPECT_EQ(Rect(corner.x, corner.y, corner.x + element.Width.Get(), corner.y + element.Height.Get()),
              ScreenRect(element.GetHandle()));
  }
  for (UIElement *const child : ChildrenOf(element))
    ExpectWindowsInPlace(*child, corner);
}

TEST_F(WelcomeScreen, HasEveryWindowWhereItsElementIs) {
  OpenDialog();
  const RECT place = ScreenRect(dialog->handle);
  ExpectWindowsInPlace(*dialog->GetChild(), {place.left, place.top});
}

TEST_F(WelcomeScreen, LetsNothingLieOverItsButtons) {
  const DialogTree tree = OpenDialog();
  const Button *const buttons[] = {&tree.tourButton, &tree.closeButton, &tree.updateCheckBox, &tree.startupCheckBox};
  for (const Button *button : buttons)
    EXPECT_EQ(button->handle, ::WindowFromPoint(desk::MiddleOf(button->handle)));
}

// What it says.

void ExpectText(const std::wstring &text, float size, DWRITE_TEXT_ALIGNMENT alignment, const Color &color,
                const TextElement &element) {
  EXPECT_EQ(text, element.Text.Get());
  EXPECT_EQ(size, element.FontSize.Get());
  EXPECT_EQ(alignment, element.TextAlignment.Get());
  EXPECT_EQ(color, element.Color.Get());
}

TEST_F(WelcomeScreen, WritesItsTexts) {
  DialogTree tree = OpenDialog();
  const Color white = {1, 1, 1, 1};
  ExpectText(L"TextBlock.WindowTitle", 16, DWRITE_TEXT_ALIGNMENT_CENTER, {0.58431375F, 0.7490196F, 0.92156863F, 1},
             tree.title);
  EXPECT_EQ(DWRITE_FONT_WEIGHT_SEMI_BOLD, tree.title.FontWeight.Get());
  ExpectText(L"TextBlock.FeaturesHeading", 20, DWRITE_TEXT_ALIGNMENT_LEADING, white, tree.featuresHeading);
  ExpectText(L"TextBlock.ViewTour", 14, DWRITE_TEXT_ALIGNMENT_CENTER, white, tree.tourText);
  ExpectText(L"TextBlock.OptOutPreferences", 9, DWRITE_TEXT_ALIGNMENT_CENTER, {0.827451F, 0.827451F, 0.827451F, 1},
             tree.preferences);
  for (const TextElement *text : {&tree.featuresHeading, &tree.tourText, &tree.preferences})
    EXPECT_EQ(DWRITE_FONT_WEIGHT_MEDIUM, text->FontWeight.Get());
}

TEST_F(WelcomeScreen, TellsFourFeaturesInTwoLinesEach) {
  DialogTree tree = OpenDialog();
  for (std::size_t row = 1; row <= 4; ++row) {
    const std::wstring id = L"TextBlock.Feature" + std::to_wstring(row);
    ExpectText(id + L"a", 14, DWRITE_TEXT_ALIGNMENT_LEADING, {1, 1, 1, 1}, tree.Headline(row));
    ExpectText(id + L"b", 14, DWRITE_TEXT_ALIGNMENT_LEADING, {1, 1, 1, 1}, tree.Sentence(row));
    EXPECT_EQ((Margin{0, 6, 0, 0}), tree.Headline(row).Margin.Get());
  }
  EXPECT_EQ(5u, tree.featureStack.GetChildren().size());
}

TEST_F(WelcomeScreen, ComesUpWithoutTexts) {
  ::DeleteFileW((folders.UserFolder() + L"\\Lumenor.MainFrame.Controls.WelcomeWindow.xml").c_str());
  const DialogTree tree = OpenDialog();
  EXPECT_EQ(L"", tree.title.Text.Get());
  EXPECT_EQ(Rect(868, 419, 988, 459), ScreenRect(tree.closeButton.handle));
}

TEST_F(WelcomeScreen, GivesItsButtonsTheirToolTips) {
  const DialogTree tree = OpenDialog();
  EXPECT_EQ(L"Button.Tooltip.Close", tree.closeButton.Name.Get());
  EXPECT_EQ(L"TextBlock.ViewTour", tree.tourButton.Name.Get());
  EXPECT_EQ(L"foryou", tree.tourButton.GetElement().ActionParams);
  EXPECT_EQ(L"..\\resources\\LaunchVideo.png", tree.tourButton.GetElement().Image);
}

/// The bounds of what is lit in `area` of the screen, to half of white and more.
RECT LitBounds(const RECT &area) {
  tests::Picture picture = tests::SolidPicture(area.right - area.left, area.bottom - area.top, 0);
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x)
      if ((desk::PixelAt({area.left + x, area.top + y}) & 0xFF) > 0x80)
        picture.pixels[static_cast<std::size_t>(y * picture.width + x)] = 0xFFFFFFFF;
  return tests::BoundsOf(picture, 0xFFFFFFFF);
}

TEST_F(WelcomeScreen, ShowsTheLabelsOfItsButtons) {
  WriteTexts(L"HH"); // a long one is in the middle wherever it begins
  const DialogTree tree = OpenDialog();
  const RECT close = ScreenRect(tree.closeButton.handle), box = ScreenRect(tree.updateCheckBox.handle);
  RECT label{};
  ASSERT_TRUE(desk::PumpUntil([&] {
    label = LitBounds({close.left + 3, close.top + 5, close.right - 3, close.bottom - 5});
    return !::IsRectEmpty(&label);
  })) << "the display shows the dialog";
  EXPECT_NEAR(114 / 2, (label.left + label.right) / 2, 3); // in the middle
  EXPECT_NEAR(30 / 2, (label.top + label.bottom) / 2, 3);
  const RECT beside = LitBounds({box.left + 17, box.top, box.right, box.bottom});
  EXPECT_NEAR(3, beside.left, 2); // right behind the box
}

// The defaults of the check boxes.

TEST_F(WelcomeScreen, OffersBothInTheUnitedStates) {
  const DialogTree tree = OpenDialog();
  EXPECT_EQ(1, tree.startupCheckBox.Checked.Get());
  EXPECT_EQ(1, tree.updateCheckBox.Checked.Get());
}

TEST_F(WelcomeScreen, OffersTheStartAloneElsewhere) {
  const tests::UserLocale elsewhere(tests::english, tests::germany);
  const DialogTree tree = OpenDialog();
  EXPECT_EQ(1, tree.startupCheckBox.Checked.Get());
  EXPECT_EQ(0, tree.updateCheckBox.Checked.Get());
}

TEST_F(WelcomeScreen, OffersTheStartAloneWithoutACountry) {
  const tests::UserLocale nowhere(tests::english, tests::noCountry);
  EXPECT_EQ(0, OpenDialog().updateCheckBox.Checked.Get());
}

// What closing it stores.

TEST_F(WelcomeScreen, StoresBothInTheUnitedStates) {
  CloseDialog(false, false);
  ExpectStored(true, L"true");
}

TEST_F(WelcomeScreen, StoresTheStartAlone) {
  CloseDialog(false, true);
  ExpectStored(true, L"false");
}

TEST_F(WelcomeScreen, StoresTheUpdatesAlone) {
  startup.SetText(startupValue, L"C:\\old.exe");
  CloseDialog(true, false);
  ExpectStored(false, L"true");
}

TEST_F(WelcomeScreen, StoresThatBothAreCleared) {
  CloseDialog(true, true);
  ExpectStored(false, L"false");
}

TEST_F(WelcomeScreen, StoresNoUpdatesElsewhereWhenNothingIsTouched) {
  const tests::UserLocale elsewhere(tests::english, tests::germany);
  CloseDialog(false, false);
  ExpectStored(true, L"false");
}

TEST_F(WelcomeScreen, StoresUpdatesElsewhereForTheAsking) {
  const tests::UserLocale elsewhere(tests::english, tests::germany);
  CloseDialog(true, true);
  ExpectStored(false, L"true");
}

TEST_F(WelcomeScreen, StoresNothingBeforeItIsClosed) {
  RunDialog([this] {
    DialogTree tree(*dialog);
    Click(tree.startupCheckBox);
    Click(tree.startupCheckBox);
    desk::PumpAll();
    ExpectNothingStored();
    Click(tree.closeButton);
  });
  ExpectStored(true, L"true");
}

TEST_F(WelcomeScreen, ChangesNothingElseInTheRegistry) {
  registry.SetText(L"ShowWelcomePage", L"1");
  CloseDialog(false, false);
  EXPECT_EQ(L"1", registry.Text(L"ShowWelcomePage"));
}

TEST_F(WelcomeScreen, ClosesWhereItsKeysAreMissing) {
  startup.Delete();
  registry.Delete();
  CloseDialog(false, false);
  ExpectNothingStored();
}

// The tour.

TEST_F(WelcomeScreen, OpensTheTourAndStays) {
  bool stood = false;
  RunDialog([this, &stood] {
    DialogTree tree(*dialog);
    Click(tree.tourButton);
    desk::PumpAll();
    stood = ::IsWindowVisible(dialog->handle);
    ExpectNothingStored();
    Click(tree.closeButton);
  });
  EXPECT_TRUE(stood);
  EXPECT_EQ(std::vector<Launch>(
                {{nullptr, L"open", folders.InstallFolder() + L"\\LumenorVideo\\doc.exe", L"en_us", SW_SHOW}}),
            shell.Launches());
}

TEST_F(WelcomeScreen, OpensTheTourOfTheOtherProgramFolderInTheUsersLanguage) {
  const tests::UserLocale canadian(tests::french, tests::canada, L"fr-CA");
  const std::wstring video = folders.InstallFolderX86() + L"\\LumenorVideo";
  tests::WriteBytes(video + L"\\doc.exe", "no program");
  tests::WriteBytes(video + L"\\XML\\fr_Tutorials.xml", "<Tutorials/>");
  DialogTree tree = OpenDialog();
  Click(tree.tourButton);
  desk::PumpAll();
  EXPECT_EQ(std::vector<Launch>({{nullptr, L"open", video + L"\\doc.exe", L"fr", SW_SHOW}}), shell.Launches());
}

// How it ends, and how not.

TEST_F(WelcomeScreen, StaysWhenItIsClosedInAnotherWay) {
  bool stood = false;
  RunDialog([this, &stood] {
    ::PostMessageW(dialog->handle, WM_CLOSE, 0, 0);
    ::PostMessageW(dialog->handle, WM_SYSCOMMAND, SC_CLOSE, 0);
    ::PostMessageW(dialog->handle, WM_COMMAND, IDCANCEL, 0);
    ::PostMessageW(dialog->handle, WM_COMMAND, IDOK, 0);
    desk::PumpAll();
    stood = ::IsWindowVisible(dialog->handle);
    ExpectNothingStored();
    Click(DialogTree(*dialog).closeButton);
  });
  EXPECT_TRUE(stood);
  ExpectStored(true, L"true");
}

TEST_F(WelcomeScreen, EndsAndLeavesTheSettingsWhenItCannotBeComposed) {
  for (const wchar_t *name : {L"backgroundwindow", L"arrowIcon", L"handswithIconsGraphic", L"LaunchVideo"}) {
    const std::string good = tests::ReadBytes(PicturePath(name));
    tests::WriteBytes(PicturePath(name), "no picture at all");
    const desk::EventLogSpy eventLog;
    RunDialog([] {});
    EXPECT_EQ(std::vector<std::wstring>({L"caught an unhandled exception in OnInitDialog"}), eventLog.Reports());
    EXPECT_EQ(nullptr, dialog->handle);
    ExpectNothingStored();
    tests::WriteBytes(PicturePath(name), good);
  }
}

TEST_F(WelcomeScreen, ShowsDefaultPicturesForMissingOnesAndKeepsItsRows) {
  for (const wchar_t *name : {L"arrowIcon", L"handswithIconsGraphic", L"LaunchVideo"})
    ::DeleteFileW(PicturePath(name).c_str());
  const DialogTree tree = OpenDialog();
  const UIElement &hands = DialogTree::At<UIElement>(tree.mainStack, {1, 0, 0});
  EXPECT_EQ(Rect(0, 0, 160, 160), Rect(hands.Left.Get(), hands.Top.Get(), hands.Width.Get(), hands.Height.Get()));
  EXPECT_EQ(tree.tourButton.handle, ::WindowFromPoint(desk::MiddleOf(tree.tourButton.handle)));
  EXPECT_EQ(tree.closeButton.handle, ::WindowFromPoint(desk::MiddleOf(tree.closeButton.handle)));
}

TEST_F(WelcomeScreen, CanBeClosedWithoutItsBackground) {
  ::DeleteFileW(PicturePath(L"backgroundwindow").c_str());
  RunDialog([this] {
    EXPECT_EQ(Rect(616, 77, 664, 125), ScreenRect(dialog->handle));
    ClickAt({640, 100});
  });
  ExpectStored(true, L"true");
}

} // namespace

} // namespace lumenor
