#include "dock/bar/UserRow.h"

#include <algorithm>

#include "dock/bar/BarButtons.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "toolkit/drawing/CommandNotFoundException.h"
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

void SetControlId(DockButton &button, std::ptrdiff_t index) {
  ::SetWindowLongW(button.GetHandle(), GWL_ID, FirstUserButtonId + static_cast<LONG>(index));
}

} // namespace

UserRow::UserRow(Window &window, const Bar &bar, const ButtonMaker &maker)
    : window(window), bar(bar), maker(maker), elements(savedButtons.Load()) {}

std::shared_ptr<DockButton> UserRow::MakeButton(const Element &element) const {
  auto button = maker.MakeButton(element, MakeBarButtonLayout());
  button->Draggable.Set(1);
  button->DesiredWidth.Set(ScaleX(userButtonSize));
  button->DesiredHeight.Set(ScaleY(userButtonSize));
  // Both margins by the horizontal scale.
  button->Margin.Set({.left = ScaleX(userButtonMargin), .top = ScaleX(userButtonMargin)});
  button->Name.Set(element.ToolTip);
  button->DragBegin.AddListener(dragListener);
  return button;
}

/// A record that makes no button keeps its place among the records, and so do those behind the last button that has an
/// id: all of them are saved again.
void UserRow::MakeButtons() {
  bar.userButtonPanel->BeginUpdate();
  for (const Element &element : elements) {
    if (buttons.size() == idInUse.size())
      break;
    try {
      const auto button = MakeButton(element);
      bar.userButtonPanel->AddChild(button.get());
      buttons.push_back(button);
    } catch (const CommandNotFoundException &) {
    }
  }
  bar.userButtonPanel->EndUpdate();
}

void UserRow::AssignControlIds() {
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    SetControlId(*buttons[i], static_cast<std::ptrdiff_t>(i));
    idInUse[i] = true;
  }
}

bool UserRow::CanAdd(std::size_t position) const {
  return position <= elements.size() && std::ranges::find(idInUse, false) != idInUse.end();
}

void UserRow::Add(const Element &element, std::size_t position) {
  if (!CanAdd(position))
    return;
  const auto freeId = std::ranges::find(idInUse, false);
  *freeId = true;
  elements.insert(At(elements, position), element);
  const auto button = MakeButton(element);
  buttons.insert(At(buttons, position), button);
  bar.userButtonPanel->InsertChild(button.get(), position);
  SetControlId(*button, freeId - idInUse.begin());
  bar.HideIndicator();
  usageTracker.TrackIconAdd(element);
}

std::size_t UserRow::IndexOf(HWND buttonWindow) const {
  if (buttonWindow == nullptr) // which a button without a window has too
    return buttons.size();
  const auto found = std::ranges::find(buttons, buttonWindow, [](const auto &button) { return button->GetHandle(); });
  return static_cast<std::size_t>(found - buttons.begin());
}

/// The row closes up at once.
void UserRow::Remove(HWND buttonWindow) {
  const std::size_t index = IndexOf(buttonWindow);
  if (index == buttons.size())
    return;
  usageTracker.TrackIconDelete(buttons[index]->GetElement());
  buttons[index]->Visibility.Set(lumenor::Visibility::Collapsed);
  ::PostMessageW(window.GetHandle(), RemoveButtonMessage, reinterpret_cast<WPARAM>(buttonWindow), 0);
}

void UserRow::TakeOut(HWND buttonWindow) {
  const std::size_t index = IndexOf(buttonWindow);
  if (index == buttons.size())
    return;
  const int idIndex = ::GetDlgCtrlID(buttonWindow) - FirstUserButtonId;
  // An open flyout would be destroyed with the button's window without a word, and the bar would stay awake for ever.
  if (FlyoutWindow *const flyout = buttons[index]->GetFlyout(); flyout != nullptr)
    flyout->Visibility.Set(lumenor::Visibility::Hidden);
  bar.userButtonPanel->RemoveChild(buttons[index].get());
  EraseItem(buttons, index);
  EraseItem(elements, index);
  if (idIndex >= 0 && idIndex < maxUserButtons)
    idInUse[static_cast<std::size_t>(idIndex)] = false;
  window.Render();
}

void UserRow::Move(std::size_t from, std::size_t to) {
  MoveItem(buttons, from, to);
  MoveItem(elements, from, to);
  bar.userButtonPanel->MoveChild(from, to);
  window.Render();
}

std::vector<ButtonSpan> UserRow::GetSpans() const {
  std::vector<ButtonSpan> spans;
  for (const auto &button : buttons)
    spans.push_back({button->Left.Get(), button->Left.Get() + button->Width.Get()});
  return spans;
}

void UserRow::DestroyButtonWindows() const {
  for (const auto &button : buttons)
    DestroyButtonWindow(button);
}

} // namespace lumenor
