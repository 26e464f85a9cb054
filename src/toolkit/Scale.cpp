#include "toolkit/Scale.h"

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

namespace {

struct DotsPerInch {
  int x = 0;
  int y = 0;
};

DotsPerInch ReadScreen() {
  const WindowDeviceContext screen(nullptr);
  if (screen.Get() == nullptr)
    return {};
  return {::GetDeviceCaps(screen.Get(), LOGPIXELSX), ::GetDeviceCaps(screen.Get(), LOGPIXELSY)};
}

const DotsPerInch &ScreenDotsPerInch() {
  static const DotsPerInch screen = ReadScreen();
  return screen;
}

constexpr int designDotsPerInch = 96;

} // namespace

int ScaleX(int designPixels) { return ::MulDiv(designPixels, ScreenDotsPerInch().x, designDotsPerInch); }

int ScaleY(int designPixels) { return ::MulDiv(designPixels, ScreenDotsPerInch().y, designDotsPerInch); }

} // namespace lumenor
