#include "dock/BarElements.h"

#include "toolkit/TextBox.h"

namespace lumenor {

BarElements::BarElements(const RenderTargetPtr &renderTarget)
    : backPlate(std::make_shared<BackPlate>(renderTarget, 0.7F, 0.36F)),
      dragIndicator(std::make_shared<DragTargetIndicator>(renderTarget)),
      rightSplitter(std::make_shared<ImageElement>(L"IDI_SPLITTER", L"Image", renderTarget)),
      leftSplitter(std::make_shared<ImageElement>(L"IDI_SPLITTER", L"Image", renderTarget)),
      searchBox(std::make_shared<SearchBox>(renderTarget)), rootPanel(std::make_shared<DockPanel>()),
      systemButtonPanel(std::make_shared<StackPanel>()), barPanel(std::make_shared<DockPanel>()),
      mainButtonPanel(std::make_shared<StackPanel>()), scrollViewer(std::make_shared<ScrollViewer>(renderTarget)),
      userButtonPanel(std::make_shared<StackPanel>()), canvas(std::make_shared<Canvas>()) {}

BarElements::~BarElements() = default;

} // namespace lumenor
