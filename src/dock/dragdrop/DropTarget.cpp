#include "dock/dragdrop/DropTarget.h"

#include <cstring>

#include "dock/DockMessages.h"
#include "dock/dragdrop/DataObject.h"
#include "dock/dragdrop/DragState.h"
#include "system/Handles.h"
#include "system/HResultError.h"
#include "system/Log.h"
#include "system/ScopeExit.h"

#include <shlobj.h>

namespace lumenor {

namespace {

constexpr UINT allFiles = 0xFFFFFFFF;

/// Of the files of one drop, more than any list of buttons can use.
constexpr UINT mostFiles = 1 << 16;

using GlobalBlock = Owner<NullHandleTraits<HGLOBAL, &::GlobalFree>>;

/// The list of files in `block` with an end behind it, in memory that stays where it is. The platform follows the list
/// to its own end, which some programs forget. Empty, with a log line, when the list isn't in the block at all.
GlobalBlock CopyFileList(HGLOBAL block) {
  constexpr std::size_t endBytes = 8; // two nulls of either kind of character, wherever the list breaks off
  const std::size_t size = ::GlobalSize(block);
  const auto *const bytes = static_cast<const char *>(::GlobalLock(block));
  const ScopeExit unlock([&] { ::GlobalUnlock(block); });
  if (bytes == nullptr || size < sizeof(DROPFILES) || reinterpret_cast<const DROPFILES *>(bytes)->pFiles > size) {
    LogError("DropTarget: the list of the dropped files is damaged");
    return GlobalBlock();
  }
  GlobalBlock copy(ThrowIfNull(::GlobalAlloc(GMEM_FIXED | GMEM_ZEROINIT, size + endBytes)));
  std::memcpy(copy.Get(), bytes, size);
  return copy;
}

/// Lets the list begin with its second file.
void SkipFirstFile(DROPFILES &list) {
  const auto *name = reinterpret_cast<const char *>(&list) + list.pFiles;
  const std::size_t characterBytes = list.fWide ? sizeof(wchar_t) : sizeof(char);
  wchar_t character = 0;
  do {
    character = 0;
    std::memcpy(&character, name, characterBytes);
    name += characterBytes;
    list.pFiles += static_cast<DWORD>(characterBytes);
  } while (character != 0);
}

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
    AddDroppedFiles(files.hGlobal, point);
  return result;
}

/// A path is cut at the platform's limit. The platform counts the files from the first one at each question, so that is
/// the only one that it is asked for.
void CDropTarget::AddDroppedFiles(HGLOBAL files, POINTL point) const {
  const GlobalBlock block = CopyFileList(files);
  if (!block)
    return;
  auto &list = *static_cast<DROPFILES *>(block.Get());
  const auto drop = static_cast<HDROP>(block.Get());
  UINT count = ::DragQueryFileW(drop, allFiles, nullptr, 0);
  if (count > mostFiles) {
    LogError("DropTarget: of %u dropped files the first %u are taken", count, mostFiles);
    count = mostFiles;
  }
  for (UINT i = 0; i < count; ++i) {
    const ScopedValue rest(droppedFilesToCome, count - 1 - i); // so that the bar finishes with the last one
    wchar_t path[MAX_PATH + 1] = {};
    if (::DragQueryFileW(drop, 0, path, MAX_PATH) > 0)
      SendAddress(window, DragAddMessage, path, static_cast<LPARAM>(PackedPoint(point)));
    SkipFirstFile(list);
  }
}

void CDropTarget::Notify(UINT code, UINT_PTR idFrom) const {
  const NMHDR header = {window, idFrom, code};
  ::SendMessageW(window, WM_NOTIFY, reinterpret_cast<WPARAM>(window), reinterpret_cast<LPARAM>(&header));
}

} // namespace lumenor
