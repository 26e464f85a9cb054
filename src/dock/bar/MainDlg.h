#pragma once
// The dock: the window of the bar, which owns the bar's element tree and its buttons and is where all messages of the
// application meet. The entry function builds one for every cycle and destroys it at the cycle's end. MainDlg.cpp has
// its life and its messages, the files with longer names its parts. User-interface thread.

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <wrl/client.h>

#include "content/ActionDataProvider.h"
#include "content/Element.h"
#include "content/UserDocument.h"
#include "dock/bar/BarElements.h"
#include "dock/bar/BarFade.h"
#include "dock/DockMessages.h"
#include "dock/dragdrop/OleApartment.h"
#include "dock/flyouts/DataProviderFlyout.h"
#include "dock/flyouts/DockButton.h"
#include "dock/flyouts/SearchProviderFlyout.h"
#include "system/Handles.h"
#include "system/Windows.h"
#include "toolkit/drawing/ButtonLayout.h"
#include "toolkit/drawing/Window.h"
#include "toolkit/Event.h"
#include "toolkit/Property.h"

namespace lumenor {

class CDropTarget;
enum class Command;
struct TextBoxEventArgs;

/// The registered message by which a second start asks the running dock to come to the front. The entry function
/// registers it before any dock is built.
inline UINT dockActivateMessage = 0;

class CMainDlg : public Window, private BarElements {
public:
  /// Loads the user's buttons; makes no window yet, Create does. Raises HResultError when there is no task bar.
  CMainDlg();
  ~CMainDlg() override;

  /// Puts a user button for `element` at `position` of the row. Does nothing for a position behind the end, or when all
  /// ids are taken. Raises what making the button raises: the record is then in the list, without a button.
  void AddButton(const Element &element, std::size_t position);

  /// Takes a user button off the row, and its record off the list a message later. Null is ignored.
  void RemoveButton(HWND buttonWindow);

  /// Moves a user button and its record; `to` is the index after the removal.
  void MoveButton(std::size_t from, std::size_t to);

  /// Gives the For You button the picture of new items, or takes it away.
  void SetForYouState(bool active);

  /// The user's records, in the order in which they are saved.
  const ElementList &GetUserElements() const { return userElements; }

  /// The user's buttons in their order on the bar; those whose record makes no button have none.
  const std::vector<std::shared_ptr<DockButton>> &GetUserButtons() const { return userButtons; }

  /// The search provider in use; empty when there is none.
  const Element &GetSelectedProvider() const { return selectedProvider; }

  /// True while a flyout or a modal dialog is open.
  bool IsKeptAwake() const { return keepAwake; }

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
  static const MessageRow<CMainDlg> messageRows[];

  // The rows of the message map: each makes words of the message's numbers and calls the handler of its name.
  template <void (CMainDlg::*handler)()> BOOL Handle(WPARAM wParam, LPARAM lParam, LRESULT &result);
  BOOL HandleNotify(WPARAM wParam, LPARAM lParam, LRESULT &result);
  BOOL HandleDragAdd(WPARAM wParam, LPARAM lParam, LRESULT &result);
  template <UINT message> BOOL HandleRefresh(WPARAM wParam, LPARAM lParam, LRESULT &result);
  BOOL HandleSetSearchProvider(WPARAM wParam, LPARAM lParam, LRESULT &result);
  BOOL HandleRemoveButton(WPARAM wParam, LPARAM lParam, LRESULT &result);
  template <typename Word, void (CMainDlg::*handler)(Word)>
  BOOL HandleWord(WPARAM wParam, LPARAM lParam, LRESULT &result);

  bool OnNotify(const NMHDR &header);
  void OnDisplayChange();
  void OnDragAdd(const std::wstring &path, POINT screenPoint);
  void OnRefresh(UINT message);
  void OnSetSearchProvider(const Element &provider);
  void OnRemoveButton(HWND buttonWindow);
  void OnResetDock();
  void OnTimer(UINT_PTR timer);
  void OnDrawFailed(HRESULT result);
  void OnShowWelcome();
  void OnDockAtTop();
  void OnDockAtBottom();
  void OnEndSession();
  void EndUse();
  void StopRegistryThread();
  bool AnswersTo(UINT message) const;

