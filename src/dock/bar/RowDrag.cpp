#include "dock/bar/RowDrag.h"

#include <utility>

#include "dock/DockMessages.h"
#include "dock/dragdrop/DataObject.h"
#include "dock/dragdrop/DragSource.h"
#include "dock/dragdrop/DragState.h"
#include "dock/dragdrop/DroppedFile.h"
#include "dock/dragdrop/DropTarget.h"
#include "resources/resource.h"
#include "system/Desktop.h"
#include "system/HResultError.h"
#include "system/Instance.h"
#include "system/Launch.h"
#include "system/Log.h"
#include "toolkit/drawing/CommandNotFoundException.h"
#include "toolkit/drawing/ProgramAppearance.h"
#include "toolkit/drawing/WICHelper.h"

#include <shlobj.h>

namespace lumenor {

using Microsoft::WRL::ComPtr;

namespace {

constexpr char cannotAddButton[] = "Could not add Button because the shortcut cannot be found";

// How far the marker reaches from the edge of its button, in device pixels at every density.
constexpr LONG indicatorFarSide = 6;
constexpr LONG indicatorNearSide = 3;
constexpr LONG indicatorInset = 3; // from the bar's upper and lower edge

/// The source destroys its cursor and a loaded cursor is shared, so the source gets a copy.
ComPtr<CDragSource> MakeDragSource() {
  const HCURSOR shared = ::LoadCursorW(instanceHandle, MAKEINTRESOURCEW(DragCursorId));
  return MakeComObject<CDragSource>(CopyCursor(shared));
}

/// The data of a dragged button: the format of a list of files, without one. The drop target only asks for the format.
ComPtr<CDataObject> MakeButtonData() {
  const ComPtr<CDataObject> data = MakeComObject<CDataObject>();
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
    return image.empty() ? ProgramImage(program) : LoadHBitmapFromFile(image);
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

bool IsAnyMouseButtonDown() {
  for (const int button : {VK_LBUTTON, VK_RBUTTON, VK_MBUTTON})
    if (::GetAsyncKeyState(button) < 0)
      return true;
  return false;
}

} // namespace

RowDrag::RowDrag(Window &window, const Bar &bar, UserRow &row)
    : window(window), bar(bar), row(row), dragBeginListener(MakeListener(this, &RowDrag::OnButtonDragBegin)) {
  ForgetDrag();
  row.SetDragListener(dragBeginListener.get());
}

RowDrag::~RowDrag() = default;

void RowDrag::AcceptDrops() {
  dropTarget = MakeComObject<CDropTarget>(window.GetHandle());
  ThrowIfFailed(::RegisterDragDrop(window.GetHandle(), dropTarget.Get()));
}

void RowDrag::RefuseDrops() { ::RevokeDragDrop(window.GetHandle()); }

// A button's drag.

/// A drag that can't even begin leaves the row as it was.
void RowDrag::OnButtonDragBegin(ButtonEventArgs *args) {
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

void RowDrag::BeginButtonDrag(HWND buttonWindow) {
  const ComPtr<CDragSource> source = MakeDragSource();
  const ComPtr<CDataObject> data = MakeButtonData();
  const ComPtr<IDragSourceHelper> helper = MakeDragSourceHelper();
  const std::size_t index = row.IndexOf(buttonWindow);
  if (index == row.GetButtons().size())
    return ForgetDrag();
  const Element element = row.GetButtons()[index]->GetElement();
  const std::wstring program = SplitCommandLine(element.ActionParams).program;
  if (element.Image.empty() && ::GetFileAttributesW(program.c_str()) == INVALID_FILE_ATTRIBUTES)
    return RemoveVanishedButton(buttonWindow);
  SetDragPicture(*helper.Get(), *data.Get(), LoadDragPicture(element.Image, program));
  draggedButton = buttonWindow;
  DWORD effect = 0;
  FinishButtonDrag(::DoDragDrop(data.Get(), source.Get(), DROPEFFECT_MOVE, &effect));
}

/// A button that opens nothing any more goes as soon as it is touched.
void RowDrag::RemoveVanishedButton(HWND buttonWindow) {
  row.Remove(buttonWindow);
  draggedButton = nullptr;
  BringToForeground(window.GetHandle());
  Repaint();
}

/// A button that was dropped off the row goes; after anything else, a failure too, it stays. The mouse message that
/// began the drag still reaches the button, which would then glow wherever the cursor is: the WM_MOUSELEAVE that the
/// drag has swallowed is posted after it.
void RowDrag::FinishButtonDrag(HRESULT dragResult) {
  if (draggedButton != nullptr)
    ::PostMessageW(draggedButton, WM_MOUSELEAVE, 0, 0);
  if (dragResult == DRAGDROP_S_DROP && dragOutside)
    row.Remove(draggedButton);
  else
    RestoreDraggedButton();
  ForgetDrag();
  bar.HideIndicator();
  BringToForeground(window.GetHandle());
  Repaint();
}

void RowDrag::RestoreDraggedButton() {
  const std::size_t index = row.IndexOf(draggedButton);
  if (index < row.GetButtons().size())
    row.GetButtons()[index]->Visibility.Set(lumenor::Visibility::Visible);
}

// What the drop target reports.

bool RowDrag::OnNotify(const NMHDR &header) {
  switch (header.code) {
  case NoNotification:
    return true;
  case DragEnterNotification:
  case DragOverNotification:
    OnDragOver(UnpackedPoint(header.idFrom));
    return true;
  case DragLeaveNotification:
    OnDragLeave(header.idFrom);
    return true;
  case DropNotification:
    OnButtonDrop(UnpackedPoint(header.idFrom));
    return true;
  default:
    return false;
  }
}

void RowDrag::OnDragOver(POINT screenPoint) {
  POINT point = screenPoint;
  ::ScreenToClient(window.GetHandle(), &point);
  bar.HideIndicator();
  const LONG left = bar.scrollViewer->Left.Get();
  dragOverButtons = left <= point.x && point.x < left + bar.scrollViewer->Width.Get();
  dragOutside = !dragOverButtons;
  if (const auto index = GetInsertionIndex(screenPoint))
    ShowIndicatorFor(*index);
  Repaint();
}

/// Only a button's own drag goes on outside the bar. Files that have left leave nothing behind that would keep the bar
/// from dimming.
void RowDrag::OnDragLeave(UINT_PTR buttonId) {
  dragOutside = buttonId != 0 && buttonId == ::HandleToULong(draggedButton);
  bar.HideIndicator();
  Repaint();
}

void RowDrag::OnButtonDrop(POINT screenPoint) {
  if (draggedButton == nullptr)
    return;
  const std::size_t from = row.IndexOf(draggedButton);
  const auto to = GetInsertionIndex(screenPoint);
  if (!to || *to > row.GetButtons().size())
    return;
  if (from < *to)
    row.Move(from, *to - 1); // the index after the removal
  else if (from > *to)
    row.Move(from, *to);
}

/// The files of one drop come one by one, and the bar is brought forward and painted once for all of them.
void RowDrag::OnDragAdd(const std::wstring &path, POINT screenPoint) {
  AddDroppedFile(path, screenPoint);
  if (droppedFilesToCome == 0)
    FinishDrop();
}

/// A file that can't be added isn't read. The record of a file that makes no button stays in the list and is saved with
/// it. Neither a file that can't be shown nor a use that can't be counted ends the bar, with all that the user has
/// moved and added since the start.
void RowDrag::AddDroppedFile(const std::wstring &path, POINT screenPoint) {
  const Window::RepaintHold hold(window);
  const auto position = GetInsertionIndex(screenPoint);
  if (!position || !row.CanAdd(*position))
    return;
  try {
    row.Add(MakeDroppedElement(path), *position);
  } catch (const CommandNotFoundException &) {
    LogError(cannotAddButton);
  } catch (const HResultError &error) {
    LogError("MainDlg: a drop of %S failed, error %x", path.c_str(), static_cast<unsigned>(error.Result()));
  }
}

/// The windows of the new buttons ask for a repaint of the bar each, and the one that is made here shows them all.
void RowDrag::FinishDrop() {
  {
    const Window::RepaintHold hold(window);
    bar.HideIndicator();
    BringToForeground(window.GetHandle());
    ::RedrawWindow(window.GetHandle(), nullptr, nullptr, RDW_VALIDATE | RDW_NOINTERNALPAINT | RDW_ALLCHILDREN);
  }
  Repaint();
}

/// No drag goes on without a button of the mouse.
void RowDrag::HideForgottenIndicator() {
  if (!dropTarget || !dropTarget->IsInDrag() || draggedButton != nullptr || IsAnyMouseButtonDown())
    return;
  dragOutside = false;
  if (bar.dragIndicator->Width.Get() == 0)
    return;
  bar.HideIndicator();
  Repaint();
}

// Places.

/// Empty off the row.
std::optional<std::size_t> RowDrag::GetInsertionIndex(POINT screenPoint) const {
  if (!dragOverButtons)
    return std::nullopt;
  ::ScreenToClient(bar.userButtonPanel->GetHandle(), &screenPoint);
  return InsertionIndex(screenPoint.x, row.GetSpans(), row.IndexOf(draggedButton));
}

/// Both gaps beside a dragged button are its own place, which shows no marker.
void RowDrag::ShowIndicatorFor(std::size_t index) {
  const std::vector<ButtonSpan> spans = row.GetSpans();
  const std::size_t dragged = row.IndexOf(draggedButton);
  if (dragged < spans.size() && (index == dragged || index == dragged + 1))
    return;
  if (index < spans.size())
    ShowIndicatorAt(spans[index].left, indicatorFarSide, indicatorNearSide);
  else if (index > 0)
    ShowIndicatorAt(spans[index - 1].right, indicatorNearSide, indicatorFarSide);
}

/// Shows the marker around `rowX` on the row, `before` to its left and `behind` to its right. Its height is that of the
/// bar on the screen, taken for a place in the bar: with the bar at the bottom the marker lies below all that the bar
/// shows, which is intentional.
void RowDrag::ShowIndicatorAt(LONG rowX, LONG before, LONG behind) {
  POINT edge = {rowX, 0};
  ::MapWindowPoints(bar.userButtonPanel->GetHandle(), window.GetHandle(), &edge, 1);
  RECT place = {};
  ::GetWindowRect(window.GetHandle(), &place);
  place = {edge.x - before, place.top + indicatorInset, edge.x + behind, place.bottom - indicatorInset};
  bar.dragIndicator->SetBounds(&place);
}

/// The window may have been destroyed within the drag's loop.
void RowDrag::Repaint() {
  if (::IsWindow(window.GetHandle()))
    window.Render();
}

} // namespace lumenor
