#include "e2e/TaskBar.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "e2e/Screen.h"

#include <shellapi.h>

namespace lumenor::e2e {
namespace {

constexpr wchar_t trayClass[] = L"Shell_TrayWnd";

// SHAppBarMessage of the test platform sends its question to the window of this class, with the shared memory that the
// answer goes to.
constexpr wchar_t answeringClass[] = L"WineAppBar";

struct BarData {
  std::int32_t window;
  std::uint32_t callbackMessage;
  std::uint32_t edge;
  RECT area;
  std::uint64_t parameter;
};

struct BarQuestion {
  std::uint32_t answerMemory;
  std::uint32_t process;
  BarData data;
};

struct BarAnswer {
  std::uint64_t result;
  BarData data;
};

// The platform's shell library exports these by number only.
constexpr WORD lockSharedOrdinal = 8;
constexpr WORD unlockSharedOrdinal = 9;

// The answer is read from the start of the memory; the lock returns an address that many bytes behind it.
constexpr std::size_t lockedBehind = 4;

template <typename Function> Function ShellFunction(WORD ordinal) {
  const HMODULE library = ::LoadLibraryW(L"shlwapi.dll");
  return reinterpret_cast<Function>(reinterpret_cast<void *>(::GetProcAddress(library, MAKEINTRESOURCEA(ordinal))));
}

void WriteAnswer(const BarQuestion &question, const BarAnswer &answer) {
  static const auto lock = ShellFunction<void *(WINAPI *)(HANDLE, DWORD)>(lockSharedOrdinal);
  static const auto unlock = ShellFunction<BOOL(WINAPI *)(void *)>(unlockSharedOrdinal);
  void *const memory = lock(::ULongToHandle(question.answerMemory), question.process);
  if (memory == nullptr)
    return;
  std::memcpy(static_cast<std::byte *>(memory) - lockedBehind, &answer, sizeof answer);
  unlock(memory);
}

} // namespace

TaskBar::TaskBar(const RECT &area) : area(area), thread([this] { Run(); }) {
  WaitFor([this] { return tray != nullptr && ::FindWindowW(trayClass, nullptr) == tray; });
}

TaskBar::~TaskBar() {
  ::PostMessageW(tray, WM_CLOSE, 0, 0);
  thread.join();
}

void TaskBar::Run() {
  const HWND answering = CreateTopmost(answeringClass, {});
  const HWND window = CreateTopmost(trayClass, area);
  ::ShowWindow(window, SW_SHOWNOACTIVATE);
  tray = window;
  MSG message = {};
  while (::GetMessageW(&message, nullptr, 0, 0) > 0)
    ::DispatchMessageW(&message);
  ::DestroyWindow(answering);
}

HWND TaskBar::CreateTopmost(const wchar_t *className, const RECT &place) {
  WNDCLASSW type = {};
  type.lpfnWndProc = Procedure;
  type.hInstance = ::GetModuleHandleW(nullptr);
  type.lpszClassName = className;
  type.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BACKGROUND + 1);
  ::RegisterClassW(&type);
  const HWND window = ::CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, className, nullptr,
                                        WS_POPUP, place.left, place.top, place.right - place.left,
                                        place.bottom - place.top, nullptr, nullptr, type.hInstance, nullptr);
  ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  return window;
}

LRESULT CALLBACK TaskBar::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto *const self = reinterpret_cast<const TaskBar *>(::GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self != nullptr && message == WM_COPYDATA) {
    self->Answer(*reinterpret_cast<const COPYDATASTRUCT *>(lParam));
    return 0;
  }
  if (self != nullptr && message == WM_DESTROY && self->tray == window)
    ::PostQuitMessage(0);
  return ::DefWindowProcW(window, message, wParam, lParam);
}

void TaskBar::Answer(const COPYDATASTRUCT &sent) const {
  BarQuestion question = {};
  if (sent.cbData != sizeof question)
    return;
  std::memcpy(&question, sent.lpData, sizeof question);
  BarAnswer answer = {TRUE, question.data};
  answer.data.edge = ABE_TOP;
  answer.data.area = area;
  if (sent.dwData == ABM_GETTASKBARPOS)
    WriteAnswer(question, answer);
}

} // namespace lumenor::e2e
