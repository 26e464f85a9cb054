#pragma once
// Drag and drop on the bar: a user button that is dragged to another place of the row or off it, and files that are
// dropped onto the row. Both come through the one drop target; a button's drag is one in which `draggedButton` is set.
//
// The platform's loop of a button's drag runs inside a mouse message of that button, and every message of the dock may
// come within it, the end of the dock's window too.
//
// A member of the dock. User-interface thread.

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include <wrl/client.h>

#include "dock/bar/Bar.h"
#include "dock/bar/UserRow.h"
#include "system/Windows.h"
#include "toolkit/drawing/Window.h"
#include "toolkit/Event.h"

namespace lumenor {

class CDropTarget;

/// OLE on the thread of the user interface, which drag and drop needs. Entered and left with the dock.
class OleApartment {
public:
  OleApartment() { ::OleInitialize(nullptr); }
  ~OleApartment() { ::OleUninitialize(); }
  OleApartment(const OleApartment &) = delete;
  OleApartment &operator=(const OleApartment &) = delete;
};

class RowDrag {
public:
  /// All three are borrowed: the dock's window, its tree with the marker, and the row, whose buttons report their drags
  /// here from now on.
  RowDrag(Window &window, const Bar &bar, UserRow &row);
  ~RowDrag();

  /// Makes the dock's window a drop target. Raises HResultError.
  void AcceptDrops();
  void RefuseDrops();

  /// Takes a notification of the drop target. False when it isn't one of those.
  bool OnNotify(const NMHDR &header);

  /// Adds a button for the dropped file `path`; `screenPoint` is where it was dropped.
  void OnDragAdd(const std::wstring &path, POINT screenPoint);

  /// Hides the marker of a drag that has ended without a notification: a program that dies while it drags something
  /// over the bar sends none.
  void HideForgottenIndicator();

private:
  void OnButtonDragBegin(ButtonEventArgs *args);
  void BeginButtonDrag(HWND buttonWindow);
  void RemoveVanishedButton(HWND buttonWindow);
  void FinishButtonDrag(HRESULT dragResult);
  void RestoreDraggedButton();
  void OnDragOver(POINT screenPoint);
  void OnDragLeave(UINT_PTR buttonId);
  void OnButtonDrop(POINT screenPoint);
  void AddDroppedFile(const std::wstring &path, POINT screenPoint);
  void FinishDrop();

  std::optional<std::size_t> GetInsertionIndex(POINT screenPoint) const;
  void ShowIndicatorFor(std::size_t index);
  void ShowIndicatorAt(LONG rowX, LONG before, LONG behind);
  void Repaint();

  Window &window;
  const Bar &bar;
  UserRow &row;
  Microsoft::WRL::ComPtr<CDropTarget> dropTarget;
  ListenerPtr<ButtonEventArgs> dragBeginListener;
};

} // namespace lumenor
