#pragma once
// The dock: the window of the bar, which owns the bar's parts and is where all messages of the application meet. The
// entry function builds one for every cycle and destroys it at the cycle's end. User-interface thread.

#include <cstddef>
#include <memory>
#include <vector>

#include "content/Element.h"
#include "dock/bar/Bar.h"
#include "dock/bar/BarFade.h"
#include "dock/bar/BarLists.h"
#include "dock/bar/ButtonMaker.h"
#include "dock/bar/RowDrag.h"
#include "dock/bar/UserRow.h"
#include "dock/flyouts/DockButton.h"
#include "dock/watch/RegistryListener.h"
#include "system/Windows.h"
#include "toolkit/drawing/Window.h"
#include "toolkit/Event.h"
#include "toolkit/Property.h"

namespace lumenor {

enum class Command;

class CMainDlg : public Window {
public:
  /// Loads the user's buttons; makes no window yet, Create does. Raises HResultError when there is no task bar.
  CMainDlg();
  ~CMainDlg() override;

  /// Puts a user button for `element` at `position` of the row. Does nothing for a position behind the end, or when all
  /// ids are taken. Raises what making the button raises: the record is then in the list, without a button.
  void AddButton(const Element &element, std::size_t position) { userRow.Add(element, position); }

  /// Takes a user button off the row, and its record off the list a message later. Null is ignored.
  void RemoveButton(HWND buttonWindow) { userRow.Remove(buttonWindow); }

  /// Moves a user button and its record; `to` is the index after the removal.
  void MoveButton(std::size_t from, std::size_t to) { userRow.Move(from, to); }

  /// Gives the For You button the picture of new items, or takes it away.
  void SetForYouState(bool active) { lists.SetForYouState(active); }

  /// The user's records, in the order in which they are saved.
  const ElementList &GetUserElements() const { return userRow.GetElements(); }

  /// The user's buttons in their order on the bar; those whose record makes no button have none.
  const std::vector<std::shared_ptr<DockButton>> &GetUserButtons() const { return userRow.GetButtons(); }

  /// The search provider in use; empty when there is none.
  const Element &GetSelectedProvider() const { return lists.GetSelectedProvider(); }

  /// True while a flyout or a modal dialog is open.
  bool IsKeptAwake() const { return fade.IsKeptAwake(); }

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId = 0) override;
  void InitializeComponent() override;

  /// The tree, and over all of it the marker of a drag.
  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;

protected:
  void OnDestroy() override;
  void OnClose() override;

  /// Writes the edge that the position button asks for; the registry thread moves the bar.
  virtual void OnDockPositionChanged(PropertyChangeEventArgs<int> *args);

private:
  BOOL OnBarMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result);
  bool AnswersTo(UINT message) const;

  BOOL OnNotify(const NMHDR *header, LRESULT &result);
  void OnDisplayChange();
  void OnDragAdd(WPARAM pathAddress, POINT screenPoint);
  void OnSetSearchProvider(WPARAM address);
  void OnResetDock();
  void OnTimer(WPARAM timer);
  void OnDrawFailed(HRESULT result);
  void OnShowWelcome();
  void OnDockAtTop();
  void OnDockAtBottom();
  void OnButtonClick(ButtonEventArgs *args);
  void EndUse();

  void PlaceBar();
  void RunCommand(Command command);
  void ConfirmReset();
  void Search();
  void CloseDock();

  Bar bar;
  RECT dockRect; // of a bar at the top
  ListenerPtr<ButtonEventArgs> clickListener;
  ListenerPtr<TextBoxEventArgs> acceptListener;
  ListenerPtr<PropertyChangeEventArgs<int>> dockPositionListener;
  BarFade fade;
  ButtonMaker maker;
  UserRow userRow;
  RowDrag rowDrag;
  BarLists lists;
  RegistryThread registryThread;
  OleApartment oleApartment; // the last member, and so the first to go
};

} // namespace lumenor
