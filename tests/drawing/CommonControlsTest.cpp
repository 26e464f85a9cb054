// When the platform's common controls are asked for.

#include "toolkit/drawing/Button.h"

#include <cwchar>

#include <commctrl.h>
#include <gtest/gtest.h>

#include "drawing/ButtonOnScreen.h"
#include "support/ImportSlot.h"

extern "C" decltype(&::InitCommonControlsEx) __imp_InitCommonControlsEx;
extern "C" decltype(&::CreateWindowExW) __imp_CreateWindowExW;

namespace lumenor {

namespace {

int loadings = 0;
DWORD loadedClasses = 0;
int toolTips = 0;
bool isEarly = true; // no tool tip was made ahead of the loading

decltype(&::InitCommonControlsEx) platformLoad = nullptr;
decltype(&::CreateWindowExW) platformCreate = nullptr;

BOOL WINAPI NoteLoading(const INITCOMMONCONTROLSEX *wanted) {
  ++loadings;
  loadedClasses |= wanted->dwICC;
  return platformLoad(wanted);
}

HWND WINAPI NoteWindow(DWORD extendedStyle, LPCWSTR windowClass, LPCWSTR title, DWORD style, int left, int top,
                       int width, int height, HWND parent, HMENU menu, HINSTANCE module, LPVOID parameter) {
  if (!IS_INTRESOURCE(windowClass) && std::wcscmp(windowClass, TOOLTIPS_CLASSW) == 0) {
    ++toolTips;
    isEarly = isEarly && loadings != 0;
  }
  return platformCreate(extendedStyle, windowClass, title, style, left, top, width, height, parent, menu, module,
                        parameter);
}

/// Hears all that the process asks for, from ahead of the first test on.
class Spy {
public:
  Spy() {
    platformLoad = load.Former();
    platformCreate = create.Former();
  }

private:
  const tests::ImportSlot<decltype(&::InitCommonControlsEx)> load{&__imp_InitCommonControlsEx, &NoteLoading};
  const tests::ImportSlot<decltype(&::CreateWindowExW)> create{&__imp_CreateWindowExW, &NoteWindow};
};

const Spy spy;

using CommonControls = ButtonOnScreen;

TEST_F(CommonControls, AreLoadedOnceAndAheadOfTheFirstToolTip) {
  button.Name.Set(L"one");
  button.Name.Set(L"another");
  EXPECT_LT(0, toolTips);
  EXPECT_EQ(1, loadings);
  EXPECT_TRUE(isEarly);
  EXPECT_EQ(static_cast<DWORD>(ICC_WIN95_CLASSES), loadedClasses & ICC_WIN95_CLASSES);
  EXPECT_EQ(static_cast<DWORD>(ICC_STANDARD_CLASSES), loadedClasses & ICC_STANDARD_CLASSES);
}

} // namespace

} // namespace lumenor