  // What changes by itself.
  void StepFade();
  void RefreshForYou();
  void RefreshSearchProviders();

  // The steps of InitializeComponent, in their order.
  void CreateFlyouts();
  void BeginBar();
  void AddMainButtons();
  void AddUserButtons();
  void AddCanvas();
  void AddForYouButton();
  void AddSearchField();
  void AddTextBox();
  void SelectFirstSearchProvider();
  void AddSearchButtons();
  void AddSystemButtons();
  void AssignControlIds();
  void AcceptDrops();
  void StartRegistryThread();
  void PlaceBar();

  std::shared_ptr<DockButton> MakeButton(int index, const Element &element, const ButtonLayout &layout);
  std::shared_ptr<DockButton> MakeCommandButton(const Element &element, const ButtonLayout &layout);
  std::shared_ptr<DockButton> CreateUserButton(int index, const Element &element);
  std::shared_ptr<CheckedButton> MakeDockPositionButton();
  std::shared_ptr<IButtonPainter> MakePainter(const Element &element, const ButtonLayout &layout);

  std::size_t IndexOfUserButton(HWND buttonWindow) const;
  bool CanAddButton(std::size_t position) const;

  // Drag and drop. Points are in the dock's client coordinates, if not told otherwise.
  void OnButtonDragBegin(ButtonEventArgs *args);
  void BeginButtonDrag(HWND buttonWindow);
  void RemoveVanishedButton(HWND buttonWindow);
  void FinishButtonDrag(HRESULT dragResult);
  void RestoreDraggedButton();
  void OnDragOver(POINT point);
  void OnDragLeave(UINT_PTR buttonId);
  void OnButtonDrop(POINT point);
  void AddDroppedFile(const std::wstring &path, POINT screenPoint);
  void FinishDrop();
  void HideForgottenIndicator();
  std::optional<std::size_t> GetInsertionIndex(POINT rowPoint) const;
  void ShowIndicatorFor(std::size_t index);
  void ShowIndicatorBefore(std::size_t index);
  void ShowIndicatorAfter(std::size_t index);
  std::size_t DraggedIndex() const;
  void Repaint();

  void OnButtonClick(ButtonEventArgs *args);
  void RunCommand(Command command);
  void ToggleForYouFlyout();
  void ToggleSearchProviderFlyout();
  RECT GetScreenBounds() const;
  RECT ForYouFlyoutPlace() const;
  RECT SearchProviderFlyoutPlace() const;
  void ConfirmReset();
  void Search();
  void OnTextAccept(TextBoxEventArgs *args);
  void CloseDock();
  void ForwardDockPosition(PropertyChangeEventArgs<int> *args);
  void OnFlyoutVisibilityChanged(PropertyChangeEventArgs<lumenor::Visibility> *args);

  RECT dockRect;
  UserDocument savedButtons; // what the records come from and go back to
  ElementList userElements;
  std::vector<std::shared_ptr<DockButton>> userButtons;
  std::vector<std::shared_ptr<DockButton>> mainButtons;
  std::array<bool, maxUserButtons> buttonIdInUse{};
  Microsoft::WRL::ComPtr<CDropTarget> dropTarget;
  BarFade fade{Opacity, *this};
  bool keepAwake = false;
  ForYouProvider forYouProvider;
  DataProviderFlyout forYouFlyout;
  FILETIME forYouFileTime;
  SearchProvider searchProvider;
  SearchProviderFlyout searchProviderFlyout;
  Element selectedProvider;
  KernelHandle registryThreadSleeping; // an event, set while the thread sleeps
  KernelHandle registryThread;
  std::shared_ptr<TypedEventListener<CMainDlg, ButtonEventArgs>> clickListener;
  std::shared_ptr<TypedEventListener<CMainDlg, ButtonEventArgs>> dragBeginListener;
  std::shared_ptr<TypedEventListener<CMainDlg, TextBoxEventArgs>> acceptListener;
  std::shared_ptr<TypedEventListener<CMainDlg, PropertyChangeEventArgs<int>>> dockPositionListener;
  std::shared_ptr<TypedEventListener<CMainDlg, PropertyChangeEventArgs<lumenor::Visibility>>> flyoutVisibilityListener;
  OleApartment oleApartment; // the last member, and so the first to go
};

} // namespace lumenor
