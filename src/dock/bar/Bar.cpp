#include "dock/bar/Bar.h"

#include "content/DocumentNames.h"
#include "content/Documents.h"
#include "dock/bar/BarButtons.h"
#include "dock/bar/ButtonMaker.h"
#include "dock/DockMessages.h"
#include "toolkit/Scale.h"
#include "toolkit/TextBox.h"

namespace lumenor {

namespace {

constexpr int splitterWidth = 2;      // device pixels at every density
constexpr int systemButtonMargin = 2; // likewise
constexpr int systemButtonSize = 16;
constexpr int barButtonSize = 77;
constexpr int textBoxWindowId = 111; // until the bar numbers its controls
constexpr int maxSearchLength = 150; // characters

/// Where nothing is ever seen.
constexpr RECT outOfSight = {-100000, -100000, -100000, -100000};

/// A rectangle on the canvas, from design pixels.
RECT CanvasRect(int left, int top, int width, int height) {
  const LONG x = ScaleX(left);
  const LONG y = ScaleY(top);
  return {x, y, x + ScaleX(width), y + ScaleY(height)};
}

/// The search button is 3 larger than its picture on each side; each number is rounded separately.
RECT SearchButtonRect() {
  const LONG x = ScaleX(116);
  const LONG y = ScaleY(37) - ScaleY(3);
  return {x, y, x + ScaleX(13) + ScaleX(6), y + ScaleY(14) + ScaleY(6)};
}

/// The text of the search field on the canvas; each number is rounded separately. The field itself starts 2 further
/// left.
RECT TextRect() {
  return {ScaleX(16) + ScaleX(4), ScaleY(35) + ScaleY(2), ScaleX(16) + ScaleX(120) - ScaleX(32),
          ScaleY(35) + ScaleY(16) - ScaleY(2)};
}

void SetControlId(Button &button, LONG id) { ::SetWindowLongW(button.GetHandle(), GWL_ID, id); }

} // namespace

Bar::Bar(const RenderTargetPtr &renderTarget)
    : backPlate(std::make_shared<BackPlate>(renderTarget, 0.7F, 0.36F)),
      dragIndicator(std::make_shared<DragTargetIndicator>(renderTarget)),
      rightSplitter(std::make_shared<ImageElement>(L"IDI_SPLITTER", L"Image", renderTarget)),
      leftSplitter(std::make_shared<ImageElement>(L"IDI_SPLITTER", L"Image", renderTarget)),
      searchBox(std::make_shared<SearchBox>(renderTarget)), scrollViewer(std::make_shared<ScrollViewer>(renderTarget)) {
  HideIndicator();
}

void Bar::Begin() {
  rootPanel->BeginUpdate();
  rootPanel->AddChild(backPlate.get());
  rootPanel->AddChild(barPanel.get());
  barPanel->BeginUpdate();
}

void Bar::AddToBar(UIElement &element, lumenor::Dock dock) const {
  barPanel->AddChild(&element);
  barPanel->SetDock(&element, dock);
}

void Bar::AddSplitter(ImageElement &splitter, lumenor::Dock dock) const {
  splitter.DesiredWidth.Set(splitterWidth);
  AddToBar(splitter, dock);
}

void Bar::AddMainButtons(const ButtonMaker &maker) {
  mainButtonPanel->Orientation.Set(lumenor::Orientation::Horizontal);
  AddToBar(*mainButtonPanel, lumenor::Dock::Left);
  for (const Element &element : LoadDocument(mainDocumentName, false)) {
    if (mainButtons.size() == maxFixedButtons)
      break;
    const auto button = maker.MakeButton(element, MakeBarButtonLayout());
    button->DesiredWidth.Set(ScaleX(barButtonSize));
    button->DesiredHeight.Set(ScaleY(barButtonSize));
    mainButtonPanel->AddChild(button.get());
    mainButtons.push_back(button);
  }
  AddSplitter(*leftSplitter, lumenor::Dock::Left);
}

void Bar::AddUserButtonPanel() {
  AddToBar(*scrollViewer, lumenor::Dock::Fill);
  userButtonPanel->Orientation.Set(lumenor::Orientation::Horizontal);
  scrollViewer->SetChild(userButtonPanel.get());
}

void Bar::AddCanvas(long height) {
  canvas->DesiredWidth.Set(ScaleX(204));
  canvas->DesiredHeight.Set(height);
  AddToBar(*canvas, lumenor::Dock::Right);
}

/// `place` counts from the canvas's corner, in device pixels. It comes after the window: a panel's window comes up
/// empty and follows its element from then on.
void Bar::PlaceOnCanvas(UIElement &element, const RECT &place) const {
  canvas->AddChild(&element);
  element.SetBounds(&place);
}

void Bar::AddForYouButton(const ButtonMaker &maker) {
  EnsureDocument(forYouDocumentName);
  forYouButton = maker.MakeButton(MakeForYouElement(false), MakeForYouLayout());
  PlaceOnCanvas(*forYouButton, CanvasRect(152, 12, 36, 64));
}

void Bar::AddSearchField(const RenderTargetPtr &renderTarget, EventListener<TextBoxEventArgs> *acceptListener) {
  PlaceOnCanvas(*searchBox, CanvasRect(16, 35, 120, 17));
  textBox = std::make_shared<TextBox>(renderTarget, textBoxWindowId);
  textBox->FontSize = static_cast<float>(ScaleY(10));
  textBox->MaxLength = maxSearchLength;
  const RECT text = TextRect();
  const LONG left = ScaleX(18);
  PlaceOnCanvas(*textBox, {left, text.top, left + text.right - text.left, text.bottom});
  textBox->ApplySystemFont();
  textBox->Accept.AddListener(acceptListener);
  ::SetWindowLongW(textBox->GetHandle(), GWL_ID, TextBoxId);
  AddSplitter(*rightSplitter, lumenor::Dock::Right);
}

void Bar::AddSearchButtons(const ButtonMaker &maker) {
  searchProviderButton = maker.MakeButton(MakeSearchProviderElement(), MakeSearchButtonLayout());
  PlaceOnCanvas(*searchProviderButton, CanvasRect(106, 37, 13, 14));
  searchButton = maker.MakeButton(MakeSearchElement(), MakeSearchButtonLayout());
  PlaceOnCanvas(*searchButton, SearchButtonRect());
  textBox->Name.Set(searchButton->Name.Get());
}

void Bar::AddSystemButtons(const ButtonMaker &maker) {
  PlaceOnCanvas(*systemButtonPanel, CanvasRect(148, 2, 60, 16));
  systemButtonPanel->Orientation.Set(lumenor::Orientation::Horizontal);
  systemButtonPanel->BeginUpdate();
  resetButton = maker.MakeButton(MakeResetElement(), MakeSystemButtonLayout());
  AddSystemButton(*resetButton);
  dockPositionButton = maker.MakeDockPositionButton();
  AddSystemButton(*dockPositionButton);
  closeButton = maker.MakeButton(MakeCloseElement(), MakeSystemButtonLayout());
  AddSystemButton(*closeButton);
}

void Bar::AddSystemButton(Button &button) const {
  button.DesiredWidth.Set(ScaleX(systemButtonSize));
  button.DesiredHeight.Set(ScaleY(systemButtonSize));
  if (&button != resetButton.get()) {
    button.HorizontalAlignment.Set(lumenor::HorizontalAlignment::Right);
    button.Margin.Set({.left = systemButtonMargin});
  }
  systemButtonPanel->AddChild(&button);
}

void Bar::End() {
  systemButtonPanel->EndUpdate();
  barPanel->EndUpdate();
  rootPanel->EndUpdate();
}

/// Nothing reads these ids. Those of the command buttons count on from the number of user buttons, and so may equal a
/// fixed button's.
void Bar::AssignControlIds(std::size_t userButtonCount) const {
  for (std::size_t i = 0; i < mainButtons.size(); ++i)
    SetControlId(*mainButtons[i], FirstFixedButtonId + static_cast<LONG>(i));
  LONG id = FirstFixedButtonId + static_cast<LONG>(userButtonCount);
  Button *const commandButtons[] = {forYouButton.get(), searchProviderButton.get(), searchButton.get(),
                                    closeButton.get(),  resetButton.get(),          dockPositionButton.get()};
  for (Button *button : commandButtons)
    SetControlId(*button, id++);
}

void Bar::ShowFadingButtons(lumenor::Visibility visibility) const {
  resetButton->Visibility.Set(visibility);
  dockPositionButton->Visibility.Set(visibility);
}

void Bar::HideIndicator() const { dragIndicator->SetBounds(&outOfSight); }

void Bar::DestroyButtonWindows() const {
  for (const auto &button : mainButtons)
    DestroyButtonWindow(button);
  for (const auto &button : {forYouButton, searchProviderButton, searchButton, closeButton, resetButton})
    DestroyButtonWindow(button);
}

void DestroyButtonWindow(const std::shared_ptr<DockButton> &button) {
  if (button && ::IsWindow(button->GetHandle()))
    ::DestroyWindow(button->GetHandle());
}

} // namespace lumenor
