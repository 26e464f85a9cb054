#include <stdexcept>

#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "soak/Actions.h"
#include "support/DisplayMode.h"

namespace lumenor::soak {
namespace {

using e2e::Center;
using e2e::RectOf;

constexpr POINT farAway = {640, 600};
constexpr UINT answerLimitMs = 60'000;

} // namespace

void MoveOverBar(Scene &scene) {
  const RECT bar = scene.dock->BarRect();
  const auto within = [&](LONG from, LONG to) {
    return from + static_cast<LONG>(scene.random.Below(static_cast<std::size_t>(to - from)));
  };
  // The width of the bar depends on the display only, so the choice doesn't depend on time.
  Scene::MoveNear({within(bar.left, bar.right), within(bar.top, bar.bottom)});
}

void MoveAway(Scene &) { e2e::MoveCursor(farAway); }

/// One of the fixed ones that does nothing, or the bar's own ground.
void ClickQuietButton(Scene &scene) {
  scene.ClickNear(scene.random.Once(4) ? scene.dock->Rest() : scene.dock->MainButton(2));
}

void ClickOtherWindow(Scene &scene) {
  scene.ClickUntil([] { return Center(elsewhere); }, [&] { return ::GetForegroundWindow() == scene.other.Handle(); },
                   "the other window isn't activated");
}

void StartProgram(Scene &scene) {
  const int before = scene.StartsWith(fixedStart);
  scene.ClickUntil([&] { return scene.dock->MainButton(0); }, [&] { return scene.StartsWith(fixedStart) > before; },
                   "no program starts");
}

void ToggleEdge(Scene &scene) {
  scene.model.isToggledToTop = !scene.model.isToggledToTop;
  scene.model.ChangeEdge();
  scene.WakeBar();
  scene.ClickUntil([&] { return scene.dock->PositionButton(); },
                   [&] { return e2e::DockValue(L"DockPosition") == scene.model.edge; }, "the toggle writes nothing");
  scene.CheckPlace();
}

void WriteEdge(Scene &scene) {
  scene.model.ChangeEdge();
  e2e::SetDockValue(L"DockPosition", scene.model.edge);
  scene.CheckPlace();
}

void ChangeDisplay(Scene &scene) {
  e2e::MoveCursor(farAway); // the test platform's server doesn't survive a cursor that the new display lacks
  scene.model.isSmallDisplay = !scene.model.isSmallDisplay;
  if ((scene.model.isSmallDisplay ? tests::MakeDisplaySmall() : tests::ChangeDisplay(nullptr)) !=
      DISP_CHANGE_SUCCESSFUL)
    throw std::runtime_error("no other display");
  scene.CheckPlace();
}

/// What the platform sends to every window when the user changes fonts, colours or the theme.
void ReportSettings(Scene &scene) {
  DWORD_PTR answer = 0;
  for (const UINT message : {WM_SETTINGCHANGE, WM_SYSCOLORCHANGE, WM_FONTCHANGE, WM_THEMECHANGED})
    ::SendMessageTimeoutW(scene.dock->Bar(), message, 0, 0, SMTO_NORMAL, answerLimitMs, &answer);
}

} // namespace lumenor::soak
