#include "support/InputEvents.h"

namespace lumenor::tests {

namespace {

/// A place on an axis of `pixels` in the units of the input queue, which rounds down.
LONG AbsolutePlace(LONG place, int pixels) { return ::MulDiv(place, 65536, pixels) + 1; }

} // namespace

INPUT MouseInput(DWORD flags) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = flags;
  return input;
}

INPUT MoveInput(POINT point) {
  INPUT input = MouseInput(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE);
  input.mi.dx = AbsolutePlace(point.x, ::GetSystemMetrics(SM_CXSCREEN));
  input.mi.dy = AbsolutePlace(point.y, ::GetSystemMetrics(SM_CYSCREEN));
  return input;
}

INPUT KeyInput(WORD virtualKey, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = virtualKey;
  input.ki.dwFlags = flags;
  return input;
}

bool IsCursorAt(POINT point) {
  POINT now = {};
  return ::GetCursorPos(&now) && now.x == point.x && now.y == point.y;
}

} // namespace lumenor::tests
