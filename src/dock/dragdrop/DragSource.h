#pragma once
// The drop source of a dragged button: it decides when the drag ends, and shows the cursor of a removal while the drag
// is off the row. Lives by its references. User-interface thread.

#include "dock/dragdrop/DragState.h"
#include "system/ComObject.h"
#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

class CDragSource : public ComObject<IDropSource> {
public:
  /// Takes `cursor` over and destroys it in the end.
  explicit CDragSource(HCURSOR cursor) : cursor(cursor) {}

  /// Goes on as long as the left mouse button is down, and drops when it comes up.
  HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escapePressed, DWORD keyState) noexcept override {
    if (escapePressed)
      return DRAGDROP_S_CANCEL;
    return (keyState & MK_LBUTTON) != 0 ? S_OK : DRAGDROP_S_DROP;
  }

  HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD) noexcept override {
    if (!dragOutside)
      return DRAGDROP_S_USEDEFAULTCURSORS;
    ::SetCursor(cursor.Get());
    return S_OK;
  }

private:
  ~CDragSource() override = default;

  CursorHandle cursor;
};

} // namespace lumenor
