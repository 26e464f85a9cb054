#include "e2e/OtherProgram.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"
#include "soak/Actions.h"

namespace lumenor::soak {
namespace {

using e2e::Center;
using e2e::RectOf;

constexpr LONG rowHeight = 40;
constexpr std::size_t tools = 3;

HWND Flyout(const Scene &scene) {
  const auto popups = scene.dock->Popups();
  return popups.size() == 1 ? popups.front() : nullptr;
}

/// The rows that do something; above them a list other than that of the providers has its title.
std::size_t Entries(const Model &model) {
  if (model.open == List::Providers)
    return providerAddresses.size();
  return model.open == List::ForYou ? model.entriesForYou : tools;
}

POINT Entry(const Scene &scene, std::size_t entry) {
  const RECT list = RectOf(Flyout(scene));
  const auto title = scene.model.open == List::Providers ? 0 : 1;
  return {list.left + 100, list.top + (title + static_cast<LONG>(entry)) * rowHeight + rowHeight / 2};
}

LONG ExpectedHeight(const Model &model) {
  return (static_cast<LONG>(Entries(model)) + (model.open == List::Providers ? 0 : 1)) * rowHeight;
}

POINT ButtonOf(const Scene &scene) {
  if (scene.model.open == List::Providers)
    return scene.dock->SearchProviderButton();
  return scene.model.open == List::ForYou ? scene.dock->ForYouButton() : scene.dock->MainButton(1);
}

void AwaitRows(const Scene &scene) {
  Scene::Await([&] { return e2e::HeightOf(Flyout(scene)) == ExpectedHeight(scene.model); },
               "the list has another number of rows");
}

void Open(Scene &scene, List list, const std::function<POINT()> &button) {
  scene.ClickUntil(
      button, [&] { return Flyout(scene) != nullptr; }, "no list opens");
  scene.model.open = list;
  AwaitRows(scene);
}

} // namespace

void OpenForYou(Scene &scene) {
  Open(scene, List::ForYou, [&] { return scene.dock->ForYouButton(); });
  scene.model.isForYouSeen = true;
}

void OpenProviders(Scene &scene) {
  Open(scene, List::Providers, [&] { return scene.dock->SearchProviderButton(); });
}

void OpenTools(Scene &scene) {
  Open(scene, List::Tools, [&] { return scene.dock->MainButton(1); });
}

void MoveInList(Scene &scene) {
  const POINT row = Entry(scene, scene.random.Below(Entries(scene.model)));
  Scene::MoveNear({row.x + static_cast<LONG>(scene.random.Below(100)), row.y});
}

void ChooseInList(Scene &scene) {
  const std::size_t entry = scene.random.Below(Entries(scene.model));
  const int before = scene.StartsWith(rowStart);
  const POINT place = Entry(scene, entry);
  scene.ClickUntil([&] { return place; }, [&] { return scene.dock->Popups().empty(); }, "no row can be chosen");
  if (scene.model.open == List::Providers)
    scene.model.provider = entry;
  else
    Scene::Await([&] { return scene.StartsWith(rowStart) == before + 1; }, "the row starts nothing");
  scene.model.open = List::None;
}

// A list that comes up while the other window takes the activation has none to lose; its button closes it.
void CloseList(Scene &scene) {
  const auto isClosed = [&] { return scene.dock->Popups().empty(); };
  scene.ClickNear(Center(elsewhere));
  if (!e2e::WaitFor(isClosed, std::chrono::seconds(10)))
    scene.ClickUntil([&] { return ButtonOf(scene); }, isClosed, "the list doesn't close");
  scene.model.open = List::None;
}

void ChangeForYou(Scene &scene) {
  scene.model.entriesForYou = scene.random.Once(2) ? 1 : 2 + scene.random.Below(3);
  const std::vector<e2e::Entry> entries(scene.model.entriesForYou,
                                        scene.installation.RecorderEntry(L"Suggested", rowStart));
  e2e::Overwrite(scene.installation.DocumentPath(e2e::forYouList), e2e::DocumentXml(e2e::forYouList, entries));
  scene.model.isForYouSeen = scene.model.open == List::ForYou;
  if (scene.model.isForYouSeen)
    AwaitRows(scene);
}

} // namespace lumenor::soak
