#pragma once
// Switches the display to 16 bits a pixel for as long as it lives.

#include <gtest/gtest.h>

#include "system/Windows.h"

namespace lumenor::tests {

class LowColorDisplay {
public:
  LowColorDisplay() {
    DEVMODEW mode{};
    mode.dmSize = sizeof mode;
    ::EnumDisplaySettingsW(nullptr, ENUM_CURRENT_SETTINGS, &mode);
    mode.dmFields = DM_BITSPERPEL | DM_PELSWIDTH | DM_PELSHEIGHT;
    mode.dmBitsPerPel = 16;
    EXPECT_EQ(DISP_CHANGE_SUCCESSFUL, ::ChangeDisplaySettingsW(&mode, 0));
  }
  ~LowColorDisplay() { EXPECT_EQ(DISP_CHANGE_SUCCESSFUL, ::ChangeDisplaySettingsW(nullptr, 0)); }
  LowColorDisplay(const LowColorDisplay &) = delete;
  LowColorDisplay &operator=(const LowColorDisplay &) = delete;
};

} // namespace lumenor::tests
