#include <stdexcept>

#include "e2e/Input.h"
#include "e2e/ResetDialog.h"
#include "e2e/Screen.h"
#include "soak/Actions.h"
#include "system/Handles.h"

namespace lumenor::soak {
namespace {

using e2e::Center;

constexpr UINT_PTR trackingTimer = 8;
constexpr UINT answerLimitMs = 60'000;
constexpr auto hold = std::chrono::milliseconds(100); // less than the dock tries for

FileHandle HoldAlone(const std::wstring &path) {
  return FileHandle(::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
}

/// Opens the dialog and clicks its first or its second button, until `condition` holds.
void AnswerDialog(Scene &scene, std::size_t button, const std::function<bool()> &condition, const std::string &what) {
  scene.WakeBar();
  scene.ClickUntil([&] { return scene.dock->ResetButton(); }, [&] { return !scene.dock->Popups().empty(); },
                   "no dialog opens");
  const HWND dialog = scene.dock->Popups().at(0);
  Scene::Await([&] { return e2e::DialogButtons(dialog).size() == 2; }, "the dialog has no buttons");
  const POINT place = Center(e2e::DialogButtons(dialog).at(button));
  scene.ClickUntil([&] { return place; }, condition, what);
}

} // namespace

/// A virus scanner has the documents open for a moment while the folder is changed.
void HoldFiles(Scene &scene) {
  const FileHandle list = HoldAlone(scene.installation.DocumentPath(e2e::forYouList)),
                   user = HoldAlone(scene.installation.DocumentPath(e2e::userDocument)),
                   fixed = HoldAlone(scene.installation.DocumentPath(e2e::mainDocument));
  e2e::WriteBytes(scene.installation.UserFolder() + L"\\other.txt", "x");
  std::this_thread::sleep_for(hold);
}

void FlushTracking(Scene &scene) { ::PostMessageW(scene.dock->Bar(), WM_TIMER, trackingTimer, 0); }

void StartSecondDock(Scene &scene) {
  const e2e::DockProcess second(scene.installation);
  if (second.WaitForExit() != 0U)
    throw std::runtime_error("a second dock doesn't end with 0");
}

void CancelReset(Scene &scene) {
  AnswerDialog(
      scene, 1, [&] { return scene.dock->Popups().empty(); }, "the dialog doesn't close");
}

void Reset(Scene &scene) {
  const HWND bar = scene.dock->Bar();
  AnswerDialog(
      scene, 0, [&] { return scene.dock->Bar() != bar; }, "the dock isn't reset");
  scene.TakeNewBar();
}

/// The session ends and, since another program holds it up, goes on. What the user made is saved by then.
void EndSession(Scene &scene) {
  DWORD_PTR answer = 0;
  for (const UINT message : {WM_QUERYENDSESSION, WM_ENDSESSION}) {
    ::SendMessageTimeoutW(scene.dock->Bar(), message, message == WM_ENDSESSION, static_cast<LPARAM>(ENDSESSION_LOGOFF),
                          SMTO_NORMAL, answerLimitMs, &answer);
    if (answer != 1)
      throw std::runtime_error("the dock holds up the end of the session");
  }
  scene.CheckDocument();
}

} // namespace lumenor::soak
