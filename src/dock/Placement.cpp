#include "dock/Placement.h"

#include <algorithm>
#include <optional>

#include <shellapi.h>

#include "system/Handles.h"
#include "system/HResultError.h"
#include "system/Log.h"
#include "system/Product.h"
#include "system/Registry.h"
#include "toolkit/Scale.h"

namespace lumenor {

namespace {

constexpr wchar_t dockPositionValue[] = L"DockPosition";

constexpr int barHeight = 77;
constexpr int flyoutWidth = 240;
constexpr int flyoutGap = 2;
constexpr int searchFieldTop = 35;
constexpr int searchFieldHeight = 16;
constexpr int resetDialogHeight = 172;
constexpr LONG topWithoutTaskBar = 1; // not 0: the bar leaves the screen's first row free

RECT TaskBarRect(HWND tray) {
  APPBARDATA data = {};
  data.cbSize = sizeof data;
  data.hWnd = tray;
  ::SHAppBarMessage(ABM_GETTASKBARPOS, &data);
  return data.rc;
}

HWND FindTaskBar() {
  const HWND tray = ::FindWindowW(L"Shell_TrayWnd", nullptr);
  if (tray == nullptr) {
    const DWORD error = ::GetLastError();
    LogInfo("hwnd to Shell_TrayWnd is null. error code = %d", error);
    throw HResultError(HResultFromError(error));
  }
  return tray;
}

ScreenMetrics ReadScreenMetrics(HWND tray) {
  ScreenMetrics screen = {::GetSystemMetrics(SM_CXFULLSCREEN), TaskBarRect(tray), {}};
  if (IsTaskBarAtTop(screen.taskBar))
    ThrowIfFalse(::GetWindowRect(tray, &screen.trayWindow));
  return screen;
}

} // namespace

DesignScale ScreenScale() { return {ScaleX(96), ScaleY(96)}; }

int BarWidth(int fullScreenWidth, const DesignScale &scale) {
  // The screen's width counts device pixels already and is scaled all the same: dense screens reach the limit sooner.
  return std::clamp(scale.X(fullScreenWidth - 330), scale.X(400), scale.X(900));
}

bool IsTaskBarAtTop(const RECT &taskBar) { return taskBar.top == taskBar.left && taskBar.bottom < taskBar.right; }

RECT BarRect(const ScreenMetrics &screen, const DesignScale &scale) {
  const int width = BarWidth(screen.fullScreenWidth, scale);
  const LONG left = static_cast<LONG>(static_cast<unsigned>(screen.fullScreenWidth) >> 1) - width / 2;
  const LONG top = IsTaskBarAtTop(screen.taskBar) ? screen.trayWindow.bottom : topWithoutTaskBar;
  return {left, top, left + width, top + scale.Y(barHeight)};
}

void PlaceHorizontally(RECT &rect, LONG left, const RECT &workArea, const DesignScale &scale) {
  const LONG width = scale.X(flyoutWidth);
  if (left < workArea.left)
    left = workArea.left;
  else if (left + width > workArea.right)
    left = workArea.right - width;
  rect.left = left;
  rect.right = left + width;
}

/// A flyout with its top at `under`, or with its bottom at `over` where it would leave the work area otherwise.
RECT FlyoutRect(LONG left, LONG under, LONG over, LONG height, const RECT &workArea, const DesignScale &scale) {
  RECT flyout = {0, under, 0, under + height};
  if (flyout.bottom > workArea.bottom)
    flyout = {0, over - height, 0, over};
  PlaceHorizontally(flyout, left, workArea, scale);
  return flyout;
}

RECT ForYouFlyoutRect(const RECT &window, int barWidth, LONG desiredHeight, const RECT &workArea,
                      const DesignScale &scale) {
  return FlyoutRect(barWidth - scale.X(62) + window.left, window.bottom + flyoutGap, window.top - flyoutGap,
                    desiredHeight, workArea, scale);
}

RECT SearchProviderFlyoutRect(const RECT &window, int barWidth, LONG desiredHeight, const RECT &workArea,
                              const DesignScale &scale) {
  const LONG over = scale.Y(searchFieldTop) + window.top;
  const LONG under = over + scale.Y(searchFieldHeight);
  // Scaled on the way down and not on the way up; the rows depend on both.
  RECT flyout = {0, under, 0, under + scale.Y(desiredHeight)};
  if (flyout.bottom > workArea.bottom)
    flyout = {0, over - desiredHeight, 0, over};
  PlaceHorizontally(flyout, window.left - scale.X(95) + barWidth, workArea, scale);
  return flyout;
}

RECT ButtonFlyoutRect(POINT corner, LONG buttonHeight, LONG flyoutHeight, const RECT &workArea,
                      const DesignScale &scale) {
  return FlyoutRect(corner.x, corner.y + flyoutGap, corner.y - buttonHeight - flyoutGap, flyoutHeight, workArea, scale);
}

// The position button says bottom of a bar that another program has sent to the top. A modal dialog over that bar would
// be above the screen, and nobody could answer it.
RECT ResetDialogRect(const RECT &dockRect, bool atTop, LONG barTop, const DesignScale &scale) {
  const bool under = atTop || barTop < scale.Y(resetDialogHeight);
  const LONG centre = dockRect.left + (dockRect.right - dockRect.left) / 2;
  RECT dialog = {centre - scale.X(200), 0, centre + scale.X(200), 0};
  dialog.top = under ? scale.Y(barHeight) : barTop - scale.Y(resetDialogHeight);
  dialog.bottom = under ? scale.Y(barHeight + resetDialogHeight) : barTop;
  return dialog;
}

std::wstring GetDockPosition() {
  const RegistryKey key = OpenRegistryKey(product::dockKey, KEY_READ);
  if (!key)
    return topPosition;
  const DWORD length = RegistryStringLength(key.Get(), dockPositionValue);
  if (length == 0) {
    LogInfo("No dock position regkey found, defaulting to top");
    return topPosition;
  }
  const std::optional<std::wstring> position = ReadRegistryString(key.Get(), dockPositionValue, length);
  if (!position)
    LogInfo("Dock position regkey query failed, defaulting to top");
  return position.value_or(topPosition);
}

void SetDockPosition(const std::wstring &text) {
  const RegistryKey key = OpenRegistryKey(product::dockKey, KEY_WRITE);
  if (!key) {
    LogError("SetDockPosition: Failed to open the dockposition in the registry");
    return;
  }
  if (WriteRegistryString(key.Get(), dockPositionValue, text) != ERROR_SUCCESS)
    LogError("Failed to set the dockposition in the registry");
}

RECT GetWorkArea() {
  RECT workArea = {};
  ThrowIfFalse(::SystemParametersInfoW(SPI_GETWORKAREA, 0, &workArea, 0));
  return workArea;
}

int GetBarWidth() { return BarWidth(::GetSystemMetrics(SM_CXFULLSCREEN), ScreenScale()); }

RECT GetWindowRect() {
  const int width = GetBarWidth();
  const ScreenMetrics screen = ReadScreenMetrics(FindTaskBar());
  LogInfo("GetWindowRect() winCoord.cx = %d, winCoord.cy = %d", width, ScaleY(barHeight));
  LogInfo("GetWindowRect() workingWidth = %d, workingHeight = %d", screen.fullScreenWidth,
          ::GetSystemMetrics(SM_CYFULLSCREEN));
  LogInfo("GetWindowRect() %s", IsTaskBarAtTop(screen.taskBar) ? "ABE_TOP" : "ABE_BOTTOM");
  const RECT bar = BarRect(screen, ScreenScale());
  LogInfo("GetWindowRect() left = %d, right = %d, top = %d, bottom = %d", bar.left, bar.right, bar.top, bar.bottom);
  return bar;
}

RECT GetForYouFlyoutRect(const RECT &window, LONG desiredHeight) {
  return ForYouFlyoutRect(window, GetBarWidth(), desiredHeight, GetWorkArea(), ScreenScale());
}

RECT GetSearchProviderFlyoutRect(const RECT &window, LONG desiredHeight) {
  return SearchProviderFlyoutRect(window, GetBarWidth(), desiredHeight, GetWorkArea(), ScreenScale());
}

RECT GetResetDialogRect(const RECT &dockRect, bool atTop, LONG barTop) {
  return ResetDialogRect(dockRect, atTop, barTop, ScreenScale());
}

} // namespace lumenor
