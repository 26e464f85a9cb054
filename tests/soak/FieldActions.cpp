#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "soak/Actions.h"
#include "support/InputEvents.h"

namespace lumenor::soak {
namespace {

void AwaitText(const Scene &scene) {
  Scene::Await([&] { return scene.dock->FieldText() == scene.model.text; }, "the field has another text");
}

/// Gives the field the keyboard, with the caret behind its text.
void Enter(Scene &scene) {
  const DWORD thread = ::GetWindowThreadProcessId(scene.dock->Field(), nullptr);
  const auto hasFocus = [&] {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    return ::GetGUIThreadInfo(thread, &info) && info.hwndFocus == scene.dock->Field() &&
           ::GetForegroundWindow() == scene.dock->Bar();
  };
  scene.ClickUntil([&] { return scene.dock->FieldPoint(); }, hasFocus, "the field doesn't get the keyboard");
  e2e::PressKey(VK_END);
}

/// Presses and releases the keys in one call, faster than any hand.
void TypeAtOnce(const std::wstring &text) {
  std::vector<INPUT> inputs;
  for (const wchar_t unit : text)
    for (const DWORD flags : {0UL, static_cast<DWORD>(KEYEVENTF_KEYUP)}) {
      inputs.push_back(tests::KeyInput(0, KEYEVENTF_UNICODE | flags));
      inputs.back().ki.wScan = unit;
    }
  ::SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

/// Letters that an address holds as they are.
std::wstring Word(Random &random) {
  std::wstring word;
  for (std::size_t length = 1 + random.Below(6); length != 0; --length)
    word += static_cast<wchar_t>(L'a' + random.Below(26));
  return word;
}

std::wstring ExpectedAddress(const Model &model) { return providerAddresses[model.provider] + model.text; }

/// How often the browser was asked for the address that is searched for now.
int Searches(const Scene &scene) {
  int count = 0;
  for (const std::wstring &address : scene.browser.Addresses())
    count += address == ExpectedAddress(scene.model);
  return count;
}

} // namespace

void Type(Scene &scene) {
  Enter(scene);
  const std::wstring word = Word(scene.random);
  TypeAtOnce(word);
  scene.model.text += word;
  AwaitText(scene);
}

// Pasting and selecting all come by the messages of the field's own menu: a window that is late to hear that it has the
// focus forgets on the test platform which keys of the keyboard are held.

void Paste(Scene &scene) {
  Enter(scene);
  const std::wstring word = Word(scene.random);
  e2e::CopyToClipboard(word);
  ::PostMessageW(scene.dock->Field(), WM_PASTE, 0, 0);
  scene.model.text += word;
  AwaitText(scene);
}

void EraseLetter(Scene &scene) {
  Enter(scene);
  e2e::PressKey(VK_BACK);
  scene.model.text.pop_back();
  AwaitText(scene);
}

void ClearField(Scene &scene) {
  Enter(scene);
  // A message overtakes input, which would then take the selection away: a letter more says that all of it has arrived.
  TypeAtOnce(L"x");
  scene.model.text += L'x';
  AwaitText(scene);
  ::SendMessageW(scene.dock->Field(), EM_SETSEL, 0, -1);
  e2e::PressKey(VK_DELETE);
  scene.model.text.clear();
  AwaitText(scene);
}

void SearchByKey(Scene &scene) {
  const int before = Searches(scene);
  Enter(scene);
  e2e::PressKey(VK_RETURN);
  Scene::Await([&] { return Searches(scene) == before + 1; }, "no search by the key");
}

void SearchByButton(Scene &scene) {
  const int before = Searches(scene);
  scene.ClickUntil([&] { return scene.dock->SearchButton(); }, [&] { return Searches(scene) > before; },
                   "no search by the button");
}

} // namespace lumenor::soak
