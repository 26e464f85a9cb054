#include "dock/dragdrop/DropTarget.h"

#include <algorithm>
#include <vector>

#include "dock/DockMessages.h"
#include "dock/dragdrop/DataObject.h"
#include "dock/dragdrop/DragState.h"
#include "system/HResultError.h"
#include "system/Log.h"
#include "system/ScopeExit.h"

#include <shlobj.h>

namespace lumenor {

namespace {

constexpr UINT allFiles = 0xFFFFFFFF;

/// A screen point as messages carry it: x in the low half, y in the high one.
DWORD PackedPoint(POINTL point) { return static_cast<DWORD>(MAKELONG(point.x, point.y)); }

/// The effect where the keys ask for none.
DWORD DefaultEffect(DWORD allowed) {
  if ((allowed & DROPEFFECT_COPY) != 0)
    return DROPEFFECT_COPY;
  if ((allowed & DROPEFFECT_MOVE) != 0)
    return DROPEFFECT_MOVE;
  return allowed & DROPEFFECT_LINK;
}

/// The one of the `allowed` effects that a drop would have with these keys; 0 for none.
DWORD PossibleEffect(DWORD keyState, DWORD allowed) {
  switch (keyState & (MK_CONTROL | MK_SHIFT)) {
  case MK_CONTROL | MK_SHIFT: // a link, which is never made on request
    return 0;
  case MK_CONTROL:
    return allowed & DROPEFFECT_COPY;
  case MK_SHIFT:
    return allowed & DROPEFFECT_MOVE;
  default:
    return DefaultEffect(allowed);
  }
}

} // namespace

CDropTarget::CDropTarget(HWND window) : window(window) {
  ThrowIfFailed(
      ::CoCreateInstance(CLSID_DragDropHelper, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(helper.GetAddressOf())));
}

HRESULT CDropTarget::DragEnter(IDataObject *data, DWORD keyState, POINTL point, DWORD *effect) noexcept {
  return Shielded([&] {
    if (data == nullptr || effect == nullptr)
      return E_INVALIDARG;
    POINT place = {point.x, point.y};
    helper->DragEnter(window, data, &place, *effect);
    inDrag = true;
    if (draggedButton != nullptr)
      Notify(DragEnterNotification, PackedPoint(point));
    FORMATETC format = fileListFormat;
    acceptsData = data->QueryGetData(&format) == S_OK;
    ComputeEffect(keyState, *effect);
    return S_OK;
  });
}

HRESULT CDropTarget::DragOver(DWORD keyState, POINTL point, DWORD *effect) noexcept {
  return Shielded([&] {
    if (effect == nullptr)
      return E_INVALIDARG;
    POINT place = {point.x, point.y};
    helper->DragOver(&place, *effect);
    ComputeEffect(keyState, *effect);
    Notify(DragOverNotification, PackedPoint(point));
    if (!dragOverButtons)
      *effect = 0;
    return S_OK;
  });
}

HRESULT CDropTarget::DragLeave() noexcept {
  return Shielded([&] {
    helper->DragLeave();
    inDrag = false;
    acceptsData = false;
    Notify(DragLeaveNotification, ::HandleToULong(draggedButton));
    return S_OK;
  });
}

HRESULT CDropTarget::Drop(IDataObject *data, DWORD keyState, POINTL point, DWORD *effect) noexcept {
  return Shielded([&] {
    if (data == nullptr || effect == nullptr)
      return E_INVALIDARG;
    POINT place = {point.x, point.y};
    helper->Drop(data, &place, *effect);
    inDrag = false;
    const bool isPossible = ComputeEffect(keyState, *effect);
    *effect = 0;
    return isPossible ? Take(*data, point) : E_FAIL;
  });
}

/// Makes of the allowed effects the one that a drop would have; false when it would have none.
bool CDropTarget::ComputeEffect(DWORD keyState, DWORD &effect) const {
  effect = acceptsData ? PossibleEffect(keyState, effect) : 0;
  return effect != 0;
}

HRESULT CDropTarget::Take(IDataObject &data, POINTL point) const {
  FORMATETC format = fileListFormat;
  STGMEDIUM files = {};
  const ScopeExit release([&files] { ::ReleaseStgMedium(&files); }); // filled or not
  const HRESULT result = data.GetData(&format, &files);
  if (FAILED(result)) {
    LogError("DropTarget: the dropped files can't be had, error %x", static_cast<unsigned>(result));
    return result;
  }
  if (draggedButton != nullptr)
    Notify(DropNotification, PackedPoint(point));
  else if (files.tymed == TYMED_HGLOBAL && files.hGlobal != nullptr)
    AddDroppedFiles(static_cast<HDROP>(files.hGlobal), point);
  return result;
}

/// One buffer for all paths, each of which starts at the end of the one before. A path is cut at the platform's limit.
void CDropTarget::AddDroppedFiles(HDROP drop, POINTL point) const {
  const UINT count = ::DragQueryFileW(drop, allFiles, nullptr, 0);
  std::vector<wchar_t> paths(std::size_t{count} * (MAX_PATH + 1) + 1);
  wchar_t *path = paths.data();
  for (UINT i = 0; i < count; ++i) {
    const ScopedValue rest(droppedFilesToCome, count - 1 - i); // so that the bar finishes with the last one
    *path = L'\0';
    const UINT length = ::DragQueryFileW(drop, i, path, MAX_PATH);
    if (length > 0)
      SendAddress(window, DragAddMessage, path, static_cast<LPARAM>(PackedPoint(point)));
    path += std::min<UINT>(length, MAX_PATH - 1);
  }
}

void CDropTarget::Notify(UINT code, UINT_PTR idFrom) const {
  const NMHDR header = {window, idFrom, code};
  ::SendMessageW(window, WM_NOTIFY, reinterpret_cast<WPARAM>(window), reinterpret_cast<LPARAM>(&header));
}

} // namespace lumenor
