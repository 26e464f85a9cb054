#include "dock/dialogs/WelcomeScreenDialog.h"

#include <algorithm>

#include "content/Element.h"
#include "dock/Commands.h"
#include "dock/dialogs/WelcomeSettings.h"
#include "dock/flyouts/DockButton.h"
#include "dock/flyouts/DockGlowButtonPainter.h"
#include "dock/TextIds.h"
#include "resources/resource.h"
#include "system/LanguageResources.h"
#include "system/Launch.h"
#include "system/Locale.h"
#include "system/Paths.h"
#include "system/Product.h"
#include "toolkit/ColorRectangle.h"
#include "toolkit/drawing/ButtonLayout.h"
#include "toolkit/drawing/CheckBox.h"
#include "toolkit/drawing/SelectableButtonPainter.h"
#include "toolkit/drawing/SimpleButtonPainter.h"
#include "toolkit/Scale.h"

namespace lumenor {

namespace {

constexpr wchar_t welcomeStringsName[] = L"Lumenor.MainFrame.Controls.WelcomeWindow";

constexpr Color transparent = {};

// Their sizes are in design pixels.
constexpr TextStyle titleStyle{.size = 16,
                               .weight = DWRITE_FONT_WEIGHT_SEMI_BOLD,
                               .color = {0.58431375F, 0.7490196F, 0.92156863F, 1.0F},
                               .alignment = DWRITE_TEXT_ALIGNMENT_CENTER};
constexpr TextStyle headingStyle{.size = 20, .weight = DWRITE_FONT_WEIGHT_MEDIUM};
constexpr TextStyle featureStyle{.size = 14, .weight = DWRITE_FONT_WEIGHT_MEDIUM};
constexpr TextStyle tourStyle{
    .size = 14, .weight = DWRITE_FONT_WEIGHT_MEDIUM, .alignment = DWRITE_TEXT_ALIGNMENT_CENTER};
constexpr TextStyle preferencesStyle{.size = 9,
                                     .weight = DWRITE_FONT_WEIGHT_MEDIUM,
                                     .color = {0.827451F, 0.827451F, 0.827451F, 1.0F},
                                     .alignment = DWRITE_TEXT_ALIGNMENT_CENTER};

// The side with the picture and the tour, in device pixels at every density.
constexpr int leftStackWidth = 300;
constexpr int pictureWidth = 280;
constexpr int pictureHeight = 160; // at most; a higher one would push the tour off
constexpr int tourTextWidth = 220;
constexpr int tourButtonAreaSize = 60;
constexpr int tourTextHeight = 32; // centred on the tour button

// The strip with the buttons, in design pixels.
constexpr int sideMargin = 32;
constexpr int stripHeight = 116;
constexpr int closeButtonWidth = 120;
constexpr int closeButtonHeight = 40;
constexpr int checkBoxWidth = 420;
constexpr int checkBoxHeight = 28;

constexpr float buttonFontSize = 13.0F; // the same at every density, and so is the box of the check boxes
constexpr int checkBoxLabelLeft = 20;

std::wstring GetWelcomeString(const std::wstring &id) { return LoadStringById(welcomeStringsName, id); }

std::wstring FeatureText(int number, wchar_t half) {
  return GetWelcomeString(L"TextBlock.Feature" + std::to_wstring(number) + half);
}

ButtonLayout MakeTourButtonLayout() {
  return {.fontSize = static_cast<float>(ScaleY(10)), .textFlag = 1, .textStyle = 15};
}

ButtonLayout MakeDialogButtonLayout(unsigned char centred) { return {.fontSize = buttonFontSize, .textFlag = centred}; }

} // namespace

WelcomeScreenDialog::WelcomeScreenDialog(const RECT &bounds)
    : bounds(bounds), titleText(MakeText(GetWelcomeString(welcomeTitleTextId), titleStyle)),
      featuresHeading(MakeText(GetWelcomeString(featuresHeadingTextId), headingStyle)),
      tourText(MakeText(GetWelcomeString(viewTourTextId), tourStyle)),
      preferencesText(MakeText(GetWelcomeString(preferencesTextId), preferencesStyle)),
      tourButtonSpacer(std::make_shared<ColorRectangle>(RECT{}, renderTarget, transparent)),
      clickListener(MakeListener(this, &WelcomeScreenDialog::OnClick)) {
  dialogId = WelcomeDialogId;
  int number = 1;
  for (FeatureRow &row : featureRows) {
    row.headline = MakeText(FeatureText(number, L'a'), featureStyle);
    row.sentence = MakeText(FeatureText(number, L'b'), featureStyle);
    ++number;
  }
}

/// The size of `style` is in design pixels.
std::shared_ptr<TextElement> WelcomeScreenDialog::MakeText(const std::wstring &text, TextStyle style) const {
  auto element = std::make_shared<TextElement>(renderTarget);
  style.size = static_cast<float>(ScaleY(static_cast<int>(style.size)));
  element->SetUp(text, style);
  return element;
}

/// WM_CLOSE is ignored: the platform's own ways to close a window, such as Alt+F4, would skip the settings.
BOOL WelcomeScreenDialog::ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                                               DWORD mapId) {
  if (mapId != 0 || message != WM_CLOSE)
    return Window::ProcessWindowMessage(window, message, wParam, lParam, result, mapId);
  result = 0;
  return TRUE;
}

