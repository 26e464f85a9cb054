#include "e2e/ResetDialog.h"

#include <utility>

#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

namespace lumenor::e2e {

HWND OpenResetDialog(const DockProcess &dock) { return OpenPopup(dock, dock.ResetButton()); }

std::vector<RECT> DialogButtons(HWND dialog) {
  std::vector<RECT> buttons;
  ::EnumChildWindows(
      dialog,
      [](HWND window, LPARAM parameter) -> BOOL {
        if (::GetWindowLongW(window, GWL_ID) == 1003)
          reinterpret_cast<std::vector<RECT> *>(parameter)->push_back(RectOf(window));
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&buttons));
  if (buttons.size() == 2 && buttons[1].left < buttons[0].left)
    std::swap(buttons[0], buttons[1]);
  return buttons;
}

bool Reset(DockProcess &dock) {
  const HWND bar = dock.Bar(), dialog = OpenResetDialog(dock);
  Click(Center(DialogButtons(dialog).at(0)));
  return dock.WaitForNewBar(bar) && dock.WaitForBar() != nullptr;
}

} // namespace lumenor::e2e
