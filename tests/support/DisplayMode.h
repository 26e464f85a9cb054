#pragma once
// Other modes of the display, for all programs on it.

#include "system/Windows.h"

namespace lumenor::tests {

/// Gives the display the `mode`, null for its usual one. Returns what the platform answered last.
LONG ChangeDisplay(DEVMODEW *mode);

/// Makes the display 1024 by 768 pixels large.
LONG MakeDisplaySmall();

/// Switches the display to 16 bits a pixel for as long as it lives.
class LowColorDisplay {
public:
  LowColorDisplay();
  ~LowColorDisplay();
  LowColorDisplay(const LowColorDisplay &) = delete;
  LowColorDisplay &operator=(const LowColorDisplay &) = delete;
};

} // namespace lumenor::tests
