#include "toolkit/Scale.h"

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

namespace {

SIZE ReadDotsPerInch() {
  const WindowDeviceContext screen(nullptr);
  if (screen.Get() == nullptr)
    return {};
  return {::GetDeviceCaps(screen.Get(), LOGPIXELSX), ::GetDeviceCaps(screen.Get(), LOGPIXELSY)};
}

const SIZE &ScreenDotsPerInch() {
  static const SIZE dotsPerInch = ReadDotsPerInch();
  return dotsPerInch;
}

constexpr int designDotsPerInch = 96;

} // namespace

int ScaleX(int designPixels) { return ::MulDiv(designPixels, ScreenDotsPerInch().cx, designDotsPerInch); }

int ScaleY(int designPixels) { return ::MulDiv(designPixels, ScreenDotsPerInch().cy, designDotsPerInch); }

} // namespace lumenor
