#include "dock/bar/MainDlg.h"

#include "content/DocumentNames.h"
#include "content/Documents.h"
#include "dock/bar/BarButtons.h"
#include "dock/Commands.h"
#include "dock/dragdrop/DragState.h"
#include "dock/dragdrop/DropTarget.h"
#include "dock/Placement.h"
#include "dock/watch/RegistryListener.h"
#include "resources/resource.h"
#include "system/Desktop.h"
#include "system/LanguageResources.h"
#include "system/Log.h"
#include "system/Paths.h"
#include "toolkit/Geometry.h"
#include "toolkit/TextBox.h"
#include "tracking/UsageTracker.h"

namespace lumenor {

namespace {

/// The screen point that a message of a drag carries; screens to the left and above have negative ones.
POINT UnpackedPoint(UINT_PTR packed) {
  return {static_cast<short>(LOWORD(packed)), static_cast<short>(HIWORD(packed))};
}

POINT ClientPoint(HWND window, UINT_PTR packed) {
  POINT point = UnpackedPoint(packed);
  ::ScreenToClient(window, &point);
  return point;
}

void DestroyButtonWindow(const std::shared_ptr<DockButton> &button) {
  if (button && ::IsWindow(button->GetHandle()))
    ::DestroyWindow(button->GetHandle());
}

/// A payload that is due by time waits for the next run; only one that is too big is handed over now.
void WriteEndOfUse() {
  usageTracker.TrackDockClose();
  usageTracker.WritePayload(false);
  usageTracker.CheckPayloadSize();
}

} // namespace

// The flyouts aren't there yet to be asked for the height of their rows.
CMainDlg::CMainDlg()
    : BarElements(renderTarget), dockRect(lumenor::GetWindowRect()), userElements(savedButtons.Load()),
      forYouFlyout(GetForYouFlyoutRect(GetScreenBounds(), 0), LoadForYouTitle(), forYouProvider, RefreshForYouMessage),
      forYouFileTime(LastWriteTime(DocumentPath(forYouListName))),
      searchProviderFlyout(GetSearchProviderFlyoutRect(GetScreenBounds(), 0),
                           LoadDockString(L"Element[@ID='SearchBox.SelectProviderToolTip']/Head"), searchProvider),
      clickListener(MakeListener(this, &CMainDlg::OnButtonClick)),
      dragBeginListener(MakeListener(this, &CMainDlg::OnButtonDragBegin)),
      acceptListener(MakeListener(this, &CMainDlg::OnTextAccept)),
      dockPositionListener(MakeListener(this, &CMainDlg::ForwardDockPosition)),
      flyoutVisibilityListener(MakeListener(this, &CMainDlg::OnFlyoutVisibilityChanged)) {
  ForgetDrag();
  dialogId = MainDialogId;
  usageTracker.TrackDockOpen();
  endSessionHandler = static_cast<EndSessionHandler>(&CMainDlg::OnEndSession);
}

CMainDlg::~CMainDlg() {
  // A cycle can fail with the window still up, which mustn't outlive its object.
  if (::IsWindow(handle))
    ::DestroyWindow(handle);
  StopRegistryThread();
}

/// The thread sleeps in a wait that nothing else ends: its event belongs to the registry's notification and has a name
/// that the next cycle's thread shares, so signalling it can't mean an end.
void CMainDlg::StopRegistryThread() {
  if (registryThread)
    EndRegistryListener(registryThread.Get(), registryThreadSleeping.Get());
}

// The message map: what a row doesn't handle goes on to the root window.

/// For handlers that need nothing of their message.
template <void (CMainDlg::*handler)()> BOOL CMainDlg::Handle(WPARAM, LPARAM, LRESULT &result) {
  (this->*handler)();
  result = 0;
  return TRUE;
}

/// For handlers that need the first word of their message alone.
template <typename Word, void (CMainDlg::*handler)(Word)>
BOOL CMainDlg::HandleWord(WPARAM wParam, LPARAM, LRESULT &result) {
  (this->*handler)(static_cast<Word>(wParam));
  result = 0;
  return TRUE;
}

template <UINT message> BOOL CMainDlg::HandleRefresh(WPARAM, LPARAM, LRESULT &result) {
  OnRefresh(message);
  result = 1;
  return TRUE;
}

const MessageRow<CMainDlg> CMainDlg::messageRows[] = {
    {WM_NOTIFY, L"OnNotify", &CMainDlg::HandleNotify},
    {WM_DISPLAYCHANGE, L"OnDisplayChange", &CMainDlg::Handle<&CMainDlg::OnDisplayChange>},
    {DragAddMessage, L"OnDragAdd", &CMainDlg::HandleDragAdd},
    {RefreshForYouMessage, L"OnRefresh", &CMainDlg::HandleRefresh<RefreshForYouMessage>},
    {RefreshSearchProviderMessage, L"OnRefresh", &CMainDlg::HandleRefresh<RefreshSearchProviderMessage>},
    {SetSearchProviderMessage, L"OnSetSearchProvider", &CMainDlg::HandleSetSearchProvider},
    {RemoveButtonMessage, L"OnRemoveButton", &CMainDlg::HandleRemoveButton},
    {ResetDockMessage, L"OnResetDock", &CMainDlg::Handle<&CMainDlg::OnResetDock>},
    {ShowWelcomeMessage, L"OnShowWelcome", &CMainDlg::Handle<&CMainDlg::OnShowWelcome>},
    {WM_TIMER, L"OnTimer", &CMainDlg::HandleWord<UINT_PTR, &CMainDlg::OnTimer>},
    {DrawFailedMessage, L"OnDrawFailed", &CMainDlg::HandleWord<HRESULT, &CMainDlg::OnDrawFailed>},
    {DockAtTopMessage, L"OnDockAtTop", &CMainDlg::Handle<&CMainDlg::OnDockAtTop>},
    {DockAtBottomMessage, L"OnDockAtBottom", &CMainDlg::Handle<&CMainDlg::OnDockAtBottom>},
};

/// The rows speak of a bar that stands; what the platform sends while it is being composed isn't for them. The search
/// provider is the dock's own message out of the composition, and needs no more than the field.
bool CMainDlg::AnswersTo(UINT message) const {
  return message == SetSearchProviderMessage ? textBox != nullptr : dockPositionButton != nullptr;
}

BOOL CMainDlg::ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                                    DWORD mapId) {
  if (mapId == 0 && AnswersTo(message) && RunHandler(messageRows, message, wParam, lParam, result))
    return TRUE;
  if (mapId == 0 && message == dockActivateMessage && ::IsWindow(handle)) {
    BringToForeground(handle);
    result = 0;
    return TRUE;
  }
  return Window::ProcessWindowMessage(window, message, wParam, lParam, result, mapId);
}

