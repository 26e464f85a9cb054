#include "soak/Scene.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"
#include "support/DisplayMode.h"
#include "support/InputEvents.h"

namespace lumenor::soak {

using e2e::Center;
using e2e::Entry;
using e2e::RectOf;
using e2e::WaitFor;

const std::vector<std::wstring> providerAddresses = {L"http://first.example/?q=", L"http://second.example/?q=",
                                                     L"http://third.example/?q="};

namespace {

constexpr UINT answerLimitMs = 60'000;
constexpr auto patience = std::chrono::seconds(60);
constexpr auto clickPatience = std::chrono::seconds(15);
constexpr int clickTries = 3;
constexpr int firstUserButton = 2000, endOfUserButtons = 2030;
constexpr LONG aside = 3; // more than the two clicks of a double click may lie apart
constexpr wchar_t toolsDocument[] = L"Lumenor.MainFrame.Windows.DockViewWindow.Tools";

std::wstring TextOf(HWND window) {
  wchar_t text[200] = {};
  DWORD_PTR length = 0;
  ::SendMessageTimeoutW(window, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text), SMTO_NORMAL, answerLimitMs,
                        &length);
  return text;
}

std::string Joined(const std::vector<std::wstring> &texts) {
  std::string line;
  for (const std::wstring &text : texts)
    line += (line.empty() ? "" : ", ") + tests::Utf8(text);
  return line;
}

} // namespace

Scene::Scene(std::uint64_t seed) : random(seed) {
  WriteContent();
  model.row = FactoryRow();
  Start();
}

Scene::~Scene() {
  e2e::ReleaseLeftButton();
  dock.reset();
  tests::ChangeDisplay(nullptr);
}

void Scene::WriteContent() const {
  installation.OptIn();
  installation.InstallCollector();
  e2e::SetMachineValue(L"Platform", L"VRA");
  installation.WriteStub(L"xx_xx", e2e::mainDocument, 0, installation.RecorderEntry(L"Start", fixedStart, 0));
  installation.WriteStub(L"xx_xx", e2e::mainDocument, 1,
                         {.head = L"Tools", .actionType = L"xml", .actionParams = toolsDocument, .position = 1});
  // Nothing opens at a click on it, but everything on the way there is done.
  installation.WriteStub(L"xx_xx", e2e::mainDocument, 2,
                         {.head = L"Quiet", .actionType = L"exe", .actionParams = L"flyout", .position = 2});
  for (int i = 0; i < 3; ++i)
    installation.WriteStub(L"xx_xx", toolsDocument, i, installation.RecorderEntry(L"Tool", rowStart, i));
  int position = 0;
  for (const std::wstring &head : FactoryRow()) {
    installation.WriteStub(L"xx_xx", e2e::userDocument, position,
                           installation.RecorderEntry(head, L"a user's button", position));
    ++position;
  }
  std::vector<Entry> providers;
  for (const std::wstring &address : providerAddresses)
    providers.push_back({.head = L"Place", .actionType = L"url", .actionParams = address});
  installation.WriteSearchProviders(providers);
  installation.WriteDocument(e2e::forYouList, {installation.RecorderEntry(L"Suggested", rowStart)});
}

void Scene::Start() {
  dock = std::make_unique<e2e::ShownDock>(installation);
  bar = dock->Bar();
  model.BeginAgain();
  CheckPlace();
  CheckRow();
}

void Scene::TakeNewBar() {
  Await([&] { return dock->WaitForNewBar(bar); }, "no new bar");
  bar = dock->Bar();
  model.row = FactoryRow();
  model.BeginAgain();
  CheckPlace();
  CheckRow();
}

void Scene::Close() {
  WakeBar();
  if (e2e::CloseByButton(*dock) != 0U)
    throw std::runtime_error("the dock doesn't end with 0");
  CheckDocument();
}

void Scene::CheckAnswers() const {
  if (!dock->IsRunning())
    throw std::runtime_error("the dock has ended");
  DWORD_PTR answer = 0;
  if (::SendMessageTimeoutW(bar, WM_NULL, 0, 0, SMTO_NORMAL, answerLimitMs, &answer) == 0)
    throw std::runtime_error("the dock doesn't answer");
  if (dock->Bar() != bar)
    throw std::runtime_error("the bar is gone");
}

