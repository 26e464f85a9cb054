#include <algorithm>
#include <stdexcept>

#include "e2e/DragProgram.h"
#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "soak/Actions.h"

namespace lumenor::soak {
namespace {

using e2e::Center;
using e2e::RectOf;

constexpr POINT farAway = {640, 640};
constexpr LONG firstHalf = 15, secondHalf = 60; // from a button's left edge
constexpr LONG step = 77;                       // of the arrows

POINT On(HWND button, LONG right) {
  const RECT place = RectOf(button);
  return {place.left + right, (place.top + place.bottom) / 2};
}

/// The buttons that can be reached on both halves, by their places in the row.
std::vector<std::size_t> Reachable(const std::vector<HWND> &buttons) {
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < buttons.size(); ++i)
    if (::WindowFromPoint(On(buttons[i], firstHalf)) == buttons[i] &&
        ::WindowFromPoint(On(buttons[i], secondHalf)) == buttons[i])
      places.push_back(i);
  return places;
}

/// Brings the cursor to the button and begins a drag there.
void Grab(HWND button) {
  e2e::MoveCursor(On(button, firstHalf));
  e2e::PressLeftButton();
  e2e::MoveCursor(On(button, firstHalf + 6));
  Scene::Await([&] { return !::IsWindowVisible(button); }, "no drag begins");
}

} // namespace

void DragAlong(Scene &scene) {
  const std::vector<HWND> buttons = scene.Buttons();
  const auto reachable = Reachable(buttons);
  if (reachable.empty())
    return;
  const std::size_t from = scene.random.Of(reachable), to = scene.random.Of(reachable);
  const POINT target = On(buttons[to], to > from ? secondHalf : firstHalf);
  auto row = scene.model.row;
  row.erase(row.begin() + static_cast<std::ptrdiff_t>(from));
  row.insert(row.begin() + static_cast<std::ptrdiff_t>(to), scene.model.row[from]);
  scene.DragUntil(row, [&] {
    Grab(buttons[from]);
    e2e::MoveCursor(target);
    e2e::LetGo(target);
  });
}

void DragAndEscape(Scene &scene) {
  const std::vector<HWND> buttons = scene.Buttons();
  const auto reachable = Reachable(buttons);
  if (reachable.empty())
    return;
  Grab(buttons[scene.random.Of(reachable)]);
  e2e::MoveCursor(On(buttons[scene.random.Of(reachable)], secondHalf));
  e2e::PressKey(VK_ESCAPE);
  scene.CheckRow();
  e2e::ReleaseLeftButton();
}

void DragOff(Scene &scene) {
  const std::vector<HWND> buttons = scene.Buttons();
  const auto reachable = Reachable(buttons);
  if (reachable.empty())
    return;
  const std::size_t from = scene.random.Of(reachable);
  auto row = scene.model.row;
  row.erase(row.begin() + static_cast<std::ptrdiff_t>(from));
  scene.DragUntil(row, [&] {
    Grab(buttons[from]);
    e2e::MoveCursor(farAway);
    e2e::LetGo(farAway);
    // While it is dragged it looks like one that is gone.
    Scene::Await([&] { return ::IsWindowVisible(buttons[from]) || !::IsWindow(buttons[from]); }, "a drag doesn't end");
  });
}

void DragFileIn(Scene &scene) {
  const std::vector<HWND> buttons = scene.Buttons();
  const auto reachable = Reachable(buttons);
  if (reachable.empty())
    return;
  const std::wstring name = L"File " + std::to_wstring(++scene.model.filesMade);
  const e2e::DragProgram other({scene.installation.WriteAside(name + L".txt", "a file")});
  if (!other.IsUp())
    throw std::runtime_error("no program to drag from");
  const std::size_t at = scene.random.Of(reachable);
  const bool isBefore = scene.random.Once(2);
  auto row = scene.model.row;
  row.insert(row.begin() + static_cast<std::ptrdiff_t>(isBefore ? at : at + 1), name);
  scene.DragUntil(row, [&] { other.DragTo(On(buttons[at], isBefore ? firstHalf : secondHalf)); });
}

void Scroll(Scene &scene) {
  const bool isLeft = scene.random.Once(2);
  const HWND left = scene.dock->LeftArrow(), right = scene.dock->RightArrow();
  const HWND arrow = isLeft ? left : right, button = arrow != nullptr ? arrow : isLeft ? right : left;
  if (button == nullptr)
    return;
  const HWND row = ::GetParent(scene.Buttons().front());
  const RECT strip = RectOf(row), view = RectOf(::GetParent(row));
  const LONG furthest = (view.right - view.left) - (strip.right - strip.left), from = strip.left - view.left;
  const LONG to = button == left ? std::min(from + step, 0L) : std::max(from - step, furthest);
  scene.ClickUntil([&] { return Center(RectOf(button)); }, [&] { return scene.dock->RowLeft() != from; },
                   "the row doesn't move");
  // A click that was only late has moved the row by another step.
  Scene::Await([&] { return scene.dock->RowLeft() == to || scene.LostClicks() > 0; }, "the row stops elsewhere");
}

} // namespace lumenor::soak
