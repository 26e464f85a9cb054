#include "e2e/Input.h"

#include <cstring>
#include <optional>
#include <string_view>

#include "e2e/Screen.h"
#include "support/InputEvents.h"
#include "system/Handles.h"

namespace lumenor::e2e {

using tests::KeyInput;
using tests::MouseInput;
using tests::MoveInput;

namespace {

// Between two events of one user; the receiver reads its queue in between, as it does under a real user.
constexpr auto handPace = std::chrono::milliseconds(50);
constexpr auto typingPace = std::chrono::milliseconds(20);

HWND WindowBelowCursor() {
  POINT cursor = {};
  ::GetCursorPos(&cursor);
  return ::WindowFromPoint(cursor);
}

void Send(INPUT input, std::chrono::milliseconds pace = handPace) {
  ::SendInput(1, &input, sizeof(input));
  std::this_thread::sleep_for(pace);
  const HWND below = WindowBelowCursor(), foreground = ::GetForegroundWindow();
  tests::WaitUntilInputIsTaken(below);
  if (foreground != below)
    tests::WaitUntilInputIsTaken(foreground);
}

/// The keys beside the number pad, which shift takes for digits otherwise.
bool IsExtended(WORD virtualKey) {
  return (virtualKey >= VK_PRIOR && virtualKey <= VK_DOWN) || virtualKey == VK_INSERT || virtualKey == VK_DELETE;
}

void SendKey(WORD virtualKey, DWORD flags) {
  INPUT input = KeyInput(virtualKey, flags | (IsExtended(virtualKey) ? KEYEVENTF_EXTENDEDKEY : 0));
  input.ki.wScan = static_cast<WORD>(::MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC));
  Send(input, typingPace);
}

void SendUnit(wchar_t unit, DWORD flags) {
  INPUT input = KeyInput(0, KEYEVENTF_UNICODE | flags);
  input.ki.wScan = unit;
  Send(input, typingPace);
}

std::optional<POINT> handPlace; // where the cursor was moved last

/// Sends a change of a button together with where the hand is: a receiver that is late with the reports of its display
/// may have moved the cursor to where it was before, or to where the display's own pointer lies.
void SendButton(DWORD change) {
  INPUT input = handPlace ? MoveInput(*handPlace) : MouseInput(0);
  input.mi.dwFlags |= change;
  Send(input);
}

} // namespace

bool IsToolTip(HWND window) {
  wchar_t name[64] = {};
  ::GetClassNameW(window, name, 64);
  return std::wstring_view(name) == L"tooltips_class32";
}

void MoveCursor(POINT point) {
  handPlace = point;
  // A late report of the display may take the cursor back once.
  WaitFor([&] {
    Send(MoveInput(point));
    return tests::IsCursorAt(point);
  });
}

// A tip that came late may lie between the cursor and what is to be pressed. Windows looks through it, but the test
// platform drops the press. It goes by itself after some seconds.
void PressLeftButton() {
  WaitFor([] { return !IsToolTip(WindowBelowCursor()); });
  SendButton(MOUSEEVENTF_LEFTDOWN);
}

void ReleaseLeftButton() { SendButton(MOUSEEVENTF_LEFTUP); }

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
  handPlace = point;
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
