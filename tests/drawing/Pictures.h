#pragma once
// Pictures for the tests: made from their pixels, written to files, and read back as pixels. All pixels are numbers
// 0xAARRGGBB, row after row from the top.

#include <cstdint>
#include <string>
#include <vector>

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor::tests {

using Pixels = std::vector<std::uint32_t>;

/// A rectangle of pixels.
struct Picture {
  int width = 0;
  int height = 0;
  Pixels pixels;

  std::uint32_t At(int x, int y) const { return pixels.at(static_cast<std::size_t>(y * width + x)); }
  bool operator==(const Picture &other) const = default;
};

/// A picture of one colour.
Picture SolidPicture(int width, int height, std::uint32_t pixel);

/// A top-down DIB section with these very pixels.
BitmapHandle MakeDib(const Picture &picture);

/// The pixels of a 32-bit bitmap as they stand.
Picture PictureOf(HBITMAP bitmap);

/// Writes a PNG file with straight alpha, by the platform's encoder.
void WritePicture(const std::wstring &path, const Picture &picture);

/// The pixels of a picture file, alpha straight, by the platform's decoder.
Picture ReadPicture(const std::wstring &path);

/// Writes a black and white PNG file of one bit a pixel, whatever its size in pixels.
void WriteBlackPicture(const std::wstring &path, unsigned width, unsigned height);

/// The picture in a resource of the test program, alpha straight, by the platform's decoder.
Picture ReadResourcePicture(const std::wstring &name);

/// Whether `premultiplied` shows what `straight` is: the same alpha everywhere, and colours within one of the product.
bool IsPremultipliedOf(const Picture &premultiplied, const Picture &straight);

/// The smallest rectangle around the pixels of this colour; all zero without any.
RECT BoundsOf(const Picture &picture, std::uint32_t color);

/// The smallest rectangle around the pixels that aren't fully transparent; all zero without any.
RECT InkOf(const Picture &picture);

/// Expects the four sides to be the same.
void ExpectRect(const RECT &expected, const RECT &actual);

} // namespace lumenor::tests
