// What a click on the bar does. Every button reports here, whatever its origin; its element decides.

#include "dock/MainDlg.h"

#include "content/ElementAction.h"
#include "dock/Commands.h"
#include "dock/FlyoutWindow.h"
#include "dock/Placement.h"
#include "dock/ResetConfirmationDialog.h"
#include "system/Launch.h"
#include "system/WindowException.h"

namespace lumenor {

namespace {

/// Raises a flag for as long as it lives.
class RaisedFlag {
public:
  explicit RaisedFlag(bool &flag) : flag(flag) { flag = true; }
  ~RaisedFlag() { flag = false; }
  RaisedFlag(const RaisedFlag &) = delete;
  RaisedFlag &operator=(const RaisedFlag &) = delete;

private:
  bool &flag;
};

} // namespace

void CMainDlg::OnButtonClick(ButtonEventArgs *args) {
  auto *const button = dynamic_cast<DockButton *>(args->sender);
  if (button == nullptr)
    return;
  const Element element = button->GetElement(); // a copy: what it starts may take the button away
  if (element.ActionType == L"xml")
    return ToggleFlyout(*button);
  if (const auto command = FindCommand(SplitCommandLine(element.ActionParams).program))
    return RunCommand(*command);
  RunElementAction(element);
}

void CMainDlg::ToggleFlyout(DockButton &button) {
  FlyoutWindow *const flyout = button.GetFlyout();
  if (flyout == nullptr)
    return;
  flyout->SetBounds(button.GetFlyoutRect());
  flyout->ToggleVisibility();
}

void CMainDlg::RunCommand(Command command) {
  switch (command) {
  case Command::ForYou:
    return SetForYouState(false);
  case Command::ResetConfirmation:
    return ConfirmReset();
  case Command::Close:
    return CloseDock();
  case Command::Flyout:
  case Command::SearchProvider:
  case Command::Search:
    return;
  }
}

void CMainDlg::ConfirmReset() {
  ResetConfirmationDialog dialog(GetResetDialogRect(dockRect, dockPositionButton->Checked.Get() != 0, Top.Get()),
                                 handle);
  const RaisedFlag awake(keepAwake);
  dialog.Visibility.Set(lumenor::Visibility::Visible);
  dialog.DoModal(::GetActiveWindow());
  RethrowWindowException();
}

/// A user who closes the dock early gets the main application all the same, in the tray.
void CMainDlg::CloseDock() {
  ::PostMessageW(handle, WM_CLOSE, 0, 0);
  if (!mainApplicationStarted)
    StartMainApplication(L"view=SYSTRAY");
}

} // namespace lumenor
