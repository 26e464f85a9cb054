#include "dock/bar/MainDlg.h"

#include "content/DocumentNames.h"
#include "content/Documents.h"
#include "content/ElementAction.h"
#include "dock/bar/Search.h"
#include "dock/Commands.h"
#include "dock/dialogs/ResetConfirmationDialog.h"
#include "dock/dialogs/WelcomeScreenDialog.h"
#include "dock/DockMessages.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "dock/Placement.h"
#include "dock/TextIds.h"
#include "dock/watch/FirstRun.h"
#include "resources/resource.h"
#include "system/Desktop.h"
#include "system/Instance.h"
#include "system/LanguageResources.h"
#include "system/Launch.h"
#include "system/Log.h"
#include "system/ScopeExit.h"
#include "toolkit/EditReading.h"
#include "toolkit/Scale.h"
#include "toolkit/TextBox.h"
#include "tracking/UsageTracker.h"

namespace lumenor {

namespace {

constexpr int welcomeTop = 77; // right below a bar at the top

void SetWindowIcon(HWND window) {
  const HICON icon = ::LoadIconW(instanceHandle, MAKEINTRESOURCEW(MainIconId));
  ::SendMessageW(window, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
}

void StartTimers(HWND window) {
  ::SetTimer(window, FadeTimer, fadeStepMs, nullptr);
  ::SetTimer(window, StartMainApplicationTimer, startMainApplicationMs, nullptr);
  ::SetTimer(window, TrackingTimer, trackingFlushMs, nullptr);
}

/// Posted, so that the bar is shown before the welcome screen.
void AskForWelcome(HWND window) {
  if (CheckFirstRun())
    ::PostMessageW(window, ShowWelcomeMessage, 0, 0);
}

/// A payload that is due by time waits for the next run; one that is too big is handed over now.
void WriteEndOfUse() {
  usageTracker.TrackDockClose();
  usageTracker.WritePayload(false);
  usageTracker.CheckPayloadSize();
}

void ToggleFlyout(DockButton &button) {
  FlyoutWindow *const flyout = button.GetFlyout();
  if (flyout == nullptr)
    return;
  flyout->SetBounds(button.GetFlyoutRect());
  flyout->ToggleVisibility();
}

} // namespace

CMainDlg::CMainDlg()
    : bar(renderTarget), dockRect(lumenor::GetWindowRect()),
      clickListener(MakeListener(this, &CMainDlg::OnButtonClick)),
      acceptListener(MakeListener<TextBoxEventArgs>(this, &CMainDlg::Search)),
      dockPositionListener(MakeListener(this, &CMainDlg::OnDockPositionChanged)), fade(*this, bar),
      maker(renderTarget, clickListener.get(), fade.FlyoutListener()), userRow(*this, bar, maker),
      rowDrag(*this, bar, userRow), lists(*this, bar, maker) {
  dialogId = MainDialogId;
  usageTracker.TrackDockOpen();
  endSessionHandler = static_cast<EndSessionHandler>(&CMainDlg::EndUse);
}

CMainDlg::~CMainDlg() {
  // A cycle can fail with the window still up, and the window must not outlive its object.
  if (::IsWindow(handle))
    ::DestroyWindow(handle);
  registryThread.End();
}

// The composition.

void CMainDlg::InitializeComponent() {
  LogInfo("MainDlg InitializeComponent");
  SetWindowIcon(handle);
  RunOnceShown([this] { lists.CreateFlyouts(fade.FlyoutListener()); });
  SetChild(bar.rootPanel.get());
  bar.Begin();
  bar.AddMainButtons(maker);
  bar.AddUserButtonPanel();
  userRow.MakeButtons();
  bar.AddCanvas(Height.Get());
  bar.AddForYouButton(maker);
  bar.AddSearchField(renderTarget, acceptListener.get());
  lists.SelectFirstProvider();
  bar.AddSearchButtons(maker);
  bar.AddSystemButtons(maker);
  bar.dockPositionButton->Checked.changed.AddListener(dockPositionListener.get());
  bar.End();
  userRow.AssignControlIds();
  bar.AssignControlIds(userRow.GetButtons().size());
  rowDrag.AcceptDrops();
  StartTimers(handle);
  AskForWelcome(handle);
  registryThread.Start(handle);
  PlaceBar();
}

/// The bar comes up at the top; a user who wants it at the bottom gets it moved there before it shows.
void CMainDlg::PlaceBar() {
  const RECT place = lumenor::GetWindowRect();
  SetBounds(&place);
  if (GetDockPosition() != bottomPosition)
    return;
  OnDockAtBottom();
  bar.dockPositionButton->Checked.Set(0);
}

void CMainDlg::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  PaintChild(target, GetChild(), rect);
  PaintChild(target, bar.dragIndicator.get(), rect);
}

// The message map. What isn't handled here goes on to the root window.

BOOL CMainDlg::OnBarMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result) {
  switch (message) {
  case WM_NOTIFY:
    return Answer(L"OnNotify", [&] { return OnNotify(reinterpret_cast<const NMHDR *>(lParam), result); });
  case WM_DISPLAYCHANGE:
    return Answer(L"OnDisplayChange", result, 0, [&] { OnDisplayChange(); });
  case DragAddMessage:
    return Answer(L"OnDragAdd", result, 1, [&] { OnDragAdd(wParam, UnpackedPoint(static_cast<UINT_PTR>(lParam))); });
  case RefreshForYouMessage:
    return Answer(L"OnRefresh", result, 1, [&] { lists.RefreshForYou(); });
  case RefreshSearchProviderMessage:
    return Answer(L"OnRefresh", result, 1, [&] { lists.RefreshSearchProviders(); });
  case SetSearchProviderMessage:
    return Answer(L"OnSetSearchProvider", result, 1, [&] { OnSetSearchProvider(wParam); });
  case RemoveButtonMessage:
    return Answer(L"OnRemoveButton", result, 0, [&] { userRow.TakeOut(reinterpret_cast<HWND>(wParam)); });
  case ResetDockMessage:
    return Answer(L"OnResetDock", result, 0, [&] { OnResetDock(); });
  case ShowWelcomeMessage:
    return Answer(L"OnShowWelcome", result, 0, [&] { OnShowWelcome(); });
  case WM_TIMER:
    return Answer(L"OnTimer", result, 0, [&] { OnTimer(wParam); });
  case DrawFailedMessage:
    return Answer(L"OnDrawFailed", result, 0, [&] { OnDrawFailed(static_cast<HRESULT>(wParam)); });
  case DockAtTopMessage:
    return Answer(L"OnDockAtTop", result, 0, [&] { OnDockAtTop(); });
  case DockAtBottomMessage:
    return Answer(L"OnDockAtBottom", result, 0, [&] { OnDockAtBottom(); });
  default:
    return FALSE;
  }
}

