#pragma once
// The elements that the bar is composed of, apart from its two rows of document buttons, and what is done with single
// ones of them. The dock, which has them as a part of itself, puts them together. User-interface thread.

#include <memory>

#include "dock/dragdrop/DragTargetIndicator.h"
#include "dock/flyouts/DockButton.h"
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

  /// Adds `element` to the row of the bar.
  void AddToBar(UIElement &element, lumenor::Dock dock) const;
  void AddSplitter(ImageElement &splitter, lumenor::Dock dock) const;

  /// Adds `element` to the right end of the bar; `bounds` count from that end's corner, in device pixels.
  void PlaceOnCanvas(UIElement &element, const RECT &bounds) const;

  /// Adds `button` to the row of small buttons.
  void AddSystemButton(Button &button) const;

  /// Lets the layout run that waited for the whole bar.
  void EndBar() const;

  /// Shows or hides the buttons that go while the bar is dimmed.
  void ShowFadingButtons(lumenor::Visibility visibility) const;

  /// Takes the marker of a drag out of sight; the next repaint shows it.
  void HideIndicator() const;

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
