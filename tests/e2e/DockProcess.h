#pragma once
// The dock's real process, started and watched from outside.

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "e2e/Installation.h"
#include "e2e/Screen.h"
#include "system/Handles.h"

namespace lumenor::e2e {

class DockProcess {
public:
  /// Starts the installed program with `arguments` behind its name; logging is at its full level.
  /// `program` starts another copy of it, by its path.
  explicit DockProcess(const Installation &installation, const std::wstring &arguments = L"",
                       const std::wstring &program = L"");

  /// Closes the dock if it still runs, and ends it if it doesn't go.
  ~DockProcess();

  DWORD Id() const { return id; }
  bool IsRunning() const;

  /// Ends the process at once, whatever it does, and waits until its bar is no longer to be seen.
  void Kill() const;

  /// Waits for the process's end; its exit code, or nothing when it still runs after a minute.
  std::optional<DWORD> WaitForExit() const;

  /// Waits until the bar is shown and painted, puts the cursor where nothing of the bar stands, so that it stays
  /// bright, and returns its window; null when it doesn't come.
  HWND WaitForBar();

  /// Waits until the bar has another window than `previous`, that of the cycle before; false when it doesn't come.
  bool WaitForNewBar(HWND previous) const;

  /// The bar's window as it is now: visible, of this process, of the bar's title; null without one.
  HWND Bar() const;
  RECT BarRect() const;

  /// The window of the control `id` anywhere below the bar; null without one.
  HWND Control(int id) const;

  /// The middle of a fixed or a user button, on the screen.
  POINT MainButton(int index) const;
  POINT UserButton(int index) const;

  /// The small buttons at the bar's right end.
  POINT ResetButton() const { return SystemButton(0); }
  POINT PositionButton() const { return SystemButton(1); }
  POINT CloseButton() const { return SystemButton(2); }

  /// A place on the bar where nothing stands, for a cursor that is to keep the bar awake.
  POINT Rest() const { return OnCanvas(60, 68); }

  /// The command buttons and the search field at the bar's right end.
  POINT ForYouButton() const { return OnCanvas(152 + 18, 12 + 32); }
  RECT ForYouRect() const { return CanvasRect(152, 12, 36, 64); }
  POINT SearchProviderButton() const { return OnCanvas(106 + 5, 37 + 7); }
  POINT SearchButton() const { return OnCanvas(116 + 10, 37 + 7); }
  RECT FieldRect() const { return CanvasRect(18, 37, 84, 12); }
  POINT FieldPoint() const { return OnCanvas(18 + 42, 37 + 6); }

  /// The search field's window, and the text that it holds.
  HWND Field() const { return Control(100); }
  std::wstring FieldText() const;

  /// The ends of the selection in the search field: start in `cx`, end in `cy`.
  SIZE FieldSelection() const;

  /// Where the row of user buttons stands in its viewport: 0 at its left end, negative when it is scrolled. Needs at
  /// least one user button.
  LONG RowLeft() const;

  /// The arrow at the left or the right end of the row; null when it isn't shown.
  HWND LeftArrow() const { return Arrow(true); }
  HWND RightArrow() const { return Arrow(false); }

  /// Waits until the bar's one flyout or dialog is shown and painted, and returns its window; null when it doesn't
  /// come.
  HWND WaitForPopup() const;

  /// Waits until no flyout and no dialog is open any more; false when one stays, and prints which windows are active.
  bool WaitForNoPopup() const;

  /// Visible top-level windows of the process other than the bar and its tool tips, topmost first.
  std::vector<HWND> Popups() const;

  /// The visible tool tip of the process; null without one.
  HWND ToolTip() const;

private:
  POINT SystemButton(int index) const;
  POINT OnCanvas(int x, int y) const;
  RECT CanvasRect(int left, int top, int width, int height) const;
  HWND Row() const;
  HWND Arrow(bool left) const;
  bool WaitForPaint(const RECT &area) const;
  void WaitForClearScreen() const;
  void PrintActivation() const;
  std::vector<HWND> TopLevelWindows() const;

  KernelHandle process;
  DWORD id = 0;
  RECT screen = {};
  Picture bareScreen; // before the start
  RECT shownAt = {};  // of the bar on the screen; empty until WaitForBar has found it
};

/// The dock with its bar on the screen.
class ShownDock : public DockProcess {
public:
  /// Starts the dock and waits for its bar. Raises an error when the bar doesn't come, which fails the test.
  explicit ShownDock(const Installation &installation, const std::wstring &arguments = L"",
                     const std::wstring &program = L"");
};

/// The window of the control `controlId` anywhere below `window`; null without one.
HWND DescendantOf(HWND window, int controlId);

/// A window's rectangle on the screen.
RECT RectOf(HWND window);
LONG HeightOf(HWND window);

/// Whether the window is exactly at `place` of the screen.
::testing::AssertionResult StandsAt(HWND window, const RECT &place);

/// The dots per inch of the screen; tests compute expected sizes with it as the dock does.
int Scaled(int designPixels);

} // namespace lumenor::e2e
