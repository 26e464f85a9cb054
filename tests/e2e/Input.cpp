#include "e2e/Input.h"

#include <cstring>

#include "e2e/Screen.h"
#include "system/Handles.h"

namespace lumenor::e2e {
namespace {

// Between two events of one hand; the receiver's queue is asked in between, as it is on a real desk.
constexpr auto handPace = std::chrono::milliseconds(50);
constexpr auto typingPace = std::chrono::milliseconds(20);

void Send(INPUT input, std::chrono::milliseconds pace = handPace) {
  ::SendInput(1, &input, sizeof(input));
  std::this_thread::sleep_for(pace);
}

INPUT MouseInput(DWORD flags, LONG x = 0, LONG y = 0) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dx = x;
  input.mi.dy = y;
  input.mi.dwFlags = flags;
  return input;
}

INPUT MoveInput(POINT point) {
  return MouseInput(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE,
                    ::MulDiv(point.x, 65536, ::GetSystemMetrics(SM_CXSCREEN)) + 1,
                    ::MulDiv(point.y, 65536, ::GetSystemMetrics(SM_CYSCREEN)) + 1);
}

/// The keys beside the number pad, which shift takes for digits otherwise.
bool IsExtended(WORD virtualKey) {
  return (virtualKey >= VK_PRIOR && virtualKey <= VK_DOWN) || virtualKey == VK_INSERT || virtualKey == VK_DELETE;
}

void SendKey(WORD virtualKey, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = virtualKey;
  input.ki.wScan = static_cast<WORD>(::MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = flags | (IsExtended(virtualKey) ? KEYEVENTF_EXTENDEDKEY : 0);
  Send(input, typingPace);
}

void SendUnit(wchar_t unit, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wScan = unit;
  input.ki.dwFlags = KEYEVENTF_UNICODE | flags;
  Send(input, typingPace);
}

} // namespace

void MoveCursor(POINT point) {
  Send(MoveInput(point));
  WaitFor([&] {
    POINT now = {};
    return ::GetCursorPos(&now) && now.x == point.x && now.y == point.y;
  });
}

void PressLeftButton() { Send(MouseInput(MOUSEEVENTF_LEFTDOWN)); }

void ReleaseLeftButton() { Send(MouseInput(MOUSEEVENTF_LEFTUP)); }

void Click(POINT point) {
  MoveCursor(point);
  PressLeftButton();
  ReleaseLeftButton();
}

void PressKey(WORD virtualKey) {
  SendKey(virtualKey, 0);
  SendKey(virtualKey, KEYEVENTF_KEYUP);
}

void ClickAtOnce(POINT point) {
  INPUT inputs[] = {MoveInput(point), MouseInput(MOUSEEVENTF_LEFTDOWN), MouseInput(MOUSEEVENTF_LEFTUP)};
  ::SendInput(3, inputs, sizeof(INPUT));
}

void Drag(POINT from, POINT to) {
  MoveCursor(from);
  PressLeftButton();
  MoveCursor(to);
  ReleaseLeftButton();
}

void LetGo(POINT place) {
  for (int i = 1; i < 7; ++i)
    MoveCursor({place.x + i % 2, place.y});
  ReleaseLeftButton();
}

void DragThrough(const std::vector<POINT> &places) {
  MoveCursor(places.front());
  PressLeftButton();
  MoveCursor({places.front().x + 6, places.front().y});
  for (std::size_t i = 1; i < places.size(); ++i)
    MoveCursor(places[i]);
  LetGo(places.back());
}

void PressKeyWith(WORD modifier, WORD virtualKey, int times) {
  SendKey(modifier, 0);
  for (int i = 0; i < times; ++i)
    PressKey(virtualKey);
  SendKey(modifier, KEYEVENTF_KEYUP);
}

void TypeText(const std::wstring &text) {
  for (const wchar_t unit : text) {
    SendUnit(unit, 0);
    SendUnit(unit, KEYEVENTF_KEYUP);
  }
}

void CopyToClipboard(const std::wstring &text) {
  const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
  const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE, bytes);
  std::memcpy(::GlobalLock(memory), text.c_str(), bytes);
  ::GlobalUnlock(memory);
  // What is put on the clipboard needs an owner; the clipboard keeps it when the owner has gone.
  const WindowHandle owner(
      ::CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr));
  WaitFor([&] { return ::OpenClipboard(owner.Get()) != FALSE; });
  ::EmptyClipboard();
  ::SetClipboardData(CF_UNICODETEXT, memory);
  ::CloseClipboard();
}

} // namespace lumenor::e2e