BOOL CMainDlg::HandleNotify(WPARAM, LPARAM lParam, LRESULT &result) {
  result = 0;
  return lParam == 0 || OnNotify(*reinterpret_cast<const NMHDR *>(lParam));
}

BOOL CMainDlg::HandleDragAdd(WPARAM wParam, LPARAM lParam, LRESULT &result) {
  const auto *const path = reinterpret_cast<const wchar_t *>(wParam);
  if (path != nullptr && *path != L'\0')
    OnDragAdd(path, UnpackedPoint(static_cast<UINT_PTR>(lParam)));
  result = 1;
  return TRUE;
}

BOOL CMainDlg::HandleSetSearchProvider(WPARAM wParam, LPARAM, LRESULT &result) {
  if (wParam != 0)
    OnSetSearchProvider(*reinterpret_cast<const Element *>(wParam));
  result = 1;
  return TRUE;
}

BOOL CMainDlg::HandleRemoveButton(WPARAM wParam, LPARAM, LRESULT &result) {
  OnRemoveButton(reinterpret_cast<HWND>(wParam));
  result = 0;
  return TRUE;
}

// The handlers.

/// True when the notification is the dock's own. Those of a drag come from the drop target.
bool CMainDlg::OnNotify(const NMHDR &header) {
  switch (header.code) {
  case NoNotification:
    return true;
  case DragEnterNotification:
  case DragOverNotification:
    OnDragOver(ClientPoint(handle, header.idFrom));
    return true;
  case DragLeaveNotification:
    OnDragLeave(header.idFrom);
    return true;
  case DropNotification:
    OnButtonDrop(ClientPoint(handle, header.idFrom));
    return true;
  default:
    return false;
  }
}

