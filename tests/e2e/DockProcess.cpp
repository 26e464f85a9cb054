#include "e2e/DockProcess.h"

#include <cstdio>
#include <stdexcept>
#include <utility>

#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "support/StartProgram.h"

namespace lumenor::e2e {
namespace {

constexpr wchar_t barTitle[] = L"Lumenor Dock";
constexpr DWORD exitLimitMs = 60'000;
constexpr std::chrono::seconds clearLimit(5); // then the test goes on: something else may stand there by now

std::wstring TitleOf(HWND window) {
  wchar_t text[64] = {};
  ::InternalGetWindowText(window, text, 64); // from outside the process, without waiting for its thread
  return text;
}

int PixelCount(const RECT &area) { return (area.right - area.left) * (area.bottom - area.top); }

template <typename Visit> void ForEachTopLevelWindow(Visit visit) {
  ::EnumWindows(
      [](HWND window, LPARAM parameter) -> BOOL {
        (*reinterpret_cast<Visit *>(parameter))(window);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&visit));
}

template <typename Visit> void ForEachChild(HWND parent, Visit visit) {
  ::EnumChildWindows(
      parent,
      [](HWND window, LPARAM parameter) -> BOOL {
        (*reinterpret_cast<Visit *>(parameter))(window);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&visit));
}

} // namespace

DockProcess::DockProcess(const Installation &installation, const std::wstring &arguments, const std::wstring &program)
    : screen{0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)}, bareScreen(Capture(screen)) {
  ::SetEnvironmentVariableW(L"LUMENOR_LOGGING", L"3");
  tests::StartedProgram dock =
      tests::StartProgram(L"\"" + (program.empty() ? installation.DockExe() : program) + L"\" " + arguments);
  process = std::move(dock.process);
  id = dock.id;
}

DockProcess::~DockProcess() {
  if (!IsRunning())
    return;
  const HWND bar = Bar();
  if (bar != nullptr)
    ::PostMessageW(bar, WM_CLOSE, 0, 0);
  // Without its bar it is on its way out already, or will never go.
  if (::WaitForSingleObject(process.Get(), bar != nullptr ? exitLimitMs : 1000) != WAIT_OBJECT_0)
    Kill();
}

void DockProcess::Kill() const {
  ::TerminateProcess(process.Get(), 99);
  ::WaitForSingleObject(process.Get(), 5000);
  WaitForClearScreen();
}

// The display takes a dead program's windows away a moment after the program has gone. The next dock would take the bar
// that is still to be seen for the screen without one.
void DockProcess::WaitForClearScreen() const {
  if (::IsRectEmpty(&shownAt))
    return;
  WaitFor([&] { return Capture(shownAt).Differences(bareScreen.Part(shownAt)) <= PixelCount(shownAt) / 2; },
          clearLimit);
}

bool DockProcess::IsRunning() const { return process && ::WaitForSingleObject(process.Get(), 0) == WAIT_TIMEOUT; }

std::optional<DWORD> DockProcess::WaitForExit() const {
  DWORD code = 0;
  if (!process || ::WaitForSingleObject(process.Get(), exitLimitMs) != WAIT_OBJECT_0 ||
      !::GetExitCodeProcess(process.Get(), &code))
    return std::nullopt;
  WaitForClearScreen();
  return code;
}

// The old window may go between two looks: each look asks once.
bool DockProcess::WaitForNewBar(HWND previous) const {
  return WaitFor([&] {
    const HWND bar = Bar();
    return bar != nullptr && bar != previous;
  });
}

HWND DockProcess::WaitForBar() {
  if (!WaitFor([&] { return Bar() != nullptr || !IsRunning(); }) || Bar() == nullptr)
    return nullptr;
  const RECT bar = BarRect();
  if (!WaitForPaint(bar))
    return nullptr;
  ::IntersectRect(&shownAt, &bar, &screen);
  MoveCursor(Rest());
  CaptureSettled(BarRect());
  return Bar();
}

bool DockProcess::WaitForPaint(const RECT &area) const {
  RECT visible = {};
  ::IntersectRect(&visible, &area, &screen);
  return WaitFor([&] { return Capture(visible).Differences(bareScreen.Part(visible)) > PixelCount(visible) / 2; });
}

HWND DockProcess::WaitForPopup() const {
  HWND popup = nullptr;
  const auto isThere = [&] {
    const std::vector<HWND> popups = Popups();
    popup = popups.size() == 1 ? popups[0] : nullptr;
    return popup != nullptr;
  };
  if (!WaitFor(isThere) || !WaitForPaint(RectOf(popup)))
    return nullptr;
  CaptureSettled(RectOf(popup));
  return popup;
}

bool DockProcess::WaitForNoPopup() const {
  if (WaitFor([&] { return Popups().empty(); }))
    return true;
  PrintActivation();
  return false;
}

