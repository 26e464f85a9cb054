#pragma once
// What an edit control shows at this moment, read from the control itself. User-interface thread.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "system/Windows.h"

namespace lumenor {

struct EditReading {
  /// What is visible, and some more on both sides.
  std::wstring text;

  /// For every character of `text` where its leading edge is: the left one in text that runs to the right, the right
  /// one in text that runs to the left. Pixels in the control's client area; off its sides when scrolled away.
  std::vector<long> positions;

  /// For every character of `text` how wide it is when it stands alone.
  std::vector<long> widths;

  /// The selected characters of `text`, from the first to behind the last; equal when there are none.
  std::size_t selectionStart = 0;
  std::size_t selectionEnd = 0;

  /// Where an unscrolled text begins.
  long lineStart = 0;

  /// Top and height of the line, and how far below its top the characters stand.
  long top = 0;
  long height = 0;
  long ascent = 0;
};

/// Reads the edit control `window`.
EditReading ReadEdit(HWND window);

/// Where the control has its caret, in its client area; nothing when the caret isn't in this control.
std::optional<RECT> ReadEditCaret(HWND window);

/// The text of a control.
std::wstring ReadWindowText(HWND window);

} // namespace lumenor
