#include "dock/dragdrop/DragSource.h"

#include "dock/dragdrop/DragState.h"

namespace lumenor {

HRESULT CDragSource::QueryContinueDrag(BOOL escapePressed, DWORD keyState) noexcept {
  if (escapePressed)
    return DRAGDROP_S_CANCEL;
  return (keyState & MK_LBUTTON) != 0 ? S_OK : DRAGDROP_S_DROP;
}

HRESULT CDragSource::GiveFeedback(DWORD) noexcept {
  if (!dragOutside)
    return DRAGDROP_S_USEDEFAULTCURSORS;
  ::SetCursor(cursor.Get());
  return S_OK;
}

} // namespace lumenor
