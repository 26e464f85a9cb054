#include "e2e/Screen.h"

#include <cstdio>
#include <cstdlib>

namespace lumenor::e2e {
void SaveShot(const std::string &name) {
  const char *folder = std::getenv("LUMENOR_SHOTS");
  if (folder == nullptr)
    return;
  Picture picture = Capture({0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)});
  BITMAPINFOHEADER info = {};
  info.biSize = sizeof(info);
  info.biWidth = picture.Width();
  info.biHeight = -picture.Height(); // rows from the top
  info.biPlanes = 1;
  info.biBitCount = 32;
  const DWORD bytes = static_cast<DWORD>(picture.Width() * picture.Height() * 4);
  BITMAPFILEHEADER header = {};
  header.bfType = 0x4D42;
  header.bfOffBits = sizeof(header) + sizeof(info);
  header.bfSize = header.bfOffBits + bytes;
  if (std::FILE *file = std::fopen((std::string(folder) + "\\" + name + ".bmp").c_str(), "wb")) {
    std::fwrite(&header, sizeof(header), 1, file);
    std::fwrite(&info, sizeof(info), 1, file);
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
