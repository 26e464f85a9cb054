// Drag and drop on the bar: a user button that is dragged to another place of the row or off it, and files that are
// dropped onto the row. Both come through the one drop target; a button's drag is one in which `draggedButton` is set.
//
// The platform's loop of a button's drag runs inside a mouse message of that button, and every message of the dock may
// come within it, the end of the dock's window too.

#include "dock/bar/MainDlg.h"

#include <utility>

#include "dock/dragdrop/DataObject.h"
#include "dock/dragdrop/DragSource.h"
#include "dock/dragdrop/DragState.h"
#include "dock/dragdrop/DroppedFile.h"
#include "dock/dragdrop/DropTarget.h"
#include "dock/dragdrop/InsertionIndex.h"
#include "resources/resource.h"
#include "system/Desktop.h"
#include "system/HResultError.h"
#include "system/Instance.h"
#include "system/Launch.h"
#include "system/Log.h"
#include "toolkit/drawing/CommandNotFoundException.h"
#include "toolkit/drawing/WICHelper.h"

#include <shlobj.h>

namespace lumenor {

using Microsoft::WRL::ComPtr;

namespace {

constexpr char cannotAddButton[] = "Could not add Button because the shortcut cannot be found";

// The marker reaches this far from the edge of the button that it stands at, in device pixels at every density.
constexpr LONG indicatorFarSide = 6;
constexpr LONG indicatorNearSide = 3;
constexpr LONG indicatorInset = 3; // from the bar's upper and lower edge

/// The source destroys its cursor, and a loaded one is shared: so it gets one of its own.
ComPtr<CDragSource> MakeDragSource() {
  const HCURSOR shared = ::LoadCursorW(instanceHandle, MAKEINTRESOURCEW(DragCursorId));
  return MakeOleObject<CDragSource>(CopyCursor(shared));
}

/// What a dragged button carries: a list of files that isn't there. The drop target asks for the format alone.
ComPtr<CDataObject> MakeButtonData() {
  const ComPtr<CDataObject> data = MakeOleObject<CDataObject>();
  FORMATETC format = fileListFormat;
  STGMEDIUM medium = {};
  medium.tymed = TYMED_HGLOBAL;
  ThrowIfFailed(data->SetData(&format, &medium, TRUE));
  return data;
}

ComPtr<IDragSourceHelper> MakeDragSourceHelper() {
  ComPtr<IDragSourceHelper> helper;
  ThrowIfFailed(
      ::CoCreateInstance(CLSID_DragDropHelper, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(helper.GetAddressOf())));
  return helper;
}

/// A picture that can't be read any more doesn't keep the button from being moved.
BitmapHandle LoadDragPicture(const std::wstring &image, const std::wstring &program) {
  try {
    return image.empty() ? ShellIconBitmap(program) : LoadHBitmapFromFile(image);
  } catch (const HResultError &) {
    return BitmapHandle();
  }
}

/// Where the platform can't show a picture the drag goes on without one.
void SetDragPicture(IDragSourceHelper &helper, IDataObject &data, const BitmapHandle &picture) {
  BITMAP size = {};
  if (::GetObjectW(picture.Get(), sizeof size, &size) == 0)
    return;
  SHDRAGIMAGE image = {};
  image.sizeDragImage = {size.bmWidth, size.bmHeight};
  image.hbmpDragImage = picture.Get();
  helper.InitializeFromBitmap(&image, &data);
}

POINT MapPoint(HWND from, HWND to, POINT point) {
  ::ClientToScreen(from, &point);
  ::ScreenToClient(to, &point);
  return point;
}

/// The marker's height is that of the bar on the screen, taken for a place in the bar: with the bar at the bottom the
/// marker lies below all that the bar shows, and that is wanted so.
RECT IndicatorPlace(HWND bar, LONG left, LONG right) {
  RECT place = {};
  ::GetWindowRect(bar, &place);
  return {left, place.top + indicatorInset, right, place.bottom - indicatorInset};
}

bool IsAnyMouseButtonDown() {
  for (const int button : {VK_LBUTTON, VK_RBUTTON, VK_MBUTTON})
    if (::GetAsyncKeyState(button) < 0)
      return true;
  return false;
}

} // namespace

// A button's drag.

/// A drag that can't even begin leaves the row as it was.
void CMainDlg::OnButtonDragBegin(ButtonEventArgs *args) {
  if (args->sender == nullptr)
    return;
  args->sender->IsPressed.Set(0);                            // the button never hears of the release
  args->sender->Visibility.Set(lumenor::Visibility::Hidden); // it leaves a gap
  try {
    BeginButtonDrag(args->sender->GetHandle());
  } catch (...) {
    RestoreDraggedButton();
    ForgetDrag();
    throw;
  }
}

void CMainDlg::BeginButtonDrag(HWND buttonWindow) {
  const ComPtr<CDragSource> source = MakeDragSource();
  const ComPtr<CDataObject> data = MakeButtonData();
  const ComPtr<IDragSourceHelper> helper = MakeDragSourceHelper();
  const std::size_t index = IndexOfUserButton(buttonWindow);
  if (index == userButtons.size())
    return ForgetDrag();
  const Element element = userButtons[index]->GetElement();
  const std::wstring program = SplitCommandLine(element.ActionParams).program;
  if (element.Image.empty() && ::GetFileAttributesW(program.c_str()) == INVALID_FILE_ATTRIBUTES)
    return RemoveVanishedButton(buttonWindow);
  SetDragPicture(*helper.Get(), *data.Get(), LoadDragPicture(element.Image, program));
  draggedButton = buttonWindow;
  DWORD effect = 0;
  FinishButtonDrag(::DoDragDrop(data.Get(), source.Get(), DROPEFFECT_MOVE, &effect));
}

/// A button that opens nothing any more goes as soon as it is touched.
void CMainDlg::RemoveVanishedButton(HWND buttonWindow) {
  RemoveButton(buttonWindow);
  draggedButton = nullptr;
  BringToForeground(handle);
  Repaint();
}

/// Dropped off the row the button is gone; after anything else, a failure too, it is there. The mouse message that the
/// drag began in is still to reach the button, which would then glow wherever the cursor has gone: so the leaving,
/// which the drag has swallowed, is told behind it.
void CMainDlg::FinishButtonDrag(HRESULT dragResult) {
  if (draggedButton != nullptr)
    ::PostMessageW(draggedButton, WM_MOUSELEAVE, 0, 0);
  if (dragResult == DRAGDROP_S_DROP && dragOutside)
    RemoveButton(draggedButton);
  else
    RestoreDraggedButton();
  ForgetDrag();
  HideIndicator();
  BringToForeground(handle);
  Repaint();
}

void CMainDlg::RestoreDraggedButton() {
  const std::size_t index = DraggedIndex();
  if (index < userButtons.size())
    userButtons[index]->Visibility.Set(lumenor::Visibility::Visible);
}

/// The number of buttons when none is dragged.
std::size_t CMainDlg::DraggedIndex() const {
  return draggedButton != nullptr ? IndexOfUserButton(draggedButton) : userButtons.size();
}

// What the drop target tells.

void CMainDlg::OnDragOver(POINT point) {
  HideIndicator();
  const LONG left = scrollViewer->Left.Get();
  dragOverButtons = left <= point.x && point.x < left + scrollViewer->Width.Get();
  dragOutside = !dragOverButtons;
  if (const auto index = GetInsertionIndex(MapPoint(handle, userButtonPanel->GetHandle(), point)))
    ShowIndicatorFor(*index);
  Repaint();
}

/// Only a button's own drag goes on outside the bar. Files that have left leave nothing behind that would keep the bar
/// from dimming.
void CMainDlg::OnDragLeave(UINT_PTR buttonId) {
  dragOutside = buttonId != 0 && buttonId == ::HandleToULong(draggedButton);
  HideIndicator();
  Repaint();
}

void CMainDlg::OnButtonDrop(POINT point) {
  if (draggedButton == nullptr)
    return;
  const std::size_t from = DraggedIndex();
  const auto to = GetInsertionIndex(MapPoint(handle, userButtonPanel->GetHandle(), point));
  if (!to || *to > userButtons.size())
    return;
  if (from < *to)
    MoveButton(from, *to - 1); // the index after the removal
  else if (from > *to)
    MoveButton(from, *to);
}

/// The files of one drop come one by one, and the bar is brought forward and painted once for all of them.
void CMainDlg::OnDragAdd(const std::wstring &path, POINT screenPoint) {
  AddDroppedFile(path, screenPoint);
  if (droppedFilesToCome == 0)
    FinishDrop();
}

/// What can't be added isn't looked at. The record of a file that no button can be made for stays with the others and
/// is saved with them. What the shell can't show is no more of a reason to end the bar than what isn't there.
void CMainDlg::AddDroppedFile(const std::wstring &path, POINT screenPoint) {
  const RepaintHold hold(*this);
  ::ScreenToClient(userButtonPanel->GetHandle(), &screenPoint);
  const auto position = GetInsertionIndex(screenPoint);
  if (!position || !CanAddButton(*position))
    return;
  try {
    AddButton(MakeDroppedElement(path), *position);
  } catch (const CommandNotFoundException &) {
    LogError(cannotAddButton);
  } catch (const HResultError &) {
    LogError(cannotAddButton);
  }
}

/// The windows of the new buttons ask for a repaint of the bar each, and the one that is made here shows them all.
void CMainDlg::FinishDrop() {
  {
    const RepaintHold hold(*this);
    HideIndicator();
    BringToForeground(handle);
    ::RedrawWindow(handle, nullptr, nullptr, RDW_VALIDATE | RDW_NOINTERNALPAINT | RDW_ALLCHILDREN);
  }
  Repaint();
}

/// A program that dies while it drags something over the bar tells nobody that it has left. No drag goes on without a
/// button of the mouse.
void CMainDlg::HideForgottenIndicator() {
  if (!dropTarget || !dropTarget->IsInDrag() || draggedButton != nullptr || IsAnyMouseButtonDown())
    return;
  dragOutside = false;
  if (dragIndicator->Width.Get() == 0)
    return;
  HideIndicator();
  Repaint();
}

// Places.

/// Empty off the row.
std::optional<std::size_t> CMainDlg::GetInsertionIndex(POINT rowPoint) const {
  if (!dragOverButtons)
    return std::nullopt;
  std::vector<ButtonSpan> spans;
  for (const auto &button : userButtons)
    spans.push_back({button->Left.Get(), button->Left.Get() + button->Width.Get()});
  return InsertionIndex(rowPoint.x, spans, DraggedIndex());
}

/// Both gaps beside a dragged button are its own place, which shows no marker.
void CMainDlg::ShowIndicatorFor(std::size_t index) {
  const std::size_t count = userButtons.size();
  const std::size_t dragged = DraggedIndex();
  if (dragged < count && (index == dragged || index == dragged + 1))
    return;
  if (index < count)
    ShowIndicatorBefore(index);
  else if (index > 0)
    ShowIndicatorAfter(index - 1);
}

void CMainDlg::ShowIndicatorBefore(std::size_t index) {
  const POINT edge = MapPoint(userButtonPanel->GetHandle(), handle, {userButtons[index]->Left.Get(), 0});
  const RECT place = IndicatorPlace(handle, edge.x - indicatorFarSide, edge.x + indicatorNearSide);
  dragIndicator->SetBounds(&place);
}

void CMainDlg::ShowIndicatorAfter(std::size_t index) {
  const DockButton &button = *userButtons[index];
  const POINT edge = MapPoint(userButtonPanel->GetHandle(), handle, {button.Left.Get() + button.Width.Get(), 0});
  const RECT place = IndicatorPlace(handle, edge.x - indicatorNearSide, edge.x + indicatorFarSide);
  dragIndicator->SetBounds(&place);
}

/// The window may have gone within the drag's loop.
void CMainDlg::Repaint() {
  if (::IsWindow(handle))
    Render();
}

void CMainDlg::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  PaintChild(target, GetChild(), rect);
  PaintChild(target, dragIndicator.get(), rect);
}

} // namespace lumenor
