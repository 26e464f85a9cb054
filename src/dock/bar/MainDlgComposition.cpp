// How the bar is composed. A panel is given to its parent before it gets children of its own, since a child's window is
// made under the window of its parent; the layout waits until everything stands.

#include "dock/bar/MainDlg.h"

#include "content/DocumentNames.h"
#include "content/Documents.h"
#include "dock/bar/BarButtons.h"
#include "dock/Commands.h"
#include "dock/dragdrop/DropTarget.h"
#include "dock/flyouts/DockGlowButtonPainter.h"
#include "dock/flyouts/PainterPicture.h"
#include "dock/Placement.h"
#include "dock/watch/FirstRun.h"
#include "dock/watch/RegistryListener.h"
#include "resources/resource.h"
#include "system/HResultError.h"
#include "system/Instance.h"
#include "system/LanguageResources.h"
#include "system/Log.h"
#include "toolkit/drawing/CommandNotFoundException.h"
#include "toolkit/drawing/GlowButtonPainter.h"
#include "toolkit/drawing/SelectableDelegateButtonPainter.h"
#include "toolkit/Scale.h"
#include "toolkit/TextBox.h"

namespace lumenor {

namespace {

constexpr int barButtonSize = 77;
constexpr int textBoxWindowId = 111; // until the bar numbers its controls
constexpr int maxSearchLength = 150; // characters
constexpr char logSubject[] = "MainDlg";

/// A rectangle on the canvas, from design pixels.
RECT CanvasRect(int left, int top, int width, int height) {
  const LONG x = ScaleX(left);
  const LONG y = ScaleY(top);
  return {x, y, x + ScaleX(width), y + ScaleY(height)};
}

/// The search button stands out of its row by 3 to each side; each number is rounded for itself.
RECT SearchButtonRect() {
  const LONG x = ScaleX(116);
  const LONG y = ScaleY(37) - ScaleY(3);
  return {x, y, x + ScaleX(13) + ScaleX(6), y + ScaleY(14) + ScaleY(6)};
}

/// Where the text of the search field lies on the canvas; each number is rounded for itself.
RECT TextRect() {
  return {ScaleX(16) + ScaleX(4), ScaleY(35) + ScaleY(2), ScaleX(16) + ScaleX(120) - ScaleX(32),
          ScaleY(35) + ScaleY(16) - ScaleY(2)};
}

void SetControlId(Button &button, LONG id) { ::SetWindowLongW(button.GetHandle(), GWL_ID, id); }

void SetWindowIcon(HWND window) {
  const HICON icon = ::LoadIconW(instanceHandle, MAKEINTRESOURCEW(MainIconId));
  ::SendMessageW(window, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
}

void StartTimers(HWND window) {
  ::SetTimer(window, FadeTimer, fadeStepMs, nullptr);
  ::SetTimer(window, StartMainApplicationTimer, startMainApplicationMs, nullptr);
  ::SetTimer(window, TrackingTimer, trackingFlushMs, nullptr);
}

/// Posted, so that the bar stands before the user is greeted.
void AskForWelcome(HWND window) {
  if (CheckFirstRun())
    ::PostMessageW(window, ShowWelcomeMessage, 0, 0);
}

} // namespace

void CMainDlg::InitializeComponent() {
  LogInfo("MainDlg InitializeComponent");
  SetWindowIcon(handle);
  CreateFlyouts();
  BeginBar();
  AddMainButtons();
  AddSplitter(*leftSplitter, lumenor::Dock::Left);
  AddUserButtons();
  AddCanvas();
  AddForYouButton();
  AddSearchField();
  SelectFirstSearchProvider();
  AddSearchButtons();
  AddSystemButtons();
  EndBar();
  AssignControlIds();
  AcceptDrops();
  StartTimers(handle);
  AskForWelcome(handle);
  StartRegistryThread();
  PlaceBar();
}

void CMainDlg::CreateFlyouts() {
  for (DataProviderFlyout *flyout : {&forYouFlyout, static_cast<DataProviderFlyout *>(&searchProviderFlyout)}) {
    flyout->Create(handle);
    flyout->Visible.AddListener(flyoutVisibilityListener.get());
  }
}

void CMainDlg::BeginBar() {
  SetChild(rootPanel.get());
  rootPanel->BeginUpdate();
  rootPanel->AddChild(backPlate.get());
  rootPanel->AddChild(barPanel.get());
  barPanel->BeginUpdate();
}

void CMainDlg::AddMainButtons() {
  mainButtonPanel->Orientation.Set(lumenor::Orientation::Horizontal);
  AddToBar(*mainButtonPanel, lumenor::Dock::Left);
  for (const Element &element : LoadDocument(mainDocumentName, false)) {
    const int index = static_cast<int>(mainButtons.size());
    if (index == maxFixedButtons)
      break;
    const auto button = MakeButton(index, element, MakeBarButtonLayout());
    button->DesiredWidth.Set(ScaleX(barButtonSize));
    button->DesiredHeight.Set(ScaleY(barButtonSize));
    mainButtonPanel->AddChild(button.get());
    button->Click.AddListener(clickListener.get());
    mainButtons.push_back(button);
  }
}

/// A record that makes no button keeps its place among the records, and so do those behind the last button that has an
/// id: all of them are saved again.
void CMainDlg::AddUserButtons() {
  AddToBar(*scrollViewer, lumenor::Dock::Fill);
  userButtonPanel->Orientation.Set(lumenor::Orientation::Horizontal);
  scrollViewer->SetChild(userButtonPanel.get());
  userButtonPanel->BeginUpdate();
  for (const Element &element : userElements) {
    if (userButtons.size() == buttonIdInUse.size())
      break;
    try {
      const auto button = CreateUserButton(static_cast<int>(userButtons.size()), element);
      userButtonPanel->AddChild(button.get());
      button->Click.AddListener(clickListener.get());
      button->DragBegin.AddListener(dragBeginListener.get());
      userButtons.push_back(button);
    } catch (const CommandNotFoundException &) {
    }
  }
  userButtonPanel->EndUpdate();
}

void CMainDlg::AddCanvas() {
  canvas->DesiredWidth.Set(ScaleX(204));
  canvas->DesiredHeight.Set(Height.Get());
  AddToBar(*canvas, lumenor::Dock::Right);
}

void CMainDlg::AddForYouButton() {
  LoadDocument(forYouDocumentName, false); // so that the document exists from now on
  forYouButton = MakeCommandButton(MakeForYouElement(false), MakeForYouLayout());
  PlaceOnCanvas(*forYouButton, CanvasRect(152, 12, 36, 64));
}

void CMainDlg::AddSearchField() {
  PlaceOnCanvas(*searchBox, CanvasRect(16, 35, 120, 17));
  AddTextBox();
  AddSplitter(*rightSplitter, lumenor::Dock::Right);
}

/// The field starts 2 left of its text rectangle.
void CMainDlg::AddTextBox() {
  textBox = std::make_shared<TextBox>(renderTarget, textBoxWindowId);
  textBox->FontSize = static_cast<float>(ScaleY(10));
  textBox->MaxLength = maxSearchLength;
  const RECT text = TextRect();
  const LONG left = ScaleX(18);
  PlaceOnCanvas(*textBox, {left, text.top, left + text.right - text.left, text.bottom});
  textBox->ApplySystemFont();
  textBox->Accept.AddListener(acceptListener.get());
  ::SetWindowLongW(textBox->GetHandle(), GWL_ID, TextBoxId);
}

void CMainDlg::SelectFirstSearchProvider() {
  const ElementList providers = searchProvider.GetElements();
  if (!providers.empty())
    ::SendMessageW(handle, SetSearchProviderMessage, reinterpret_cast<WPARAM>(providers.data()), 0);
}

void CMainDlg::AddSearchButtons() {
  searchProviderButton = MakeCommandButton(MakeSearchProviderElement(), MakeSearchButtonLayout());
  PlaceOnCanvas(*searchProviderButton, CanvasRect(106, 37, 13, 14));
  searchButton = std::make_shared<DockButton>(MakePainter(MakeSearchElement(), MakeSearchButtonLayout()), 0,
                                              MakeSearchElement(), nullptr);
  PlaceOnCanvas(*searchButton, SearchButtonRect());
  searchButton->Click.AddListener(clickListener.get());
}

void CMainDlg::AddSystemButtons() {
  PlaceOnCanvas(*systemButtonPanel, CanvasRect(148, 2, 60, 16));
  systemButtonPanel->Orientation.Set(lumenor::Orientation::Horizontal);
  systemButtonPanel->BeginUpdate();
  resetButton = MakeCommandButton(MakeResetElement(), MakeSystemButtonLayout());
  AddSystemButton(*resetButton);
  dockPositionButton = MakeDockPositionButton();
  AddSystemButton(*dockPositionButton);
  dockPositionButton->Checked.changed.AddListener(dockPositionListener.get());
  closeButton = MakeCommandButton(MakeCloseElement(), MakeSystemButtonLayout());
  AddSystemButton(*closeButton);
}

/// Checked stands for a bar at the top, and its picture offers the bottom.
std::shared_ptr<CheckedButton> CMainDlg::MakeDockPositionButton() {
  const auto makePainter = [this](const wchar_t *picture) {
    return MakeWithPicture(logSubject, picture, [this](const std::wstring &image) {
      return std::make_shared<GlowButtonPainter>(renderTarget, 0, L"", image, MakeSystemButtonLayout(), L"");
    });
  };
  auto button = std::make_shared<CheckedButton>(std::make_shared<SelectableDelegateButtonPainter>(
      makePainter(L"..\\resources\\move_to_top.png"), makePainter(L"..\\resources\\move_to_bottom.png")));
  button->Checked.Set(1);
  button->Name.Set(LoadDockString(L"Element[@ID='Button.Tooltip.DockAtTop']/Head"));
  return button;
}

/// One bad picture would keep the whole bar from coming up, at this start and at all that follow.
std::shared_ptr<IButtonPainter> CMainDlg::MakePainter(const Element &element, const ButtonLayout &layout) {
  return MakeWithPicture(logSubject, element.Image, [&](const std::wstring &image) {
    Element shown = element;
    shown.Image = image;
    return std::make_shared<DockGlowButtonPainter>(renderTarget, 0, shown, layout);
  });
}

std::shared_ptr<DockButton> CMainDlg::MakeButton(int index, const Element &element, const ButtonLayout &layout) {
  return std::make_shared<DockButton>(MakePainter(element, layout), index, element, flyoutVisibilityListener.get());
}

std::shared_ptr<DockButton> CMainDlg::MakeCommandButton(const Element &element, const ButtonLayout &layout) {
  auto button = MakeButton(0, element, layout);
  button->Click.AddListener(clickListener.get());
  return button;
}

/// Only the ids of the user buttons are ever looked at. Those of the command buttons count on from the number of user
/// buttons, and so may meet a fixed button's.
void CMainDlg::AssignControlIds() {
  for (std::size_t i = 0; i < userButtons.size(); ++i) {
    SetControlId(*userButtons[i], FirstUserButtonId + static_cast<LONG>(i));
    buttonIdInUse[i] = true;
  }
  for (std::size_t i = 0; i < mainButtons.size(); ++i)
    SetControlId(*mainButtons[i], FirstFixedButtonId + static_cast<LONG>(i));
  LONG id = FirstFixedButtonId + static_cast<LONG>(userButtons.size());
  Button *const commandButtons[] = {forYouButton.get(), searchProviderButton.get(), searchButton.get(),
                                    closeButton.get(),  resetButton.get(),          dockPositionButton.get()};
  for (Button *button : commandButtons)
    SetControlId(*button, id++);
}

void CMainDlg::AcceptDrops() {
  dropTarget = MakeOleObject<CDropTarget>(handle);
  ThrowIfFailed(::RegisterDragDrop(handle, dropTarget.Get()));
}

void CMainDlg::StartRegistryThread() {
  KernelHandle registryEvent(::CreateEventW(nullptr, FALSE, FALSE, registryListenerEventName));
  registryThreadSleeping.Reset(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
  registryThread = StartRegistryListener(std::move(registryEvent), handle, registryThreadSleeping.Get());
}

/// The bar comes up at the top; a user who wants it at the bottom gets it moved there before it shows.
void CMainDlg::PlaceBar() {
  const RECT place = lumenor::GetWindowRect();
  SetBounds(&place);
  if (GetDockPosition() != L"Bottom")
    return;
  OnDockAtBottom();
  dockPositionButton->Checked.Set(0);
}

} // namespace lumenor
