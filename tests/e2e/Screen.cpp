#include "e2e/Screen.h"

#include <cstdio>
#include <cstdlib>

#include "system/Handles.h"

namespace lumenor::e2e {
namespace {

BITMAPINFO TopDown32(int width, int height) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  return info;
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
  const BITMAPINFO info = TopDown32(picture.Width(), picture.Height());
  void *bits = nullptr;
  const BitmapHandle bitmap(::CreateDIBSection(screen.Get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  const SelectedObject selected(memory.Get(), bitmap.Get());
  ::BitBlt(memory.Get(), 0, 0, picture.Width(), picture.Height(), screen.Get(), area.left, area.top, SRCCOPY);
  ::GdiFlush();
  const auto *source = static_cast<const std::uint32_t *>(bits);
  for (int i = 0; i < picture.Width() * picture.Height(); ++i)
    picture.Data()[i] = source[i] & 0xFFFFFF; // the top byte of a screen pixel means nothing
  return picture;
}

void SaveShot(const std::string &name) {
  const char *folder = std::getenv("LUMENOR_SHOTS");
  if (folder == nullptr)
    return;
  Picture picture = Capture({0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)});
  const BITMAPINFO info = TopDown32(picture.Width(), picture.Height());
  const DWORD bytes = static_cast<DWORD>(picture.Width() * picture.Height() * 4);
  BITMAPFILEHEADER header = {};
  header.bfType = 0x4D42;
  header.bfOffBits = sizeof(header) + sizeof(info.bmiHeader);
  header.bfSize = header.bfOffBits + bytes;
  if (std::FILE *file = std::fopen((std::string(folder) + "\\" + name + ".bmp").c_str(), "wb")) {
    std::fwrite(&header, sizeof(header), 1, file);
    std::fwrite(&info.bmiHeader, sizeof(info.bmiHeader), 1, file);
    std::fwrite(picture.Data(), 1, bytes, file);
    std::fclose(file);
  }
}

Picture CaptureSettled(const RECT &area) {
  constexpr auto pause = std::chrono::milliseconds(250);
  Picture last = Capture(area);
  WaitFor([&] {
    std::this_thread::sleep_for(pause);
    Picture now = Capture(area);
    const bool same = now == last;
    last = std::move(now);
    return same;
  });
  return last;
}

} // namespace lumenor::e2e