void WelcomeScreenDialog::InitializeComponent() {
  LoadPictures();
  PlaceWindow();
  ComposePanels();
  AddTitle();
  AddPicture();
  AddTour();
  AddFeatures();
  AddButtons();
}

/// Here and not at construction: a picture that can't be decoded then fails this screen only, not the bar.
void WelcomeScreenDialog::LoadPictures() {
  backgroundImage = std::make_shared<ImageElement>(L"..\\resources\\backgroundwindow.png", renderTarget);
  arrowImage = std::make_shared<ImageElement>(L"..\\resources\\arrowIcon.png", renderTarget);
  handsImage = std::make_shared<ImageElement>(L"..\\resources\\handswithIconsGraphic.png", renderTarget);
}

void WelcomeScreenDialog::PlaceWindow() {
  Top.Set(bounds.top);
  Width.Set(ScaleX(static_cast<int>(backgroundImage->DesiredWidth.Get())));
  Height.Set(ScaleY(static_cast<int>(backgroundImage->DesiredHeight.Get())));
  Left.Set((bounds.right - bounds.left) / 2 - Width.Get() / 2 + bounds.left);
}

/// A panel makes its window under its parent's, so each is attached before anything is added to it.
void WelcomeScreenDialog::ComposePanels() {
  SetChild(&rootPanel);
  rootPanel.AddChild(&contentPanel);
  contentPanel.AddChild(backgroundImage.get());
  for (StackPanel *stack : {&mainStack, &leftStack, &featureStack, &tourTextStack, &buttonStack})
    stack->Orientation.Set(lumenor::Orientation::Vertical);
  mainStack.Margin.Set({ScaleX(32), 0, 0, ScaleY(16)});
  contentPanel.AddChild(&mainStack);
}

void WelcomeScreenDialog::AddTitle() {
  titleText->DesiredHeight.Set(ScaleY(50));
  titleText->VerticalAlignment.Set(lumenor::VerticalAlignment::Center);
  titleText->Margin.Set({0, ScaleY(8), ScaleX(8), ScaleY(8)});
  mainStack.AddChild(titleText.get());
  mainStack.AddChild(&bodyPanel);
}

/// The stack is named for its place in the tree; it is at the right.
void WelcomeScreenDialog::AddPicture() {
  leftStack.DesiredWidth.Set(leftStackWidth);
  bodyPanel.AddChild(&leftStack);
  bodyPanel.SetDock(&leftStack, Dock::Right);
  handsImage->HorizontalAlignment.Set(lumenor::HorizontalAlignment::Left); // at its own width, and so undistorted
  handsImage->DesiredWidth.Set(pictureWidth);
  handsImage->KeepAspect();
  if (const long height = handsImage->DesiredHeight.Get(); height > pictureHeight) {
    handsImage->DesiredWidth.Set(::MulDiv(pictureWidth, pictureHeight, height));
    handsImage->KeepAspect();
  }
  leftStack.AddChild(handsImage.get());
}

void WelcomeScreenDialog::AddTour() {
  tourRow.DesiredWidth.Set(pictureWidth);
  tourRow.DesiredHeight.Set(tourButtonAreaSize);
  leftStack.AddChild(&tourRow);
  tourTextStack.DesiredWidth.Set(tourTextWidth);
  tourRow.AddChild(&tourTextStack);
  tourText->DesiredHeight.Set(std::max<long>(tourTextHeight, tourText->DesiredHeight.Get()));
  tourTextStack.AddChild(tourText.get());
  tourRow.AddChild(&tourButtonPanel);
  tourButton = MakeTourButton();
  tourButtonPanel.AddChild(tourButton.get());
  // The panel asks for what its children ask for, and the button alone asks for less.
  tourButtonSpacer->DesiredWidth.Set(tourButtonAreaSize);
  tourButtonSpacer->DesiredHeight.Set(tourButtonAreaSize);
  tourButtonPanel.AddChild(tourButtonSpacer.get());
}

std::shared_ptr<DockButton> WelcomeScreenDialog::MakeTourButton() const {
  Element element;
  element.ActionParams = CommandName(Command::ForYou); // what the dock would run; the click comes to this window
  element.Image = L"..\\resources\\LaunchVideo.png";
  element.ToolTip = tourText->Text.Get();
  auto button = std::make_shared<DockButton>(
      std::make_shared<DockGlowButtonPainter>(renderTarget, 0, element, MakeTourButtonLayout()), element);
  button->DesiredWidth.Set(ScaleX(16));
  button->DesiredHeight.Set(ScaleY(16));
  button->Margin.Set({0, 10, 8, 36});
  button->VerticalAlignment.Set(lumenor::VerticalAlignment::Center);
  button->Click.AddListener(clickListener.get());
  return button;
}

