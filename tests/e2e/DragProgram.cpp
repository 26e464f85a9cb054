#include "e2e/DragProgram.h"

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "support/StartProgram.h"
#include "support/TestFolders.h"

namespace lumenor::e2e {
namespace {

constexpr wchar_t windowClass[] = L"LumenorDragSource";
constexpr wchar_t place[] = L"500 600 ";

std::wstring Arguments(const std::vector<std::wstring> &paths) {
  if (paths.empty())
    return L"text";
  std::wstring arguments = L"files";
  for (const std::wstring &path : paths)
    arguments += L" \"" + path + L"\"";
  return arguments;
}

std::wstring TitleOf(HWND window) {
  wchar_t title[80] = {};
  ::GetWindowTextW(window, title, 80);
  return title;
}

} // namespace

DragProgram::DragProgram(const std::vector<std::wstring> &paths) {
  process =
      tests::StartProgram(L"\"" + tests::BesideThisProgram(L"drag_source.exe") + L"\" " + place + Arguments(paths))
          .process;
  if (!process)
    return;
  WaitFor([&] { return (window = ::FindWindowW(windowClass, nullptr)) != nullptr && ::IsWindowVisible(window); });
  CaptureSettled(RectOf(window));
}

// The test platform gives a drag the mouse only while its program has the foreground. A flyout that hides because this
// program came up lets its bar take the keyboard from the display, on a busy machine some time later.
void DragProgram::Grab() const {
  WaitFor([&] {
    ::SetForegroundWindow(window);
    return HoldsFor([&] { return ::GetForegroundWindow() == window; }, std::chrono::milliseconds(300));
  });
  const POINT grip = Center(RectOf(window));
  MoveCursor(grip);
  PressLeftButton();
  MoveCursor({grip.x + 6, grip.y});
}

void DragProgram::DragTo(POINT target) const {
  Grab();
  MoveCursor(target);
  LetGo(target);
}

std::wstring DragProgram::WaitForResult() const {
  WaitFor([&] { return TitleOf(window) != L"ready"; });
  return TitleOf(window);
}

void DragProgram::Kill() {
  if (!process)
    return;
  ::TerminateProcess(process.Get(), 1);
  ::WaitForSingleObject(process.Get(), 5000);
  WaitFor([&] { return !::IsWindow(window); });
  process.Reset();
}

} // namespace lumenor::e2e
