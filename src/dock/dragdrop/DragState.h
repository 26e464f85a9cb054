#pragma once
// The state of the drag in progress, shared by the buttons, the drop target and the bar, which have no pointers to each
// other. Process-wide; user-interface thread only.

#include "system/Windows.h"

namespace lumenor {

/// The window of the user button that is being dragged, or null.
inline HWND draggedButton = nullptr;

/// True while a drag's cursor is off the row of user buttons.
inline bool dragOutside = false;

/// True while a drag's cursor is over the row of user buttons.
inline bool dragOverButtons = false;

/// How many files of the current drop come after the present one.
inline unsigned droppedFilesToCome = 0;

/// Resets the first three to the state without a drag.
inline void ForgetDrag() {
  draggedButton = nullptr;
  dragOutside = false;
  dragOverButtons = false;
}

} // namespace lumenor
