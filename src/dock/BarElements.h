#pragma once
// The elements that the bar is composed of, apart from its two rows of document buttons. The dock, which has them as a
// part of itself, puts them together. User-interface thread.

#include <memory>

#include "dock/DockButton.h"
#include "dock/DragTargetIndicator.h"
#include "toolkit/BackPlate.h"
#include "toolkit/Canvas.h"
#include "toolkit/DockPanel.h"
#include "toolkit/drawing/CheckedButton.h"
#include "toolkit/drawing/ImageElement.h"
#include "toolkit/drawing/ScrollViewer.h"
#include "toolkit/SearchBox.h"
#include "toolkit/StackPanel.h"

namespace lumenor {

class TextBox;

struct BarElements {
  /// Makes what needs nothing but the dock's `renderTarget`; the text box and the buttons come with the composition.
  explicit BarElements(const RenderTargetPtr &renderTarget);
  ~BarElements();

  std::shared_ptr<BackPlate> backPlate;
  std::shared_ptr<DragTargetIndicator> dragIndicator;
  std::shared_ptr<ImageElement> rightSplitter;
  std::shared_ptr<ImageElement> leftSplitter;
  std::shared_ptr<SearchBox> searchBox;
  std::shared_ptr<TextBox> textBox;
  std::shared_ptr<DockPanel> rootPanel;
  std::shared_ptr<StackPanel> systemButtonPanel;
  std::shared_ptr<DockPanel> barPanel;
  std::shared_ptr<StackPanel> mainButtonPanel;
  std::shared_ptr<ScrollViewer> scrollViewer;
  std::shared_ptr<StackPanel> userButtonPanel;
  std::shared_ptr<Canvas> canvas;
  std::shared_ptr<DockButton> forYouButton;
  std::shared_ptr<DockButton> searchProviderButton;
  std::shared_ptr<DockButton> searchButton;
  std::shared_ptr<DockButton> closeButton;
  std::shared_ptr<DockButton> resetButton;
  std::shared_ptr<CheckedButton> dockPositionButton;
};

} // namespace lumenor
