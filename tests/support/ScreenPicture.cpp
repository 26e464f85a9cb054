#include "support/ScreenPicture.h"

#include "system/Handles.h"

namespace lumenor::tests {

namespace {

/// A bitmap of 32 bits that owns its `bits`, rows from the top.
HBITMAP MakeBitmap(HDC context, int width, int height, void **bits) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  return ::CreateDIBSection(context, &info, DIB_RGB_COLORS, bits, nullptr, 0);
}

} // namespace

Picture Picture::Part(const RECT &area) const {
  Picture part(area.right - area.left, area.bottom - area.top);
  for (int y = 0; y < part.height; ++y)
    for (int x = 0; x < part.width; ++x)
      part.Data()[y * part.width + x] = At(area.left + x, area.top + y);
  return part;
}

int Picture::Differences(const Picture &other) const {
  if (width != other.width || height != other.height)
    return static_cast<int>(pixels.size());
  int count = 0;
  for (std::size_t i = 0; i < pixels.size(); ++i)
    count += pixels[i] != other.pixels[i];
  return count;
}

Picture Capture(const RECT &area) {
  Picture picture(area.right - area.left, area.bottom - area.top);
  const WindowDeviceContext screen(nullptr);
  const MemoryDeviceContext memory(::CreateCompatibleDC(screen.Get()));
  void *bits = nullptr;
  const BitmapHandle bitmap(MakeBitmap(screen.Get(), picture.Width(), picture.Height(), &bits));
  const SelectedObject selected(memory.Get(), bitmap.Get());
  ::BitBlt(memory.Get(), 0, 0, picture.Width(), picture.Height(), screen.Get(), area.left, area.top, SRCCOPY);
  ::GdiFlush();
  const auto *source = static_cast<const std::uint32_t *>(bits);
  for (int i = 0; i < picture.Width() * picture.Height(); ++i)
    picture.Data()[i] = source[i] & 0xFFFFFF; // the top byte of a screen pixel is undefined
  return picture;
}

} // namespace lumenor::tests