// A popup that stays is nearly always a matter of which window is the active one.
void DockProcess::PrintActivation() const {
  GUITHREADINFO thread = {};
  thread.cbSize = sizeof(thread);
  ::GetGUIThreadInfo(::GetWindowThreadProcessId(Bar(), nullptr), &thread);
  POINT cursor = {};
  ::GetCursorPos(&cursor);
  std::printf("bar %p, foreground %p, active %p, focus %p, capture %p, cursor %ld,%ld, popups",
              static_cast<void *>(Bar()), static_cast<void *>(::GetForegroundWindow()),
              static_cast<void *>(thread.hwndActive), static_cast<void *>(thread.hwndFocus),
              static_cast<void *>(thread.hwndCapture), cursor.x, cursor.y);
  for (const HWND popup : Popups())
    std::printf(" %p", static_cast<void *>(popup));
  std::printf("\n");
}

std::vector<HWND> DockProcess::TopLevelWindows() const {
  std::vector<HWND> windows;
  ForEachTopLevelWindow([&](HWND window) {
    DWORD owner = 0;
    ::GetWindowThreadProcessId(window, &owner);
    if (owner == id && ::IsWindowVisible(window))
      windows.push_back(window);
  });
  return windows;
}

HWND DockProcess::Bar() const {
  for (const HWND window : TopLevelWindows())
    if (TitleOf(window) == barTitle)
      return window;
  return nullptr;
}

std::vector<HWND> DockProcess::Popups() const {
  std::vector<HWND> popups;
  for (const HWND window : TopLevelWindows())
    if (TitleOf(window) != barTitle && !IsToolTip(window))
      popups.push_back(window);
  return popups;
}

HWND DockProcess::ToolTip() const {
  for (const HWND window : TopLevelWindows())
    if (IsToolTip(window))
      return window;
  return nullptr;
}

RECT DockProcess::BarRect() const { return RectOf(Bar()); }

HWND DockProcess::Control(int controlId) const { return DescendantOf(Bar(), controlId); }

POINT DockProcess::MainButton(int index) const { return Center(RectOf(Control(1000 + index))); }

POINT DockProcess::UserButton(int index) const { return Center(RectOf(Control(2000 + index))); }

POINT DockProcess::SystemButton(int index) const {
  // The panel of the three lies 148 right and 2 below the corner of the fixed end, which is 204 wide; each is 16 wide
  // and 2 from the one before.
  const RECT bar = BarRect();
  return {bar.right - Scaled(204) + Scaled(148) + index * (Scaled(16) + 2) + Scaled(8), bar.top + Scaled(2 + 8)};
}

POINT DockProcess::OnCanvas(int x, int y) const {
  const RECT bar = BarRect();
  return {bar.right - Scaled(204) + Scaled(x), bar.top + Scaled(y)};
}

RECT DockProcess::CanvasRect(int left, int top, int width, int height) const {
  const POINT corner = OnCanvas(left, top);
  return {corner.x, corner.y, corner.x + Scaled(width), corner.y + Scaled(height)};
}

std::wstring DockProcess::FieldText() const {
  wchar_t text[1024] = {};
  ::SendMessageW(Field(), WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text));
  return text;
}

SIZE DockProcess::FieldSelection() const {
  const LRESULT ends = ::SendMessageW(Field(), EM_GETSEL, 0, 0);
  return {LOWORD(ends), HIWORD(ends)};
}

HWND DockProcess::Row() const { return ::GetParent(Control(2000)); }

LONG DockProcess::RowLeft() const { return RectOf(Row()).left - RectOf(::GetParent(Row())).left; }

HWND DockProcess::Arrow(bool left) const {
  const HWND row = Row(), viewport = ::GetParent(row);
  const LONG middle = Center(RectOf(viewport)).x;
  HWND found = nullptr;
  ForEachChild(viewport, [&](HWND window) {
    if (::GetParent(window) == viewport && window != row && ::IsWindowVisible(window) &&
        (RectOf(window).left < middle) == left)
      found = window;
  });
  return found;
}

ShownDock::ShownDock(const Installation &installation, const std::wstring &arguments, const std::wstring &program)
    : DockProcess(installation, arguments, program) {
  if (WaitForBar() == nullptr)
    throw std::runtime_error("the dock has started without showing its bar");
}

HWND DescendantOf(HWND window, int controlId) {
  HWND found = nullptr;
  ForEachChild(window, [&](HWND below) {
    if (found == nullptr && ::GetWindowLongW(below, GWL_ID) == controlId)
      found = below;
  });
  return found;
}

RECT RectOf(HWND window) {
  RECT r = {};
  ::GetWindowRect(window, &r);
  return r;
}

LONG HeightOf(HWND window) { return RectOf(window).bottom - RectOf(window).top; }

::testing::AssertionResult StandsAt(HWND window, const RECT &place) {
  const RECT r = RectOf(window);
  if (::EqualRect(&place, &r))
    return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "it stands at " << r.left << ' ' << r.top << ' ' << r.right << ' '
                                       << r.bottom;
}

int Scaled(int designPixels) {
  const WindowDeviceContext screen(nullptr);
  return ::MulDiv(designPixels, ::GetDeviceCaps(screen.Get(), LOGPIXELSX), 96);
}

} // namespace lumenor::e2e