void WelcomeScreenDialog::AddFeatures() {
  featureStack.DesiredHeight.Set(ScaleY(200));
  bodyPanel.AddChild(&featureStack);
  featuresHeading->DesiredHeight.Set(ScaleY(40));
  featureStack.AddChild(featuresHeading.get());
  arrowImage->HorizontalAlignment.Set(lumenor::HorizontalAlignment::Center);
  arrowImage->VerticalAlignment.Set(lumenor::VerticalAlignment::Center);
  for (FeatureRow &row : featureRows)
    AddFeature(row);
}

/// All rows share one arrow, which each places at the same spot of itself. The texts share the height of the row, so
/// that no font's lines make it higher.
void WelcomeScreenDialog::AddFeature(FeatureRow &row) {
  const int height = ScaleY(35);
  row.panel.DesiredHeight.Set(height);
  row.panel.Margin.Set({.bottom = ScaleY(5)}); // what sets one feature off from the next
  featureStack.AddChild(&row.panel);
  row.panel.AddChild(arrowImage.get());
  row.panel.SetDock(arrowImage.get(), Dock::Left);
  row.texts.Orientation.Set(lumenor::Orientation::Vertical);
  row.panel.AddChild(&row.texts);
  row.headline->DesiredHeight.Set(height / 2);
  row.headline->Margin.Set({0, ScaleY(6), 0, 0});
  row.texts.AddChild(row.headline.get());
  row.sentence->DesiredHeight.Set(height - height / 2);
  row.texts.AddChild(row.sentence.get());
}

/// The strip at the lower edge. It lies over the stack above it, whose children end before it. On a
/// background smaller than the strip it keeps the close button, the only way to end the screen.
void WelcomeScreenDialog::AddButtons() {
  const int side = std::min<int>(ScaleX(sideMargin), Width.Get() / 16);
  bottomPanel.Margin.Set({side, side, std::max<int>(0, Height.Get() - ScaleY(stripHeight)), 0});
  contentPanel.AddChild(&bottomPanel);
  bottomPanel.AddChild(&buttonStack);
  AddCloseButton();
  updateCheckBox = AddCheckBox(allowToUpdateTextId);
  startupCheckBox = AddCheckBox(startWithSessionTextId);
  if (UserCountryCode() != L"US")
    updateCheckBox->Checked.Set(0);
  AddPreferences();
}

/// The button is beside the check boxes, at the middle of their height: its margins cancel its height in the stack.
void WelcomeScreenDialog::AddCloseButton() {
  closeButton = std::make_shared<Button>(std::make_shared<SimpleButtonPainter>(
      renderTarget, GetWelcomeString(welcomeCloseTextId), MakeDialogButtonLayout(1), std::wstring()));
  const int top = (2 * ScaleY(checkBoxHeight) - ScaleY(closeButtonHeight)) / 2;
  closeButton->Name.Set(GetWelcomeString(closeTextId));
  closeButton->DesiredWidth.Set(ScaleX(closeButtonWidth));
  closeButton->DesiredHeight.Set(ScaleY(closeButtonHeight));
  closeButton->HorizontalAlignment.Set(lumenor::HorizontalAlignment::Right);
  closeButton->Margin.Set({0, 0, top, -top - ScaleY(closeButtonHeight)});
  buttonStack.AddChild(closeButton.get());
  closeButton->Click.AddListener(clickListener.get());
}

/// The margin keeps the box off the close button in a window that is narrower than both.
std::shared_ptr<CheckedButton> WelcomeScreenDialog::AddCheckBox(const wchar_t *textId) {
  auto checkBox = std::make_shared<CheckBox>(std::make_shared<SelectableButtonPainter>(
      renderTarget, GetWelcomeString(textId), MakeDialogButtonLayout(0), std::wstring()));
  checkBox->Checked.Set(1);
  checkBox->DesiredWidth.Set(ScaleX(checkBoxWidth));
  checkBox->DesiredHeight.Set(ScaleY(checkBoxHeight));
  checkBox->HorizontalAlignment.Set(lumenor::HorizontalAlignment::Left);
  checkBox->Margin.Set({.right = ScaleX(closeButtonWidth)});
  buttonStack.AddChild(checkBox.get());
  checkBox->Click.AddListener(clickListener.get());
  return checkBox;
}

void WelcomeScreenDialog::AddPreferences() {
  preferencesText->HorizontalAlignment.Set(lumenor::HorizontalAlignment::Left);
  preferencesText->Margin.Set({.left = checkBoxLabelLeft, .top = ScaleY(8)});
  buttonStack.AddChild(preferencesText.get());
}

/// The check boxes have flipped by themselves already.
void WelcomeScreenDialog::OnClick(ButtonEventArgs *args) {
  if (args->sender == closeButton.get()) {
    ApplySettings();
    ::EndDialog(handle, 0);
  } else if (args->sender == tourButton.get()) {
    OpenWithShell(ExpandPath(MapProgramFiles(product::tourFile)), GetTutorialLanguage());
  }
}

void WelcomeScreenDialog::ApplySettings() const {
  StartWithSession(startupCheckBox->Checked.Get() != 0);
  AllowToUpdate(updateCheckBox->Checked.Get() != 0);
}

} // namespace lumenor