/// Most need a composed bar, and the platform sends messages before that. The dock itself sends the message of the
/// search provider during the composition; that one needs the field only.
bool CMainDlg::AnswersTo(UINT message) const {
  return message == SetSearchProviderMessage ? bar.textBox != nullptr : bar.IsComposed();
}

BOOL CMainDlg::ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                                    DWORD mapId) {
  if (mapId == 0 && AnswersTo(message) && OnBarMessage(message, wParam, lParam, result))
    return TRUE;
  if (mapId == 0 && message == dockActivateMessage && ::IsWindow(handle)) {
    BringToForeground(handle);
    result = 0;
    return TRUE;
  }
  return Window::ProcessWindowMessage(window, message, wParam, lParam, result, mapId);
}

// The handlers.

BOOL CMainDlg::OnNotify(const NMHDR *header, LRESULT &result) {
  result = 0;
  return header == nullptr || rowDrag.OnNotify(*header);
}

void CMainDlg::OnDragAdd(WPARAM pathAddress, POINT screenPoint) {
  const auto *const path = static_cast<const wchar_t *>(ReceiveAddress(DragAddMessage, pathAddress));
  if (path != nullptr && *path != L'\0')
    rowDrag.OnDragAdd(path, screenPoint);
}

void CMainDlg::OnSetSearchProvider(WPARAM address) {
  if (const auto *const provider = static_cast<const Element *>(ReceiveAddress(SetSearchProviderMessage, address)))
    lists.SetSelectedProvider(*provider);
}

void CMainDlg::OnDisplayChange() {
  const RECT place = lumenor::GetWindowRect();
  Left.Set(place.left);
  Top.Set(bar.dockPositionButton->Checked.Get() != 0 ? place.top : GetWorkArea().bottom - Height.Get());
  Width.Set(place.right - place.left);
  Height.Set(place.bottom - place.top);
  bar.rootPanel->Width.Set(Width.Get());
  dockRect = place;
  MoveToBounds();
  Invalidate();
}

/// The window is destroyed without its close handler, so that the user's buttons aren't saved: the user has asked to
/// discard them.
void CMainDlg::OnResetDock() {
  ::PostQuitMessage(RestartQuitCode);
  ::DestroyWindow(handle);
  for (const Element &element : LoadDocument(mainDocumentName, true))
    if (element.ActionType == flyoutAction)
      LoadDocument(element.ActionParams, true);
  RebuildDocument(userDocumentName);
}

