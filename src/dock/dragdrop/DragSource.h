#pragma once
// The drop source of a dragged button: it decides when the drag ends, and shows the cursor of a removal while the drag
// is off the row. Lives by its references. User-interface thread.

#include "system/ComObject.h"
#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

class CDragSource : public ComObject<IDropSource> {
public:
  /// Takes `cursor` over and destroys it in the end.
  explicit CDragSource(HCURSOR cursor) : cursor(cursor) {}

  /// Goes on as long as the left mouse button is down, and drops when it comes up.
  HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escapePressed, DWORD keyState) noexcept override;

  HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD effect) noexcept override;

private:
  ~CDragSource() override = default;

  CursorHandle cursor;
};

} // namespace lumenor
