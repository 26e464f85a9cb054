#include "dock/dragdrop/InsertionIndex.h"

namespace lumenor {

namespace {

/// Both ends of the button count as on it.
bool IsOn(const ButtonSpan &button, long x) { return x >= button.left && x <= button.right; }

bool IsOnFirstHalf(const ButtonSpan &button, long x) { return x < button.left + (button.right - button.left) / 2; }

} // namespace

std::size_t InsertionIndex(long x, const std::vector<ButtonSpan> &buttons, std::size_t dragged) {
  bool hasPassed = false;
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    if (IsOn(buttons[i], x))
      return i == dragged || IsOnFirstHalf(buttons[i], x) ? i : i + 1;
    if (hasPassed && x < buttons[i].left)
      return i;
    hasPassed = hasPassed || x > buttons[i].right;
  }
  return buttons.empty() || x < buttons.front().left ? 0 : buttons.size();
}

} // namespace lumenor
