#include "failing/Scenarios.h"

#include <algorithm>
#include <utility>

#include "dock/DockMessages.h"
#include "failing/Calls.h"
#include "failing/OthersData.h"

#include <ole2.h>

namespace lumenor::failing {

namespace {

constexpr int folderButtonId = FirstFixedButtonId;
constexpr int userButtons = 3;
constexpr int forYouButtonId = FirstFixedButtonId + userButtons;
constexpr int searchButtonId = forYouButtonId + 2;
constexpr int resetButtonId = forYouButtonId + 4;

const Texts ofTheUser = {L"A", L"B", L"C"};
const Texts ofTheStubs = {L"Stub 1", L"Stub 2"};

bool hasSeenRows = false; // of a flyout

struct Search {
  std::function<bool(HWND window)> isIt;
  HWND found;
};

BOOL CALLBACK Look(HWND window, LPARAM parameter) {
  auto &search = *reinterpret_cast<Search *>(parameter);
  if (!search.isIt(window))
    return TRUE;
  search.found = window;
  return FALSE;
}

HWND FindBelow(HWND parent, std::function<bool(HWND window)> isIt) {
  Search search = {std::move(isIt), nullptr};
  ::EnumChildWindows(parent, &Look, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND FindTop(std::function<bool(HWND window)> isIt) {
  Search search = {std::move(isIt), nullptr};
  ::EnumThreadWindows(::GetCurrentThreadId(), &Look, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND FindId(HWND parent, int id) {
  return FindBelow(parent, [id](HWND window) { return ::GetDlgCtrlID(window) == id; });
}

RECT PlaceOf(HWND window) {
  RECT place = {};
  ::GetWindowRect(window, &place);
  return place;
}

void ClickAt(HWND control) {
  ::PostMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(4, 4));
  ::PostMessageW(control, WM_LBUTTONUP, 0, MAKELPARAM(4, 4));
}

void Nothing(const World &) {}

bool Always(const World &) { return true; }

void Wait(Stage &) {}

std::vector<Step> Waiting(int turns) { return std::vector<Step>(static_cast<std::size_t>(turns), &Wait); }

Step Click(int id) {
  return [id](Stage &stage) { ClickAt(stage.Control(id)); };
}

Step Post(UINT message) {
  return [message](Stage &stage) { ::PostMessageW(stage.Bar(), message, 0, 0); };
}

std::function<bool(const World &)> HasStarted(std::wstring program) {
  return [program = std::move(program)](const World &) {
    const Texts &launches = World::Launches();
    return std::ranges::find(launches, program) != launches.end();
  };
}

/// Takes the user's second button away.
void RemoveSecond(Stage &stage) {
  stage.Send(RemoveButtonMessage, reinterpret_cast<WPARAM>(stage.Control(FirstUserButtonId + 1)));
}

/// A click at the first row of the flyout that is open.
void ClickRow(Stage &) {
  const HWND flyout =
      FindTop([](HWND window) { return ::IsWindowVisible(window) && FindId(window, FirstFlyoutItemId) != nullptr; });
  ClickAt(FindId(flyout, FirstFlyoutItemId));
}

/// Whether a flyout has a fourth row.
void LookForRows(Stage &) {
  hasSeenRows = FindTop([](HWND window) { return FindId(window, FirstFlyoutItemId + 3) != nullptr; }) != nullptr;
}

void ChangeForYou(Stage &stage) {
  hasSeenRows = false;
  stage.world.WriteForYou(4);
}

void TypeWord(Stage &stage) { ::SetWindowTextW(stage.Control(TextBoxId), L"word"); }

/// The end of a drag with the effect that its last move had: without one there is no drop, and the cursor has said so.
HRESULT EndDrag(IDataObject *data, POINTL point, DWORD allowed, DWORD effect) {
  IDropTarget *const target = World::DropTarget();
  if (target == nullptr)
    return DRAGDROP_S_CANCEL;
  if (effect == DROPEFFECT_NONE) {
    World::hasRefused = true;
    target->DragLeave();
    return DRAGDROP_S_CANCEL;
  }
  effect = allowed;
  return FAILED(target->Drop(data, 0, point, &effect)) ? DRAGDROP_S_CANCEL : DRAGDROP_S_DROP;
}

/// What a drag of the platform does over the row, up to the drop on the right half of its last button.
HRESULT DropOnRow(IDataObject *data, DWORD allowed) {
  const RECT place = PlaceOf(Stage::Control(FirstUserButtonId + userButtons - 1));
  const POINTL point = {place.right - 8, (place.top + place.bottom) / 2};
  DWORD effect = allowed;
  for (const bool isFirst : {true, false}) {
    IDropTarget *const target = World::DropTarget();
    if (target == nullptr)
      return DRAGDROP_S_CANCEL;
    if (isFirst)
      target->DragEnter(data, MK_LBUTTON, point, &effect);
    effect = allowed;
    target->DragOver(MK_LBUTTON, point, &effect);
  }
  return EndDrag(data, point, allowed, effect);
}

void DropFile(Stage &stage) {
  const auto data = MakeComObject<OthersData>(stage.world.DroppedPath());
  StandBetween(data.Get());
  const ProductsTurn turn;
  DropOnRow(data.Get(), DROPEFFECT_COPY);
}

HRESULT DropButton(IDataObject *data) { return DropOnRow(data, DROPEFFECT_MOVE); }

void DragFirst(Stage &stage) {
  World::drag = &DropButton;
  const HWND button = stage.Control(FirstUserButtonId);
  ::PostMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(4, 4));
  ::PostMessageW(button, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(20, 20));
  ::PostMessageW(button, WM_LBUTTONUP, 0, MAKELPARAM(20, 20));
}

/// The left one of the dialog's two buttons.
void ConfirmReset(Stage &stage) {
  const HWND dialog = stage.Dialog(L"Lumenor Dock Reset");
  HWND left = nullptr;
  FindBelow(dialog, [&](HWND window) {
    if (::GetDlgCtrlID(window) == ResetDialogButtonId && (left == nullptr || PlaceOf(window).left < PlaceOf(left).left))
      left = window;
    return false;
  });
  ClickAt(left);
}

bool IsButton(HWND window) {
  wchar_t name[40] = {};
  ::GetClassNameW(window, name, 40);
  return ::lstrcmpiW(name, L"LumenorButton") == 0;
}

/// The close button is the rightmost one in the lower half of the screen.
void CloseWelcome(Stage &stage) {
  const HWND dialog = stage.Dialog(L"Welcome to Lumenor Dock");
  const RECT whole = PlaceOf(dialog);
  HWND last = nullptr;
  FindBelow(dialog, [&](HWND window) {
    if (IsButton(window) && PlaceOf(window).top > (whole.top + whole.bottom) / 2 &&
        (last == nullptr || PlaceOf(window).left > PlaceOf(last).left))
      last = window;
    return false;
  });
  ClickAt(last);
}

void EndSession(Stage &stage) {
  stage.Send(WM_QUERYENDSESSION);
  stage.Send(WM_ENDSESSION, TRUE, ENDSESSION_LOGOFF);
  ::PostQuitMessage(0); // the platform ends the process
}

void FlushTracking(Stage &stage) { stage.Send(WM_TIMER, TrackingTimer); }

bool HasHandedOver(const World &world) {
  const Texts names = tests::ListFolder(world.folders.UserFolder() + L"\\ruq");
  return std::ranges::any_of(names, [](const std::wstring &name) { return name.ends_with(L".ruq"); });
}

std::vector<Step> Sequence(std::initializer_list<std::vector<Step>> parts) {
  std::vector<Step> steps;
  for (const std::vector<Step> &part : parts)
    steps.insert(steps.end(), part.begin(), part.end());
  return steps;
}

std::vector<Scenario> MakeScenarios() {
  const auto forget = [](const World &world) { world.ForgetUser(); };
  const auto makeDue = [](const World &world) { world.MakePayloadDue(); };
  const auto hasSeen = [](const World &) { return hasSeenRows; };
  return {
      {"start", Nothing, true, {}, {}, false, ofTheUser, ofTheUser, Always},
      {"close", Nothing, false, {RemoveSecond}, {Post(WM_CLOSE)}, true, ofTheUser, {L"A", L"C"}, Always},
      {"click",
       Nothing,
       false,
       {},
       Sequence({{Click(FirstUserButtonId)}, Waiting(3)}),
       false,
       ofTheUser,
       ofTheUser,
       HasStarted(L"http://nowhere.invalid/A")},
      {"flyout",
       Nothing,
       false,
       {},
       Sequence({{Click(forYouButtonId)}, Waiting(3), {Click(folderButtonId)}, Waiting(3), {ClickRow}, Waiting(3)}),
       false,
       ofTheUser,
       ofTheUser,
       HasStarted(L"http://nowhere.invalid/Row 1")},
      {"search",
       Nothing,
       false,
       {TypeWord},
       Sequence({{Click(searchButtonId)}, Waiting(3)}),
       false,
       ofTheUser,
       ofTheUser,
       HasStarted(L"http://nowhere.invalid/?word")},
      {"drop", Nothing, false, {}, {DropFile, Wait}, false, ofTheUser, {L"A", L"B", L"C", L"Dropped"}, Always},
      {"drag", Nothing, false, {}, Sequence({{DragFirst}, Waiting(3)}), false, ofTheUser, {L"B", L"C", L"A"}, Always},
      {"reset",
       Nothing,
       false,
       {},
       Sequence({{Click(resetButtonId)}, Waiting(3), {ConfirmReset}, Waiting(6)}),
       false,
       ofTheUser,
       ofTheStubs,
       Always,
       true},
      {"refresh",
       Nothing,
       false,
       {},
       Sequence({{ChangeForYou}, Waiting(25), {LookForRows}}),
       false,
       ofTheUser,
       ofTheUser,
       hasSeen},
      {"first-start",
       forget,
       true,
       {},
       Sequence({Waiting(3), {CloseWelcome}, Waiting(3)}),
       false,
       noDocument,
       ofTheStubs,
       Always,
       true},
      {"end-of-session", Nothing, false, {RemoveSecond}, {EndSession}, true, ofTheUser, {L"A", L"C"}, Always},
      {"hand-over", makeDue, false, {}, {FlushTracking, Wait}, false, ofTheUser, ofTheUser, HasHandedOver, false, 2},
  };
}

} // namespace

HWND Stage::Bar() { return Dialog(L"Lumenor Dock"); }

HWND Stage::Control(int id) { return FindId(Bar(), id); }

HWND Stage::Dialog(const wchar_t *title) {
  return FindTop([title](HWND window) {
    wchar_t name[100] = {};
    ::GetWindowTextW(window, name, 100);
    return ::lstrcmpW(name, title) == 0 && ::IsWindowVisible(window);
  });
}

LRESULT Stage::Send(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND bar = Bar();
  const ProductsTurn turn;
  return ::SendMessageW(bar, message, wParam, lParam);
}

const std::vector<Scenario> &Scenarios() {
  static const std::vector<Scenario> scenarios = MakeScenarios();
  return scenarios;
}

} // namespace lumenor::failing
