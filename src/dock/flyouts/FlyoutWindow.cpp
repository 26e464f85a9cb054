#include "dock/flyouts/FlyoutWindow.h"

#include <algorithm>
#include <utility>

#include "content/ElementAction.h"
#include "dock/DockMessages.h"
#include "dock/flyouts/DockButton.h"
#include "dock/flyouts/PainterPicture.h"
#include "resources/resource.h"
#include "system/Guard.h"
#include "system/ScopeExit.h"
#include "toolkit/BackPlate.h"
#include "toolkit/drawing/BackgroundHighlightButtonPainter.h"
#include "toolkit/drawing/ButtonLayout.h"
#include "toolkit/Scale.h"
#include "tracking/UsageTracker.h"

namespace lumenor {

namespace {

constexpr int rowHeight = 40;
constexpr int headerHeight = 40;

/// The style bits that no flyout has, whatever its template says: caption with its menu, and thick frame.
constexpr LONG frameStyles = WS_CAPTION | WS_SYSMENU | WS_THICKFRAME;
constexpr LONG flyoutExtendedStyles = WS_EX_LAYERED | WS_EX_TOPMOST;

void ApplyStyle(HWND window, int which, LONG style) {
  ::SetWindowLongW(window, which, style);
  ::SetWindowPos(window, nullptr, 0, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

ButtonLayout RowLayout() {
  return {.fontSize = static_cast<float>(ScaleY(13)),
          .textStyle = 30,
          .imageLeft = ScaleX(8),
          .imageRight = ScaleX(208),
          .imageTop = ScaleY(8),
          .imageBottom = ScaleY(8),
          .textLeft = ScaleX(42)};
}

} // namespace

FlyoutWindow::FlyoutWindow(const RECT &bounds, const std::wstring &title, const ElementList &elements)
    : bounds(bounds), backPlate(std::make_shared<BackPlate>(renderTarget, 0.8F, 0.6F)), elements(elements),
      header(std::make_shared<TextElement>(renderTarget)),
      itemClickListener(MakeListener(this, &FlyoutWindow::OnItemClick)) {
  header->SetUp(title, {.size = static_cast<float>(ScaleY(12)), .weight = DWRITE_FONT_WEIGHT_MEDIUM});
  header->Margin.Set({ScaleX(6), ScaleX(6), 0, 0});
  header->Width.Set(ScaleX(228));
  header->Height.Set(ScaleY(13));
  UIElement::SetBounds(&bounds);
  Visibility.Set(lumenor::Visibility::Hidden);
  list.Orientation.Set(lumenor::Orientation::Vertical);
  header->DesiredHeight.Set(headerHeight);
  list.AddChild(header.get());
  dialogId = FlyoutDialogId;
}

void FlyoutWindow::InitializeComponent() {
  ApplyStyle(handle, GWL_STYLE, ::GetWindowLongW(handle, GWL_STYLE) & ~frameStyles);
  ApplyStyle(handle, GWL_EXSTYLE, ::GetWindowLongW(handle, GWL_EXSTYLE) | flyoutExtendedStyles);
  SetChild(&rootPanel);
  rootPanel.AddChild(backPlate.get());
  rootPanel.AddChild(&list);
  if (!elements.empty())
    CreateItems();
}

/// The making of a row may dispatch a message that refreshes the list. The rows that are being made are then out of
/// date: they are made once more, after the making under way and not during it.
void FlyoutWindow::CreateItems() {
  itemsAreCurrent = false;
  if (isMakingItems)
    return;
  const ScopedValue making(isMakingItems, true);
  while (!std::exchange(itemsAreCurrent, true)) {
    MakeItems(ElementList(elements));
    FitToItems();
  }
}

void FlyoutWindow::MakeItems(const ElementList &shown) {
  for (const std::shared_ptr<DockButton> &item : items)
    list.RemoveChild(item.get());
  replacedItems = std::exchange(items, {});
  const ButtonLayout layout = RowLayout();
  for (const Element &element : shown)
    AddItem(element, layout);
}

void FlyoutWindow::FitToItems() {
  UpdateBottom();
  const LONG width = bounds.right - bounds.left;
  const LONG height = bounds.bottom - bounds.top;
  SizeBackPlate();
  // Ahead of the move: a window that is moved takes the size that its element has.
  Width.Set(width);
  Height.Set(height);
  PlaceWindow();
  DesiredWidth.Set(width);
  DesiredHeight.Set(height);
  RedrawNow();
}

/// The rows come from files that others write and are made anew while the dock runs. A picture that can't be decoded
/// costs its row only that picture; passed on, the failure would destroy the flyout at the start and the bar at a
/// refresh.
std::shared_ptr<IButtonPainter> FlyoutWindow::MakePainter(const Element &element, const ButtonLayout &layout) {
  return MakeWithPicture("FlyoutWindow", element.Image, [&](const std::wstring &image) {
    return std::make_shared<BackgroundHighlightButtonPainter>(renderTarget, element.Head, image, layout,
                                                              Color{0.0F, 0.0F, 0.0F, 0.25F});
  });
}

void FlyoutWindow::AddItem(const Element &element, const ButtonLayout &layout) {
  const int index = static_cast<int>(items.size());
  const auto button = std::make_shared<DockButton>(MakePainter(element, layout), element);
  items.push_back(button);
  list.AddChild(button.get());
  ::SetWindowLongW(button->GetHandle(), GWL_ID, FirstFlyoutItemId + index);
  button->DesiredHeight.Set(ScaleY(rowHeight));
  button->Name.Set(element.ToolTip);
  button->Click.AddListener(itemClickListener.get());
}

void FlyoutWindow::UpdateBottom() {
  const LONG rows = static_cast<LONG>(items.size()) * ScaleY(rowHeight);
  bounds.bottom = bounds.top + ScaleY(header->DesiredHeight.Get()) + rows;
}

void FlyoutWindow::SizeBackPlate() {
  const RECT plate = {0, 0, bounds.right - bounds.left, bounds.bottom - bounds.top};
  backPlate->SetBounds(&plate);
}

/// Doesn't activate the window: rows are also made anew while the user does something else. A flyout that took the
/// activation then would close the one that is open, or get the keys typed elsewhere though it is hidden.
void FlyoutWindow::PlaceWindow() {
  if (::IsWindow(handle))
    ::SetWindowPos(handle, nullptr, bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top,
                   SWP_FRAMECHANGED | SWP_NOACTIVATE);
}

void FlyoutWindow::RedrawNow() {
  if (::IsWindow(handle))
    ::RedrawWindow(handle, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
}

void FlyoutWindow::SetBounds(const RECT &rectangle) {
  bounds = rectangle;
  UpdateBottom();
  UIElement::SetBounds(&bounds);
  SizeBackPlate();
  PlaceWindow();
  RedrawNow();
}

void FlyoutWindow::ToggleVisibility() {
  const bool visible = Visibility.Get() == lumenor::Visibility::Visible;
  Visibility.Set(visible ? lumenor::Visibility::Hidden : lumenor::Visibility::Visible);
}

void FlyoutWindow::OnVisibilityChanged(PropertyChangeEventArgs<lumenor::Visibility> *args) {
  Visible.Fire(args);
  if (!::IsWindow(handle))
    return;
  if (args->newValue != lumenor::Visibility::Visible) {
    ::ShowWindow(handle, SW_HIDE);
    return;
  }
  ::SetWindowPos(handle, nullptr, bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top,
                 SWP_SHOWWINDOW);
  Render();
}

BOOL FlyoutWindow::ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                                        DWORD mapId) {
  // Unlike the base's answers these don't destroy the window when they fail: the base handles the message then. Except
  // for WM_CLOSE, on which the base destroys the window: a flyout's is made only once.
  bool handled = false;
  switch (message) {
  case WM_ACTIVATE:
    handled = Guarded(L"OnActivate", [&] {
      if (LOWORD(wParam) == WA_INACTIVE)
        HideWindow();
    });
    break;
  case WM_DESTROY:
    handled = Guarded(L"OnDestroy", [&] { DestroyItemWindows(); });
    break;
  case WM_CLOSE:
    Guarded(L"OnClose", [&] { HideWindow(); });
    handled = true;
    break;
  default:
    break;
  }
  if (!handled)
    return Window::ProcessWindowMessage(window, message, wParam, lParam, result, mapId);
  result = 0;
  return TRUE;
}

void FlyoutWindow::DestroyItemWindows() {
  for (const std::shared_ptr<DockButton> &item : items)
    ::DestroyWindow(item->GetHandle());
}

void FlyoutWindow::HideWindow() {
  if (::IsWindow(handle))
    ::ShowWindow(handle, SW_HIDE);
}

void FlyoutWindow::OnItemClick(ButtonEventArgs *args) {
  if (args->sender == nullptr)
    return;
  const Element chosen = static_cast<DockButton *>(args->sender)->GetElement(); // a copy: the rows may be made anew
  HideWindow();
  OnItemChosen(chosen);
}

void FlyoutWindow::OnItemChosen(const Element &element) {
  RunElementAction(element);
  usageTracker.TrackPopupClick(element);
}

} // namespace lumenor
