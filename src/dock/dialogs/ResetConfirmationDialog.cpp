#include "dock/dialogs/ResetConfirmationDialog.h"

#include "dock/DockMessages.h"
#include "dock/TextIds.h"
#include "resources/resource.h"
#include "system/LanguageResources.h"
#include "toolkit/BackPlate.h"
#include "toolkit/drawing/ButtonLayout.h"
#include "toolkit/drawing/SimpleButtonPainter.h"
#include "toolkit/Scale.h"

namespace lumenor {

namespace {

/// The height of the message's row: what the rows of the title and of the buttons leave of the dialog's 172.
constexpr int messageHeight = 50;

/// The margin of the title and of each button.
Margin RowMargin() { return {0, ScaleY(8), ScaleX(8), ScaleY(8)}; }

ButtonLayout DialogButtonLayout() {
  return {.fontSize = static_cast<float>(ScaleY(13)), .textFlag = 1, .textStyle = 30};
}

/// Makes a picture that is higher than its row as high as that; a bigger one would push the buttons off the dialog.
void LimitHeight(ImageElement &image, long height) {
  const long desired = image.DesiredHeight.Get();
  if (desired <= height)
    return;
  image.DesiredWidth.Set(::MulDiv(image.DesiredWidth.Get(), height, desired));
  image.KeepAspect();
}

} // namespace

ResetConfirmationDialog::ResetConfirmationDialog(const RECT &bounds, HWND ownerWindow)
    : bounds(bounds), backPlate(std::make_shared<BackPlate>(renderTarget, 0.7F, 0.36F)),
      titleText(std::make_shared<TextElement>(renderTarget)),
      descriptionText(std::make_shared<TextElement>(renderTarget)), ownerWindow(ownerWindow),
      clickListener(MakeListener(this, &ResetConfirmationDialog::OnClick)) {
  dialogId = ResetConfirmationDialogId;
  titleText->SetUp(LoadDockString(resetTitleTextId), {.size = static_cast<float>(ScaleX(16)),
                                                      .weight = DWRITE_FONT_WEIGHT_SEMI_BOLD,
                                                      .alignment = DWRITE_TEXT_ALIGNMENT_TRAILING});
  descriptionText->SetUp(LoadDockString(resetDescriptionTextId), {.size = static_cast<float>(ScaleY(12)),
                                                                  .weight = DWRITE_FONT_WEIGHT_MEDIUM,
                                                                  .wrapping = DWRITE_WORD_WRAPPING_WRAP});
}

void ResetConfirmationDialog::InitializeComponent() {
  SetBounds(&bounds);
  ComposePanels();
  AddTitle();
  AddMessage();
  // The row fills from its right end, so the reset button is left of the other.
  cancelButton = MakeButton(resetCancelTextId);
  AddButton(*cancelButton);
  resetButton = MakeButton(resetConfirmTextId);
  AddButton(*resetButton);
}

void ResetConfirmationDialog::ComposePanels() {
  // A panel makes its window under its parent's, so each is attached before anything is added to it.
  SetChild(&rootPanel);
  rootPanel.AddChild(backPlate.get());
  rows.Orientation.Set(lumenor::Orientation::Vertical);
  rootPanel.AddChild(&rows);
  for (DockPanel *row : {&titleRow, &messageRow, &buttonRow})
    rows.AddChild(row);
}

void ResetConfirmationDialog::AddTitle() {
  titleText->DesiredHeight.Set(ScaleY(50));
  titleText->Margin.Set(RowMargin());
  titleRow.AddChild(titleText.get());
}

void ResetConfirmationDialog::AddMessage() {
  image = std::make_shared<ImageElement>(L"..\\resources\\ResetImage.png", renderTarget);
  image->Margin.Set({ScaleX(8), ScaleY(8), 0, 0});
  image->VerticalAlignment.Set(lumenor::VerticalAlignment::Center);
  LimitHeight(*image, ScaleY(messageHeight));
  messageRow.AddChild(image.get());
  messageRow.SetDock(image.get(), Dock::Left);
  descriptionText->DesiredHeight.Set(ScaleY(messageHeight)); // it wraps, and had measured itself as one line
  descriptionText->Margin.Set({0, ScaleX(8), 0, 0});
  messageRow.AddChild(descriptionText.get());
}

std::shared_ptr<Button> ResetConfirmationDialog::MakeButton(const wchar_t *textId) const {
  return std::make_shared<Button>(std::make_shared<SimpleButtonPainter>(renderTarget, LoadDockString(textId),
                                                                        DialogButtonLayout(), std::wstring()));
}

void ResetConfirmationDialog::AddButton(Button &button) {
  buttonRow.AddChild(&button);
  buttonRow.SetDock(&button, Dock::Right);
  ::SetWindowLongW(button.GetHandle(), GWL_ID, ResetDialogButtonId);
  button.DesiredWidth.Set(ScaleX(80));
  button.DesiredHeight.Set(ScaleY(40));
  button.Margin.Set(RowMargin());
  button.Click.AddListener(clickListener.get());
  buttonRow.Layout();
}

void ResetConfirmationDialog::OnClick(ButtonEventArgs *args) {
  if (args->sender == resetButton.get())
    ::PostMessageW(ownerWindow, ResetDockMessage, 0, 0);
  ::EndDialog(handle, 0);
}

} // namespace lumenor
