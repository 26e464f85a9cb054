#include "support/InputEvents.h"

namespace lumenor::tests {

namespace {

/// A place on an axis of `pixels` in the units of the input queue, which rounds down.
LONG AbsolutePlace(LONG place, int pixels) { return ::MulDiv(place, 65536, pixels) + 1; }

constexpr int messagesOfAnInput = 4; // a move, a button, and two for what the display reports of them
constexpr UINT answerLimitMs = 10'000;

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

// A thread answers what is sent to it before it takes the next message of its queue; so that many answers tell that it
// has taken as many but one.
void WaitUntilInputIsTaken(HWND receiver) {
  DWORD_PTR answer = 0;
  for (int i = 0; i <= messagesOfAnInput; ++i)
    if (::SendMessageTimeoutW(receiver, WM_NULL, 0, 0, SMTO_NORMAL, answerLimitMs, &answer) == 0)
      return; // it has gone, or it has stopped for another reason than a busy machine
}

} // namespace lumenor::tests