/// A bar whose render target is lost can never be drawn again. A new cycle makes new targets; the user's buttons are
/// saved first.
void CMainDlg::OnDrawFailed(HRESULT result) {
  LogError("MainDlg: drawing failed, error %x", static_cast<unsigned>(result));
  if (result != static_cast<HRESULT>(D2DERR_RECREATE_TARGET))
    return;
  userRow.Save();
  ForgetFactory();
  ::PostQuitMessage(RestartQuitCode);
  ::DestroyWindow(handle);
}

void CMainDlg::OnTimer(WPARAM timer) {
  switch (timer) {
  case FadeTimer:
    rowDrag.HideForgottenIndicator();
    return fade.Step();
  case StartMainApplicationTimer:
    StartMainApplication(L"mode=windowless");
    ::KillTimer(handle, StartMainApplicationTimer);
    mainApplicationStarted = true;
    return;
  case TrackingTimer:
    return usageTracker.Flush();
  default:
    return;
  }
}

void CMainDlg::OnDockAtTop() {
  Top.Set(lumenor::GetWindowRect().top);
  bar.dockPositionButton->Name.Set(LoadDockString(dockAtTopTextId));
}

void CMainDlg::OnDockAtBottom() {
  Top.Set(GetWorkArea().bottom - Height.Get());
  bar.dockPositionButton->Name.Set(LoadDockString(dockAtBottomTextId));
}

void CMainDlg::OnDockPositionChanged(PropertyChangeEventArgs<int> *args) {
  SetDockPosition(args->newValue != 0 ? topPosition : bottomPosition);
}

/// The mark of the first start is cleared again, whether clearing it ahead of the dialog worked and whether the dialog
/// failed.
void CMainDlg::OnShowWelcome() {
  const ScopeExit note(&ClearFirstRun);
  WelcomeScreenDialog dialog({dockRect.left, ScaleY(welcomeTop), dockRect.right, 0});
  const auto awake = fade.KeepAwake();
  dialog.DoModal(::GetActiveWindow());
}

// Clicks. Every button of the bar reports here, and its element decides.

void CMainDlg::OnButtonClick(ButtonEventArgs *args) {
  auto *const button = dynamic_cast<DockButton *>(args->sender);
  if (button == nullptr)
    return;
  const Element element = button->GetElement(); // a copy: what it starts may take the button away
  if (element.ActionType == flyoutAction)
    return ToggleFlyout(*button);
  const CommandLine split = SplitCommandLine(element.ActionParams);
  if (const auto command = FindCommand(split.program))
    return RunCommand(*command);
  RunElementAction(element, split);
  usageTracker.TrackIconClick(element);
}

void CMainDlg::RunCommand(Command command) {
  switch (command) {
  case Command::ForYou:
    return lists.ToggleForYouFlyout();
  case Command::ResetConfirmation:
    return ConfirmReset();
  case Command::Close:
    return CloseDock();
  case Command::SearchProvider:
    return lists.ToggleSearchProviderFlyout();
  case Command::Search:
    return Search();
  case Command::Flyout:
    return;
  }
}

/// The text stays in the field.
void CMainDlg::Search() {
  const std::wstring text = ReadWindowText(bar.textBox->GetHandle());
  if (!text.empty())
    SearchFor(handle, Element(lists.GetSelectedProvider()), text);
}

void CMainDlg::ConfirmReset() {
  ResetConfirmationDialog dialog(GetResetDialogRect(dockRect, bar.dockPositionButton->Checked.Get() != 0, Top.Get()),
                                 handle);
  const auto awake = fade.KeepAwake();
  dialog.Visibility.Set(lumenor::Visibility::Visible);
  dialog.DoModal(::GetActiveWindow());
}

/// A user who closes the dock early gets the main application all the same, in the tray.
void CMainDlg::CloseDock() {
  ::PostMessageW(handle, WM_CLOSE, 0, 0);
  if (!mainApplicationStarted)
    StartMainApplication(L"view=SYSTRAY");
}

// The end of the window.

void CMainDlg::OnDestroy() {
  rowDrag.RefuseDrops();
  userRow.DestroyButtonWindows();
  bar.DestroyButtonWindows();
}

void CMainDlg::OnClose() {
  EndUse();
  ::PostQuitMessage(EndProcessQuitCode);
}

/// A payload that can't be written fails the handler like any other failure, but the user's buttons are saved first.
void CMainDlg::EndUse() {
  try {
    WriteEndOfUse();
  } catch (...) {
    userRow.Save();
    throw;
  }
  userRow.Save();
}

} // namespace lumenor
