#pragma once
// A window that lists elements, one button a row, over a translucent plate, and that hides as soon as it loses the
// activation or is asked to close. Owned by the button or the dock that opens it; made once with its window, then only
// shown and hidden. User-interface thread.

#include <memory>
#include <string>
#include <vector>

#include "content/Element.h"
#include "system/Windows.h"
#include "toolkit/DockPanel.h"
#include "toolkit/drawing/Button.h"
#include "toolkit/drawing/Window.h"
#include "toolkit/Event.h"
#include "toolkit/Property.h"
#include "toolkit/StackPanel.h"
#include "toolkit/TextElement.h"

namespace lumenor {

class BackPlate;
class DockButton;
class IButtonPainter;
struct ButtonLayout;

class FlyoutWindow : public Window {
public:
  /// `bounds` is in screen coordinates, its bottom is recomputed; `title` is the header's text. Starts hidden and
  /// without a window; Create makes that.
  FlyoutWindow(const RECT &bounds, const std::wstring &title, const ElementList &elements);

  /// Fired at each change of Visibility, with that change's arguments.
  Event<PropertyChangeEventArgs<lumenor::Visibility>> Visible{L"Visible"};

  /// Where the flyout stands, in screen coordinates; the bottom follows from the rows. Moves the window if there is
  /// one. Not the SetBounds of UIElement.
  void SetBounds(const RECT &rectangle);

  /// Visible becomes hidden, anything else visible.
  void ToggleVisibility();

  /// Makes the rows anew from the elements. Needs the window. A call during a making, out of a message that is handled
  /// meanwhile, makes that one start over at its end.
  virtual void CreateItems();

  /// What choosing a row does: the element's action.
  virtual void OnItemChosen(const Element &element);

  /// The rows, in the order of the elements; empty before CreateItems.
  const std::vector<std::shared_ptr<DockButton>> &GetItems() const { return items; }

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId = 0) override;
  void InitializeComponent() override;

protected:
  void OnVisibilityChanged(PropertyChangeEventArgs<lumenor::Visibility> *args) override;

  RECT bounds; // on the screen; the bottom follows from the rows
  std::shared_ptr<BackPlate> backPlate;
  ElementList elements;
  std::vector<std::shared_ptr<DockButton>> items;
  std::shared_ptr<TextElement> header;

private:
  std::shared_ptr<IButtonPainter> MakePainter(const Element &element, const ButtonLayout &layout);
  void MakeItems(const ElementList &shown);
  void AddItem(const Element &element, const ButtonLayout &layout);
  void FitToItems();
  void UpdateBottom();
  void SizeBackPlate();
  void PlaceWindow();
  void RedrawNow();
  void HideWindow();
  void DestroyItemWindows();
  void OnItemClick(ButtonEventArgs *args);

  /// The rows before the last making, which a message to one of them may have led to.
  std::vector<std::shared_ptr<DockButton>> replacedItems;
  bool isMakingItems = false;
  bool itemsAreCurrent = false;
  DockPanel rootPanel;
  StackPanel list;
  ListenerPtr<ButtonEventArgs> itemClickListener;
};

} // namespace lumenor
