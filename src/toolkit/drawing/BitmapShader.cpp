#include "toolkit/drawing/BitmapShader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <map>
#include <vector>

#include "system/HResultError.h"
#include "toolkit/drawing/WICHelper.h"

namespace lumenor {
namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::size_t bytesPerPixel = 4; // blue, green, red, alpha
constexpr std::size_t alphaOffset = 3;

BITMAP ReadRecord(HBITMAP bitmap) {
  BITMAP record{};
  ThrowIfFalse(::GetObjectW(bitmap, sizeof record, &record) != 0);
  return record;
}

Bytes ReadBytes(HBITMAP bitmap, const BITMAP &record) {
  Bytes bytes(static_cast<std::size_t>(record.bmWidthBytes) * static_cast<std::size_t>(record.bmHeight));
  ThrowIfFalse(::GetBitmapBits(bitmap, static_cast<LONG>(bytes.size()), bytes.data()) != 0);
  return bytes;
}

void WriteBytes(HBITMAP bitmap, const Bytes &bytes) {
  ThrowIfFalse(::SetBitmapBits(bitmap, static_cast<DWORD>(bytes.size()), bytes.data()) != 0);
}

/// The disc of light around a pixel: the pixels that it falls on, and how strong it is there. Pixels at one distance
/// share a level, so that the power is taken once for each distance and the rounding once for each alpha there.
class GlowDisc {
public:
  /// A pixel of the disc, counted from the upper left corner of the square around it.
  struct Spot {
    std::size_t x;
    std::size_t y;
    std::size_t level;
  };
  using Strengths = std::array<unsigned char, 256>; // by the alpha of the pixel in the middle

  GlowDisc(int radius, float falloff) {
    std::map<int, std::size_t> levelOfSquare;
    for (int dy = -radius; dy <= radius; ++dy)
      for (int dx = -radius; dx <= radius; ++dx) {
        const int square = dx * dx + dy * dy;
        const float distance = ::sqrtf(static_cast<float>(square));
        if (static_cast<float>(radius) < distance)
          continue;
        const auto [entry, added] = levelOfSquare.try_emplace(square, levels.size());
        if (added)
          levels.push_back(StrengthsOf(::powf(falloff, distance)));
        spots.push_back({static_cast<std::size_t>(dx + radius), static_cast<std::size_t>(dy + radius), entry->second});
      }
  }

  const std::vector<Spot> &Spots() const { return spots; }
  const std::vector<Strengths> &Levels() const { return levels; }

private:
  static Strengths StrengthsOf(float fraction) {
    Strengths strengths;
    for (std::size_t alpha = 0; alpha < strengths.size(); ++alpha)
      strengths[alpha] = static_cast<unsigned char>(std::lround(static_cast<float>(alpha) * fraction));
    return strengths;
  }

  std::vector<Spot> spots;
  std::vector<Strengths> levels;
};

void RaiseTo(unsigned char *values, const Bytes &floor) {
  for (std::size_t i = 0; i < floor.size(); ++i)
    values[i] = std::max(values[i], floor[i]);
}

/// The alphas of the halo alone, `haloWidth` of them a row. Whole rows of the picture are moved over the disc, since
/// the strongest wins, in any order, and all of them have one colour.
Bytes DrawHalo(const BITMAP &source, const Bytes &bytes, std::size_t haloWidth, std::size_t haloHeight,
               const GlowDisc &disc) {
  Bytes halo(haloWidth * haloHeight);
  const std::size_t stride = static_cast<std::size_t>(source.bmWidthBytes);
  std::vector<Bytes> rowOfLevel(disc.Levels().size(), Bytes(stride / bytesPerPixel));
  unsigned char *haloRow = halo.data();
  for (auto row = bytes.begin(); row != bytes.end(); row += stride, haloRow += haloWidth) {
    for (std::size_t level = 0; level < rowOfLevel.size(); ++level)
      for (std::size_t i = 0; i < rowOfLevel[level].size(); ++i)
        rowOfLevel[level][i] = disc.Levels()[level][row[i * bytesPerPixel + alphaOffset]];
    for (const GlowDisc::Spot &spot : disc.Spots())
      RaiseTo(haloRow + spot.y * haloWidth + spot.x, rowOfLevel[spot.level]);
  }
  return halo;
}

} // namespace

BitmapHandle CAdditiveColorShader::Shade(HBITMAP source) const {
  const BITMAP record = ReadRecord(source);
  BitmapHandle result = CreateDib(record.bmWidth, record.bmHeight);
  Bytes bytes = ReadBytes(source, record);
  const std::array<int, bytesPerPixel> added{blue, green, red, 0};
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<unsigned char>(std::clamp(bytes[i] + added[i % bytesPerPixel], 0, 255));
  WriteBytes(result.Get(), bytes);
  return result;
}

BitmapHandle COuterGlowShader::Shade(HBITMAP source) const {
  const BITMAP record = ReadRecord(source);
  const int width = record.bmWidth + 2 * radius;
  const int height = record.bmHeight + 2 * radius;
  BitmapHandle result = CreateDib(width, height);
  const Bytes bytes = ReadBytes(source, record);
  if (bytes.size() < bytesPerPixel)
    return result;
  // A row of any other length puts the alphas of the rows below between the pixels.
  if (record.bmWidthBytes % bytesPerPixel != 0)
    throw HResultError(E_INVALIDARG);

  const GlowDisc disc(radius, falloff);
  const Bytes halo = DrawHalo(record, bytes, static_cast<std::size_t>(width), static_cast<std::size_t>(height), disc);
  Bytes pixels(halo.size() * bytesPerPixel);
  for (std::size_t i = 0; i < halo.size(); ++i) {
    if (halo[i] == 0)
      continue;
    unsigned char *pixel = pixels.data() + i * bytesPerPixel;
    pixel[0] = blue;
    pixel[1] = green;
    pixel[2] = red;
    pixel[3] = halo[i];
  }
  WriteBytes(result.Get(), pixels);
  return result;
}

} // namespace lumenor
