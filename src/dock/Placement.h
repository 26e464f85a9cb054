#pragma once
// The places of the bar, its flyouts and its dialogs on the primary screen, and the registry value that holds the bar's
// edge. The arithmetic is in pure functions over plain numbers; the operations without arguments for the machine ask
// the platform and pass the answers on. All rectangles are in device pixels; those of windows are in screen
// coordinates. The registry operations may be called on any thread, the others on the user-interface thread.

#include <string>

#include "system/Windows.h"

namespace lumenor {

/// The dots per inch by which design pixels (96 to the inch) become device pixels.
struct DesignScale {
  int horizontalDpi;
  int verticalDpi;

  int X(int design) const noexcept { return ::MulDiv(design, horizontalDpi, 96); }
  int Y(int design) const noexcept { return ::MulDiv(design, verticalDpi, 96); }
};

/// The scale of this process's screen, the one of ScaleX and ScaleY.
DesignScale ScreenScale();

/// The platform's figures of the primary screen and its task bar.
struct ScreenMetrics {
  int fullScreenWidth; // SM_CXFULLSCREEN
  RECT taskBar;        // by ABM_GETTASKBARPOS
  RECT trayWindow;     // the task bar window's own rectangle; looked at only when the task bar is at the top
};

/// The width of the bar on a screen `fullScreenWidth` device pixels wide: 330 narrower, scaled once more, and from 400
/// to 900 design pixels.
int BarWidth(int fullScreenWidth, const DesignScale &scale);

/// True when the task bar is wide and starts in the screen's corner.
bool IsTaskBarAtTop(const RECT &taskBar);

/// The bar's rectangle at its top position.
RECT BarRect(const ScreenMetrics &screen, const DesignScale &scale);

/// `left` and a flyout's width as the horizontal extent of `rect`, pushed back into the work area.
void PlaceHorizontally(RECT &rect, LONG left, const RECT &workArea, const DesignScale &scale);

/// The flyout of the For You button: `window` is the bar's present rectangle, `desiredHeight` the flyout's.
RECT ForYouFlyoutRect(const RECT &window, int barWidth, LONG desiredHeight, const RECT &workArea,
                      const DesignScale &scale);

/// The flyout of the search provider button, under or over the search field.
RECT SearchProviderFlyoutRect(const RECT &window, int barWidth, LONG desiredHeight, const RECT &workArea,
                              const DesignScale &scale);

/// The flyout of a button whose lower left corner is at `corner` on the screen.
RECT ButtonFlyoutRect(POINT corner, LONG buttonHeight, LONG flyoutHeight, const RECT &workArea,
                      const DesignScale &scale);

/// The reset dialog's rectangle, centred against `dockRect`, under a bar at the top or over one whose top is `barTop`;
/// under it too where it wouldn't be on the screen over it.
RECT ResetDialogRect(const RECT &dockRect, bool atTop, LONG barTop, const DesignScale &scale);

/// The edges as the registry names them.
inline constexpr wchar_t topPosition[] = L"Top";
inline constexpr wchar_t bottomPosition[] = L"Bottom";

/// "Top", "Bottom" or any other text of the registry value; "Top" when it can't be read. Doesn't raise.
std::wstring GetDockPosition();

/// Writes the edge. A failure leaves one line in the log and nothing else.
void SetDockPosition(const std::wstring &text);

/// The work area of the primary screen. Raises HResultError when the platform returns none.
RECT GetWorkArea();

/// The bar's width on this screen.
int GetBarWidth();

/// The bar's rectangle at its top position on this screen. Raises HResultError when there is no task bar window.
RECT GetWindowRect();

/// The For You flyout's rectangle for a bar at `window` (its Left, Top, Left + Width, Top + Height).
RECT GetForYouFlyoutRect(const RECT &window, LONG desiredHeight);

/// The search provider flyout's rectangle for a bar at `window`.
RECT GetSearchProviderFlyoutRect(const RECT &window, LONG desiredHeight);

/// The reset dialog's rectangle: `dockRect` is the bar's rectangle at its top position, `atTop` the state of the
/// position button, `barTop` the bar's present top.
RECT GetResetDialogRect(const RECT &dockRect, bool atTop, LONG barTop);

} // namespace lumenor
