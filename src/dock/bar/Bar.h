#pragma once
// The element tree of the bar and how it is composed. A panel is given to its parent before it gets children of its
// own, since a child's window is made under the window of its parent; the layout waits until everything stands. A
// member of the dock, which calls the steps in their order. User-interface thread.

#include <cstddef>
#include <memory>
#include <vector>

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

class ButtonMaker;
class TextBox;
struct TextBoxEventArgs;

class Bar {
public:
  /// Makes what needs nothing but the dock's `renderTarget`; the text box and the buttons come with their steps.
  explicit Bar(const RenderTargetPtr &renderTarget);

  // The steps of the composition, in their order. The user's buttons come between the main buttons and the canvas.

  void Begin();

  /// The fixed buttons of the main document, and the splitter behind them.
  void AddMainButtons(const ButtonMaker &maker);
  void AddUserButtonPanel();

  /// The right end of the bar, `height` device pixels high.
  void AddCanvas(long height);
  void AddForYouButton(const ButtonMaker &maker);

  /// The field hears of nothing but `acceptListener`, which is borrowed.
  void AddSearchField(const RenderTargetPtr &renderTarget, EventListener<TextBoxEventArgs> *acceptListener);
  void AddSearchButtons(const ButtonMaker &maker);
  void AddSystemButtons(const ButtonMaker &maker);

  /// Lets the layout run that waited for the whole bar.
  void End();

  /// Numbers the fixed and the command buttons; `userButtonCount` is the length of the user's row.
  void AssignControlIds(std::size_t userButtonCount) const;

  /// True as soon as the bar can answer messages: the last button that a handler asks for is there.
  bool IsComposed() const { return dockPositionButton != nullptr; }

  /// Shows or hides the buttons that go while the bar is dimmed.
  void ShowFadingButtons(lumenor::Visibility visibility) const;

  /// Takes the marker of a drag out of sight; the next repaint shows it.
  void HideIndicator() const;

  /// Destroys the windows of all buttons but the user's and the position button's.
  void DestroyButtonWindows() const;

  std::shared_ptr<BackPlate> backPlate;
  std::shared_ptr<DragTargetIndicator> dragIndicator;
  std::shared_ptr<ImageElement> rightSplitter;
  std::shared_ptr<ImageElement> leftSplitter;
  std::shared_ptr<SearchBox> searchBox;
  std::shared_ptr<TextBox> textBox;
  std::shared_ptr<DockPanel> rootPanel = std::make_shared<DockPanel>();
  std::shared_ptr<StackPanel> systemButtonPanel = std::make_shared<StackPanel>();
  std::shared_ptr<DockPanel> barPanel = std::make_shared<DockPanel>();
  std::shared_ptr<StackPanel> mainButtonPanel = std::make_shared<StackPanel>();
  std::shared_ptr<ScrollViewer> scrollViewer;
  std::shared_ptr<StackPanel> userButtonPanel = std::make_shared<StackPanel>();
  std::shared_ptr<Canvas> canvas = std::make_shared<Canvas>();
  std::shared_ptr<DockButton> forYouButton;
  std::shared_ptr<DockButton> searchProviderButton;
  std::shared_ptr<DockButton> searchButton;
  std::shared_ptr<DockButton> closeButton;
  std::shared_ptr<DockButton> resetButton;
  std::shared_ptr<CheckedButton> dockPositionButton;
  std::vector<std::shared_ptr<DockButton>> mainButtons;

private:
  void AddToBar(UIElement &element, lumenor::Dock dock) const;
  void AddSplitter(ImageElement &splitter, lumenor::Dock dock) const;
  void PlaceOnCanvas(UIElement &element, const RECT &place) const;
  void AddSystemButton(Button &button) const;
};

/// Destroys the window of `button`, if it has one; null is ignored.
void DestroyButtonWindow(const std::shared_ptr<DockButton> &button);

} // namespace lumenor
