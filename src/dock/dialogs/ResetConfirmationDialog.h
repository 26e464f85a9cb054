#pragma once
// The modal question before the dock throws the user's changes away. It decides nothing: on "Reset" it posts one
// message to the dock. Lives on the stack of the command that asks. User-interface thread.

#include <memory>

#include "system/Windows.h"
#include "toolkit/DockPanel.h"
#include "toolkit/drawing/Button.h"
#include "toolkit/drawing/ImageElement.h"
#include "toolkit/drawing/Window.h"
#include "toolkit/Event.h"
#include "toolkit/StackPanel.h"
#include "toolkit/TextElement.h"

namespace lumenor {

class BackPlate;

class ResetConfirmationDialog : public Window {
public:
  /// `bounds` is in screen coordinates; `ownerWindow` is the dock, which gets ResetDockMessage.
  ResetConfirmationDialog(const RECT &bounds, HWND ownerWindow);

  void InitializeComponent() override;

private:
  void ComposePanels();
  void AddTitle();
  void AddMessage();
  std::shared_ptr<Button> MakeButton(const wchar_t *textId) const;
  void AddButton(Button &button);
  void OnClick(ButtonEventArgs *args);

  RECT bounds;
  std::shared_ptr<BackPlate> backPlate;
  std::shared_ptr<TextElement> titleText;
  std::shared_ptr<TextElement> descriptionText;
  std::shared_ptr<ImageElement> image;
  HWND ownerWindow;
  StackPanel rows;
  DockPanel rootPanel, titleRow, messageRow, buttonRow;
  std::shared_ptr<Button> resetButton;
  std::shared_ptr<Button> cancelButton;
  ListenerPtr<ButtonEventArgs> clickListener;
};

} // namespace lumenor
