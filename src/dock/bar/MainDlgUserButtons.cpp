// The user's row of buttons: two parallel lists, the records and the buttons, of which the records are what is saved.
//
// A record whose button couldn't be made leaves the lists out of step: every operation by one index then acts on the
// records behind it with an index one too small. That is how the bar has always behaved with such documents, and a
// repair of the lists isn't wanted. An index is held to the bounds of each list all the same.

#include "dock/bar/MainDlg.h"

#include <algorithm>

#include "dock/bar/BarButtons.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "toolkit/Scale.h"
#include "tracking/UsageTracker.h"

namespace lumenor {

namespace {

constexpr int userButtonSize = 77;
constexpr int userButtonMargin = 4;

template <typename List> typename List::iterator At(List &list, std::size_t index) {
  return list.begin() + static_cast<std::ptrdiff_t>(std::min(index, list.size()));
}

template <typename List> void MoveItem(List &list, std::size_t from, std::size_t to) {
  if (from >= list.size())
    return;
  auto item = std::move(list[from]);
  list.erase(At(list, from));
  list.insert(At(list, to), std::move(item));
}

template <typename List> void EraseItem(List &list, std::size_t index) {
  if (index < list.size())
    list.erase(At(list, index));
}

} // namespace

std::shared_ptr<DockButton> CMainDlg::CreateUserButton(int index, const Element &element) {
  auto button = MakeButton(index, element, MakeBarButtonLayout());
  button->Draggable.Set(1);
  button->DesiredWidth.Set(ScaleX(userButtonSize));
  button->DesiredHeight.Set(ScaleY(userButtonSize));
  // Both margins by the horizontal scale.
  button->Margin.Set({.left = ScaleX(userButtonMargin), .top = ScaleX(userButtonMargin)});
  button->Name.Set(element.ToolTip);
  return button;
}

/// A position behind the end takes nothing, and neither does a bar whose ids are all taken.
bool CMainDlg::CanAddButton(std::size_t position) const {
  return position <= userElements.size() &&
         std::find(buttonIdInUse.begin(), buttonIdInUse.end(), false) != buttonIdInUse.end();
}

void CMainDlg::AddButton(const Element &element, std::size_t position) {
  if (!CanAddButton(position))
    return;
  const auto freeId = std::find(buttonIdInUse.begin(), buttonIdInUse.end(), false);
  *freeId = true;
  userElements.insert(At(userElements, position), element);
  const auto button = CreateUserButton(0, element);
  userButtons.insert(At(userButtons, position), button);
  userButtonPanel->InsertChild(button.get(), position);
  ::SetWindowLongW(button->GetHandle(), GWL_ID, FirstUserButtonId + static_cast<LONG>(freeId - buttonIdInUse.begin()));
  button->Click.AddListener(clickListener.get());
  button->DragBegin.AddListener(dragBeginListener.get());
  HideIndicator();
  usageTracker.TrackIconAdd(element);
}

std::size_t CMainDlg::IndexOfUserButton(HWND buttonWindow) const {
  const auto found = std::find_if(userButtons.begin(), userButtons.end(),
                                  [buttonWindow](const auto &button) { return button->GetHandle() == buttonWindow; });
  return static_cast<std::size_t>(found - userButtons.begin());
}

/// The row closes up at once; the button itself goes a message later, when nothing of it is on the stack any more.
void CMainDlg::RemoveButton(HWND buttonWindow) {
  if (buttonWindow == nullptr)
    return;
  const std::size_t index = IndexOfUserButton(buttonWindow);
  if (index == userButtons.size())
    return;
  usageTracker.TrackIconDelete(userButtons[index]->GetElement());
  userButtons[index]->Visibility.Set(lumenor::Visibility::Collapsed);
  ::PostMessageW(handle, RemoveButtonMessage, reinterpret_cast<WPARAM>(buttonWindow), 0);
}

void CMainDlg::OnRemoveButton(HWND buttonWindow) {
  const std::size_t index = IndexOfUserButton(buttonWindow);
  if (buttonWindow == nullptr || index == userButtons.size())
    return;
  const int idIndex = ::GetDlgCtrlID(buttonWindow) - FirstUserButtonId;
  // An open flyout would go with the button's window without telling of it, and the bar would stay awake for ever.
  if (FlyoutWindow *const flyout = userButtons[index]->GetFlyout(); flyout != nullptr)
    flyout->Visibility.Set(lumenor::Visibility::Hidden);
  userButtonPanel->RemoveChild(userButtons[index].get());
  EraseItem(userButtons, index);
  EraseItem(userElements, index);
  if (idIndex >= 0 && idIndex < maxUserButtons)
    buttonIdInUse[static_cast<std::size_t>(idIndex)] = false;
  Render();
}

void CMainDlg::MoveButton(std::size_t from, std::size_t to) {
  MoveItem(userButtons, from, to);
  MoveItem(userElements, from, to);
  userButtonPanel->MoveChild(from, to);
  Render();
}

void CMainDlg::SetForYouState(bool active) {
  forYouButton->SetPainter(MakePainter(MakeForYouElement(active), MakeForYouLayout()));
}

} // namespace lumenor
