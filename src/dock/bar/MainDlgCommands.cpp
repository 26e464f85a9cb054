// What a click on the bar does, and the dialogs of the dock. Every button reports here, whatever its origin; its
// element decides.

#include "dock/bar/MainDlg.h"

#include "content/ElementAction.h"
#include "dock/bar/Search.h"
#include "dock/Commands.h"
#include "dock/dialogs/ResetConfirmationDialog.h"
#include "dock/dialogs/WelcomeScreenDialog.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "dock/Placement.h"
#include "dock/watch/FirstRun.h"
#include "system/Launch.h"
#include "toolkit/Scale.h"
#include "toolkit/TextBox.h"
#include "tracking/UsageTracker.h"

namespace lumenor {

namespace {

constexpr int welcomeTop = 77; // right below a bar at the top

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

/// Clears the mark of the first start when the welcome screen is over, in whatever way.
class FirstRunNote {
public:
  FirstRunNote() = default;
  ~FirstRunNote() { ClearFirstRun(); }
  FirstRunNote(const FirstRunNote &) = delete;
  FirstRunNote &operator=(const FirstRunNote &) = delete;
};

void ToggleFlyout(DockButton &button) {
  FlyoutWindow *const flyout = button.GetFlyout();
  if (flyout == nullptr)
    return;
  flyout->SetBounds(button.GetFlyoutRect());
  flyout->ToggleVisibility();
}

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
  usageTracker.TrackIconClick(element);
}

void CMainDlg::RunCommand(Command command) {
  switch (command) {
  case Command::ForYou:
    return ToggleForYouFlyout();
  case Command::ResetConfirmation:
    return ConfirmReset();
  case Command::Close:
    return CloseDock();
  case Command::SearchProvider:
    return ToggleSearchProviderFlyout();
  case Command::Search:
    return Search();
  case Command::Flyout:
    return;
  }
}

RECT CMainDlg::ForYouFlyoutPlace() const {
  return GetForYouFlyoutRect(GetScreenBounds(), forYouFlyout.DesiredHeight.Get());
}

RECT CMainDlg::SearchProviderFlyoutPlace() const {
  return GetSearchProviderFlyoutRect(GetScreenBounds(), searchProviderFlyout.DesiredHeight.Get());
}

/// Opening the list or closing it takes the mark of new items away.
void CMainDlg::ToggleForYouFlyout() {
  forYouFlyout.SetBounds(ForYouFlyoutPlace());
  forYouFlyout.ToggleVisibility();
  SetForYouState(false);
}

void CMainDlg::ToggleSearchProviderFlyout() {
  searchProviderFlyout.SetBounds(SearchProviderFlyoutPlace());
  searchProviderFlyout.ToggleVisibility();
}

void CMainDlg::OnTextAccept(TextBoxEventArgs *) { Search(); }

/// The field keeps its text.
void CMainDlg::Search() {
  const int length = ::GetWindowTextLengthW(textBox->GetHandle());
  if (length < 1)
    return;
  std::wstring text(static_cast<std::size_t>(length), L'\0');
  text.resize(static_cast<std::size_t>(::GetWindowTextW(textBox->GetHandle(), text.data(), length + 1)));
  SearchFor(handle, Element(selectedProvider), text);
}

void CMainDlg::ConfirmReset() {
  ResetConfirmationDialog dialog(GetResetDialogRect(dockRect, dockPositionButton->Checked.Get() != 0, Top.Get()),
                                 handle);
  const RaisedFlag awake(keepAwake);
  dialog.Visibility.Set(lumenor::Visibility::Visible);
  dialog.DoModal(::GetActiveWindow());
}

/// The first start is noted once more, whatever came of the note that was made ahead of it, and of the dialog.
void CMainDlg::OnShowWelcome() {
  const FirstRunNote note;
  WelcomeScreenDialog dialog({dockRect.left, ScaleY(welcomeTop), dockRect.right, 0});
  const RaisedFlag awake(keepAwake);
  dialog.DoModal(::GetActiveWindow());
}

/// A user who closes the dock early gets the main application all the same, in the tray.
void CMainDlg::CloseDock() {
  ::PostMessageW(handle, WM_CLOSE, 0, 0);
  if (!mainApplicationStarted)
    StartMainApplication(L"view=SYSTRAY");
}

} // namespace lumenor