std::vector<HWND> Scene::Buttons() const {
  std::vector<std::pair<LONG, HWND>> places;
  ::EnumChildWindows(
      bar,
      [](HWND window, LPARAM parameter) -> BOOL {
        const LONG id = ::GetWindowLongW(window, GWL_ID);
        if (id >= firstUserButton && id < endOfUserButtons && ::IsWindowVisible(window))
          reinterpret_cast<std::vector<std::pair<LONG, HWND>> *>(parameter)->emplace_back(RectOf(window).left, window);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&places));
  std::ranges::sort(places);
  std::vector<HWND> buttons;
  for (const auto &[left, window] : places)
    buttons.push_back(window);
  return buttons;
}

std::vector<std::wstring> Scene::ShownRow() const {
  std::vector<std::wstring> row;
  for (const HWND button : Buttons())
    row.push_back(TextOf(button));
  return row;
}

void Scene::CheckRow() const {
  std::vector<std::wstring> shown;
  if (!WaitFor([&] { return (shown = ShownRow()) == model.row; }, patience))
    throw std::runtime_error("the row shows " + Joined(shown) + " instead of " + Joined(model.row));
}

void Scene::CheckDocument() const {
  const std::string document = e2e::ReadBytes(installation.DocumentPath(e2e::userDocument));
  constexpr std::string_view begin = "<Head>", end = "</Head>";
  std::vector<std::wstring> saved;
  for (std::size_t at = document.find(begin); at != std::string::npos; at = document.find(begin, at)) {
    at += begin.size();
    saved.push_back(tests::FromUtf8(document.substr(at, document.find(end, at) - at)));
  }
  if (saved != model.row)
    throw std::runtime_error("the document has " + Joined(saved) + " instead of " + Joined(model.row));
}

void Scene::CheckPlace() const {
  const LONG width = model.isSmallDisplay ? 694 : 900, screen = model.isSmallDisplay ? 768 : 1024;
  const LONG top = model.IsAtTop() ? 1 : screen - e2e::Scaled(77);
  Await(
      [&] {
        const RECT place = dock->BarRect();
        return place.top == top && place.right - place.left == width;
      },
      model.IsAtTop() ? "the bar doesn't come to the top" : "the bar doesn't come to the bottom");
}

void Scene::Await(const std::function<bool()> &condition, const std::string &what) {
  if (!WaitFor(condition, patience))
    throw std::runtime_error(what);
}

void Scene::ClickUntil(const std::function<POINT()> &place, const std::function<bool()> &condition,
                       const std::string &what) {
  for (int tried = 0; tried < clickTries; ++tried) {
    ClickNear(place());
    if (WaitFor(condition, clickPatience))
      return;
    CheckAnswers();
    ++lostClicks;
  }
  throw std::runtime_error(what);
}

void Scene::DragUntil(const std::vector<std::wstring> &row, const std::function<void()> &drag) {
  for (int tried = 0; tried < clickTries; ++tried) {
    drag();
    if (WaitFor([&] { return ShownRow() == row; }, clickPatience)) {
      model.row = row;
      return;
    }
    CheckRow();
    ++lostClicks;
  }
  throw std::runtime_error("a drag doesn't bring " + Joined(row));
}

void Scene::ClickNear(POINT place) {
  constexpr POINT offsets[] = {{-aside, -aside}, {aside, -aside}, {aside, aside}, {-aside, aside}};
  const POINT offset = offsets[clicks++ % 4];
  e2e::ClickAtOnce({place.x + offset.x, place.y + offset.y});
}

void Scene::MoveNear(POINT place) {
  INPUT input = tests::MoveInput(place);
  ::SendInput(1, &input, sizeof(input));
}

void Scene::WakeBar() const {
  const auto isButtonThere = [&] {
    const RECT hit = RectOf(::WindowFromPoint(dock->ResetButton()));
    return hit.right - hit.left == e2e::Scaled(16);
  };
  e2e::MoveCursor(dock->Rest());
  Await(isButtonThere, "the bar doesn't wake");
}

int Scene::StartsWith(const std::wstring &text) const {
  const auto lines = installation.RecordedCommandLines();
  return static_cast<int>(
      std::ranges::count_if(lines, [&](const std::wstring &line) { return line.find(text) != std::wstring::npos; }));
}

} // namespace lumenor::soak