void CMainDlg::OnDisplayChange() {
  const RECT place = lumenor::GetWindowRect();
  Left.Set(place.left);
  Top.Set(dockPositionButton->Checked.Get() != 0 ? place.top : GetWorkArea().bottom - Height.Get());
  Width.Set(place.right - place.left);
  Height.Set(place.bottom - place.top);
  rootPanel->Width.Set(Width.Get());
  dockRect = place;
  MoveToBounds();
  Invalidate();
}

void CMainDlg::OnSetSearchProvider(const Element &provider) {
  selectedProvider = provider;
  textBox->WatermarkText.Set(provider.Head);
}

/// The window goes before the documents are rebuilt and without the close handler, so that the user's buttons aren't
/// saved: to throw them away is what was asked for.
void CMainDlg::OnResetDock() {
  ::PostQuitMessage(RestartQuitCode);
  ::DestroyWindow(handle);
  for (const Element &element : LoadDocument(mainDocumentName, true))
    if (element.ActionType == L"xml")
      LoadDocument(element.ActionParams, true);
  LoadDocument(userDocumentName, true);
}

/// On a target that is lost for good the bar would never be drawn again. A new cycle has new ones; what the user made
/// isn't to be lost with the old one.
void CMainDlg::OnDrawFailed(HRESULT result) {
  LogError("MainDlg: drawing failed, error %x", static_cast<unsigned>(result));
  if (result != static_cast<HRESULT>(D2DERR_RECREATE_TARGET))
    return;
  savedButtons.Save(userElements);
  ::PostQuitMessage(RestartQuitCode);
  ::DestroyWindow(handle);
}

RECT CMainDlg::GetScreenBounds() const {
  return {Left.Get(), Top.Get(), Left.Get() + Width.Get(), Top.Get() + Height.Get()};
}

void CMainDlg::OnTimer(UINT_PTR timer) {
  switch (timer) {
  case FadeTimer:
    HideForgottenIndicator();
    return StepFade();
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
  dockPositionButton->Name.Set(LoadDockString(L"Element[@ID='Button.Tooltip.DockAtTop']/Head"));
}

void CMainDlg::OnDockAtBottom() {
  Top.Set(GetWorkArea().bottom - Height.Get());
  dockPositionButton->Name.Set(LoadDockString(L"Element[@ID='Button.Tooltip.DockAtBottom']/Head"));
}

void CMainDlg::OnDockPositionChanged(PropertyChangeEventArgs<int> *args) {
  SetDockPosition(args->newValue != 0 ? L"Top" : L"Bottom");
}

void CMainDlg::ForwardDockPosition(PropertyChangeEventArgs<int> *args) { OnDockPositionChanged(args); }

void CMainDlg::OnFlyoutVisibilityChanged(PropertyChangeEventArgs<lumenor::Visibility> *args) {
  keepAwake = args->newValue == lumenor::Visibility::Visible;
}

// The end of the window.

void CMainDlg::OnDestroy() {
  ::RevokeDragDrop(handle);
  for (const auto &button : userButtons)
    DestroyButtonWindow(button);
  for (const auto &button : mainButtons)
    DestroyButtonWindow(button);
  for (const auto &button : {forYouButton, searchProviderButton, searchButton, closeButton, resetButton})
    DestroyButtonWindow(button);
}

void CMainDlg::OnClose() {
  EndUse();
  ::PostQuitMessage(EndProcessQuitCode);
}

void CMainDlg::OnEndSession() { EndUse(); }

/// A payload that can't be written fails the handler like any other failure, but the user's buttons aren't to go with
/// it.
void CMainDlg::EndUse() {
  try {
    WriteEndOfUse();
  } catch (...) {
    savedButtons.Save(userElements);
    throw;
  }
  savedButtons.Save(userElements);
}

} // namespace lumenor
