#include "e2e/Input.h"

#include "e2e/Screen.h"

namespace lumenor::e2e {
namespace {

// Between two events of one hand; the receiver's queue is asked in between, as it is on a real desk.
constexpr auto handPace = std::chrono::milliseconds(50);

void Send(INPUT input) {
  ::SendInput(1, &input, sizeof(input));
  std::this_thread::sleep_for(handPace);
}

void SendMouse(DWORD flags, LONG x = 0, LONG y = 0) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dx = x;
  input.mi.dy = y;
  input.mi.dwFlags = flags;
  Send(input);
}

void SendKey(WORD virtualKey, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = virtualKey;
  input.ki.dwFlags = flags;
  Send(input);
}

} // namespace

void MoveCursor(POINT point) {
  SendMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, ::MulDiv(point.x, 65536, ::GetSystemMetrics(SM_CXSCREEN)) + 1,
            ::MulDiv(point.y, 65536, ::GetSystemMetrics(SM_CYSCREEN)) + 1);
  WaitFor([&] {
    POINT now = {};
    return ::GetCursorPos(&now) && now.x == point.x && now.y == point.y;
  });
}

void PressLeftButton() { SendMouse(MOUSEEVENTF_LEFTDOWN); }

void ReleaseLeftButton() { SendMouse(MOUSEEVENTF_LEFTUP); }

void Click(POINT point) {
  MoveCursor(point);
  PressLeftButton();
  ReleaseLeftButton();
}

void PressKey(WORD virtualKey) {
  SendKey(virtualKey, 0);
  SendKey(virtualKey, KEYEVENTF_KEYUP);
}

} // namespace lumenor::e2e
