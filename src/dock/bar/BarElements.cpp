#include "dock/bar/BarElements.h"

#include "toolkit/Scale.h"
#include "toolkit/TextBox.h"

namespace lumenor {

namespace {

constexpr int splitterWidth = 2;      // device pixels at every density
constexpr int systemButtonMargin = 2; // likewise
constexpr int systemButtonSize = 16;

/// Where nothing is ever seen.
constexpr RECT outOfSight = {-100000, -100000, -100000, -100000};

} // namespace

BarElements::BarElements(const RenderTargetPtr &renderTarget)
    : backPlate(std::make_shared<BackPlate>(renderTarget, 0.7F, 0.36F)),
      dragIndicator(std::make_shared<DragTargetIndicator>(renderTarget)),
      rightSplitter(std::make_shared<ImageElement>(L"IDI_SPLITTER", L"Image", renderTarget)),
      leftSplitter(std::make_shared<ImageElement>(L"IDI_SPLITTER", L"Image", renderTarget)),
      searchBox(std::make_shared<SearchBox>(renderTarget)), rootPanel(std::make_shared<DockPanel>()),
      systemButtonPanel(std::make_shared<StackPanel>()), barPanel(std::make_shared<DockPanel>()),
      mainButtonPanel(std::make_shared<StackPanel>()), scrollViewer(std::make_shared<ScrollViewer>(renderTarget)),
      userButtonPanel(std::make_shared<StackPanel>()), canvas(std::make_shared<Canvas>()) {
  HideIndicator();
}

BarElements::~BarElements() = default;

void BarElements::AddToBar(UIElement &element, lumenor::Dock dock) const {
  barPanel->AddChild(&element);
  barPanel->SetDock(&element, dock);
}

void BarElements::AddSplitter(ImageElement &splitter, lumenor::Dock dock) const {
  splitter.DesiredWidth.Set(splitterWidth);
  AddToBar(splitter, dock);
}

/// The bounds come after the window: a panel's window comes up empty and follows its element from then on.
void BarElements::PlaceOnCanvas(UIElement &element, const RECT &bounds) const {
  canvas->AddChild(&element);
  element.SetBounds(&bounds);
}

void BarElements::AddSystemButton(Button &button) const {
  button.DesiredWidth.Set(ScaleX(systemButtonSize));
  button.DesiredHeight.Set(ScaleY(systemButtonSize));
  if (&button != resetButton.get()) {
    button.HorizontalAlignment.Set(lumenor::HorizontalAlignment::Right);
    button.Margin.Set({.left = systemButtonMargin});
  }
  systemButtonPanel->AddChild(&button);
}

void BarElements::EndBar() const {
  systemButtonPanel->EndUpdate();
  barPanel->EndUpdate();
  rootPanel->EndUpdate();
}

void BarElements::ShowFadingButtons(lumenor::Visibility visibility) const {
  resetButton->Visibility.Set(visibility);
  dockPositionButton->Visibility.Set(visibility);
}

void BarElements::HideIndicator() const { dragIndicator->SetBounds(&outOfSight); }

} // namespace lumenor
