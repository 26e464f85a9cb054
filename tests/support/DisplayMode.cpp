#include "support/DisplayMode.h"

#include <gtest/gtest.h>

namespace lumenor::tests {

namespace {

/// While another process takes note of a change, Wine 10 can find no display.
template <typename Change> LONG TryForSeconds(Change change) {
  LONG result = change();
  for (int i = 0; i < 100 && result != DISP_CHANGE_SUCCESSFUL; ++i) {
    ::Sleep(50);
    result = change();
  }
  return result;
}

} // namespace

LONG ChangeDisplay(DEVMODEW *mode) {
  return TryForSeconds([mode] { return ::ChangeDisplaySettingsW(mode, 0); });
}

LONG MakeDisplaySmall() {
  DEVMODEW mode{};
  mode.dmSize = sizeof mode;
  mode.dmFields = DM_PELSWIDTH | DM_PELSHEIGHT;
  mode.dmPelsWidth = 1024;
  mode.dmPelsHeight = 768;
  return ChangeDisplay(&mode);
}

LowColorDisplay::LowColorDisplay() {
  EXPECT_EQ(DISP_CHANGE_SUCCESSFUL, TryForSeconds([] {
              DEVMODEW mode{};
              mode.dmSize = sizeof mode;
              ::EnumDisplaySettingsW(nullptr, ENUM_CURRENT_SETTINGS, &mode);
              mode.dmFields = DM_BITSPERPEL | DM_PELSWIDTH | DM_PELSHEIGHT;
              mode.dmBitsPerPel = 16;
              return ::ChangeDisplaySettingsW(&mode, 0);
            }));
}

LowColorDisplay::~LowColorDisplay() { EXPECT_EQ(DISP_CHANGE_SUCCESSFUL, ChangeDisplay(nullptr)); }

} // namespace lumenor::tests
