#include "support/Desk.h"

#include <commctrl.h>

#include "support/ImportSlot.h"
#include "support/InputEvents.h"
#include "support/ScreenPicture.h"
#include "system/EventLog.h"

// The slot through which the program calls the event log.
extern "C" BOOL(WINAPI *__imp_ReportEventW)(HANDLE, WORD, WORD, DWORD, PSID, WORD, DWORD, LPCWSTR *, LPVOID);

namespace lumenor::desk {

namespace {

constexpr UINT markMessage = WM_APP + 77;

LRESULT CALLBACK BackdropProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return ::DefWindowProcW(window, message, wParam, lParam);
}

/// As PixelAt tells it.
std::uint32_t RgbOf(COLORREF color) {
  return static_cast<std::uint32_t>(GetRValue(color)) << 16 | static_cast<std::uint32_t>(GetGValue(color)) << 8 |
         GetBValue(color);
}

void Send(INPUT input) { ::SendInput(1, &input, sizeof(input)); }

} // namespace

// Paint messages come only when nothing else waits: the mark is posted again until the queue is dry.
void PumpAll() {
  for (int round = 0; round < 3; ++round) {
    ::PostThreadMessageW(::GetCurrentThreadId(), markMessage, 0, 0);
    PumpUntil([] { return HIWORD(::GetQueueStatus(QS_ALLINPUT)) == 0; });
  }
}

void MoveCursor(POINT point) {
  Send(tests::MoveInput(point));
  PumpUntil([&] { return tests::IsCursorAt(point); });
}

void PressLeftButton() {
  Send(tests::MouseInput(MOUSEEVENTF_LEFTDOWN));
  PumpUntil([] { return ::GetAsyncKeyState(VK_LBUTTON) < 0; });
}

void ReleaseLeftButton() {
  Send(tests::MouseInput(MOUSEEVENTF_LEFTUP));
  PumpUntil([] { return ::GetAsyncKeyState(VK_LBUTTON) >= 0; });
}

void PressKey(WORD virtualKey) { Send(tests::KeyInput(virtualKey, 0)); }

void ReleaseKey(WORD virtualKey) { Send(tests::KeyInput(virtualKey, KEYEVENTF_KEYUP)); }

POINT MiddleOf(HWND window) {
  RECT rect{};
  ::GetWindowRect(window, &rect);
  return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

std::uint32_t PixelAt(POINT point) { return tests::Capture({point.x, point.y, point.x + 1, point.y + 1}).At(0, 0); }

std::vector<HWND> ToolTips() {
  std::vector<HWND> found;
  ::EnumThreadWindows(
      ::GetCurrentThreadId(),
      [](HWND window, LPARAM list) -> BOOL {
        wchar_t name[64] = {};
        ::GetClassNameW(window, name, 64);
        if (std::wstring(name) == TOOLTIPS_CLASSW)
          reinterpret_cast<std::vector<HWND> *>(list)->push_back(window);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&found));
  return found;
}

Backdrop::Backdrop(const RECT &area, COLORREF color) : brush(::CreateSolidBrush(color)) {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = BackdropProcedure;
  windowClass.hInstance = ::GetModuleHandleW(nullptr);
  windowClass.hbrBackground = brush;
  windowClass.lpszClassName = L"LumenorTestBackdrop";
  ::RegisterClassW(&windowClass);
  window = ::CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, windowClass.lpszClassName, nullptr, WS_POPUP, area.left,
                             area.top, area.right - area.left, area.bottom - area.top, nullptr, nullptr,
                             windowClass.hInstance, nullptr);
  ::ShowWindow(window, SW_SHOWNOACTIVATE);
  ::UpdateWindow(window);
  // The display shows what was drawn some time after, and not all of it at once.
  for (const POINT corner : {POINT{area.left, area.top}, POINT{area.right - 1, area.bottom - 1}})
    PumpUntil([&] { return ::WindowFromPoint(corner) != window || PixelAt(corner) == RgbOf(color); });
}

Backdrop::~Backdrop() {
  ::DestroyWindow(window);
  ::UnregisterClassW(L"LumenorTestBackdrop", ::GetModuleHandleW(nullptr));
  ::DeleteObject(brush);
}

namespace {

std::vector<std::wstring> reports;
decltype(__imp_ReportEventW) platformReportEvent = nullptr;

BOOL WINAPI HearReport(HANDLE log, WORD type, WORD category, DWORD id, PSID user, WORD count, DWORD size,
                       LPCWSTR *texts, LPVOID data) {
  for (WORD i = 0; i < count; ++i)
    reports.emplace_back(texts[i]);
  return platformReportEvent(log, type, category, id, user, count, size, texts, data);
}

} // namespace

EventLogSpy::EventLogSpy() {
  reports.clear();
  platformReportEvent = ExchangeSlot(&__imp_ReportEventW, &HearReport);
}

EventLogSpy::~EventLogSpy() { ExchangeSlot(&__imp_ReportEventW, platformReportEvent); }

const std::vector<std::wstring> &EventLogSpy::Reports() { return reports; }

} // namespace lumenor::desk
