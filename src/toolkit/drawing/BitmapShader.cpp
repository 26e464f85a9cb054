#include "toolkit/drawing/BitmapShader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
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

/// How strong the glow of a source pixel is on the pixels around it. The powers are taken once, the strengths once for
/// every alpha that the picture has, so that the walk over the picture only compares bytes.
class GlowDisc {
public:
  /// The pixels of one row of the disc: `length` of them, from `left` of the square around the disc on.
  struct Row {
    int left;
    int length;
  };

  GlowDisc(int radius, float falloff) {
    for (int dy = -radius; dy <= radius; ++dy)
      AddRow(dy, radius, falloff);
  }

  const std::vector<Row> &Rows() const { return rows; }

  /// The strengths that a source pixel of this alpha gives, row after row.
  const unsigned char *Strengths(unsigned char alpha) {
    Bytes &strengths = strengthsOfAlpha[alpha];
    if (strengths.empty()) {
      strengths.resize(fractions.size());
      std::transform(fractions.begin(), fractions.end(), strengths.begin(),
                     [alpha](float fraction) { return Rounded(static_cast<float>(alpha) * fraction); });
    }
    return strengths.data();
  }

private:
  void AddRow(int dy, int radius, float falloff) {
    Row row{0, 0};
    for (int dx = -radius; dx <= radius; ++dx) {
      const float distance = ::sqrtf(static_cast<float>(dx * dx + dy * dy));
      if (static_cast<float>(radius) < distance)
        continue;
      if (row.length++ == 0)
        row.left = dx + radius;
      fractions.push_back(::powf(falloff, distance));
    }
    rows.push_back(row);
  }

  static unsigned char Rounded(float strength) {
    return static_cast<unsigned char>(static_cast<int>(std::floor(static_cast<double>(strength) + 0.5)));
  }

  std::vector<Row> rows;
  std::vector<float> fractions;
  std::array<Bytes, 256> strengthsOfAlpha;
};

void RaiseTo(unsigned char *values, const unsigned char *floor, int count) {
  for (int i = 0; i < count; ++i)
    values[i] = std::max(values[i], floor[i]);
}

/// The alphas of the halo alone, `haloWidth` of them a row. The order of the source's pixels doesn't matter, since the
/// strongest wins and all of them have one colour.
Bytes DrawHalo(const BITMAP &source, const Bytes &bytes, std::size_t haloWidth, std::size_t haloHeight,
               GlowDisc &disc) {
  Bytes halo(haloWidth * haloHeight);
  const std::size_t stride = static_cast<std::size_t>(source.bmWidthBytes);
  for (std::size_t index = alphaOffset; index < bytes.size(); index += bytesPerPixel) {
    if (bytes[index] == 0)
      continue;
    const unsigned char *strengths = disc.Strengths(bytes[index]);
    unsigned char *haloRow = halo.data() + index / stride * haloWidth + index % stride / bytesPerPixel;
    for (const GlowDisc::Row &row : disc.Rows()) {
      RaiseTo(haloRow + row.left, strengths, row.length);
      strengths += row.length;
      haloRow += haloWidth;
    }
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

  GlowDisc disc(radius, falloff);
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
