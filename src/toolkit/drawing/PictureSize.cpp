#include "toolkit/drawing/PictureSize.h"

#include <array>
#include <cstdint>
#include <limits>
#include <string_view>

namespace lumenor {

namespace {

using namespace std::literals;

constexpr std::uint64_t mostPixels = std::uint64_t{4096} * 4096;
constexpr PictureSize unbearable{std::numeric_limits<UINT>::max(), std::numeric_limits<UINT>::max()};

/// Bytes of a stream by their offset; none where the stream has no more.
class PictureBytes {
public:
  explicit PictureBytes(IStream *stream) : stream(stream) {}

  /// Reads the `count` bytes from `offset` on; at most as many as the buffer holds. False when they aren't all there.
  bool Read(std::uint64_t offset, std::size_t count) {
    ULONG length = 0;
    return SUCCEEDED(stream->Seek({.QuadPart = static_cast<LONGLONG>(offset)}, STREAM_SEEK_SET, nullptr)) &&
           SUCCEEDED(stream->Read(buffer.data(), static_cast<ULONG>(count), &length)) && length == count;
  }

  /// Whether the bytes that were read start with `text`.
  bool StartWith(std::string_view text) const { return std::string_view(buffer.data(), text.size()) == text; }

  /// Numbers among the bytes that were read, least significant byte first.
  std::uint32_t Small(std::size_t at) const { return Byte(at) | Byte(at + 1) << 8; }
  std::uint32_t Number(std::size_t at) const { return Small(at) | Small(at + 2) << 16; }

  /// The same, most significant byte first.
  std::uint32_t SmallFromTop(std::size_t at) const { return Byte(at) << 8 | Byte(at + 1); }
  std::uint32_t NumberFromTop(std::size_t at) const { return SmallFromTop(at) << 16 | SmallFromTop(at + 2); }

  std::uint32_t Byte(std::size_t at) const { return static_cast<unsigned char>(buffer.at(at)); }

private:
  IStream *stream;
  std::array<char, 32> buffer{};
};

std::uint32_t Distance(std::uint32_t number) {
  const auto side = static_cast<std::int64_t>(static_cast<std::int32_t>(number)); // rows from the top have a minus sign
  return static_cast<std::uint32_t>(side < 0 ? -side : side);
}

/// The header of a bitmap, which starts with its own length; the oldest kind has sides of two bytes.
std::optional<PictureSize> BitmapSize(PictureBytes &bytes, std::uint64_t offset) {
  if (!bytes.Read(offset, 12))
    return {};
  const std::uint32_t length = bytes.Number(0);
  if (length == sizeof(BITMAPCOREHEADER))
    return PictureSize{bytes.Small(4), bytes.Small(6)};
  if (length < 16 || length > sizeof(BITMAPV5HEADER))
    return {};
  return PictureSize{bytes.Number(4), Distance(bytes.Number(8))};
}

std::optional<PictureSize> PngSize(PictureBytes &bytes, std::uint64_t offset) {
  if (!bytes.Read(offset, 24) || !bytes.StartWith("\x89PNG\r\n\x1a\n"sv))
    return {};
  return PictureSize{bytes.NumberFromTop(16), bytes.NumberFromTop(20)};
}

/// The picture that the first entry of an icon's directory points to: a PNG, or a bitmap whose height is that of the
/// picture and of its mask.
std::optional<PictureSize> IconSize(PictureBytes &bytes) {
  if (!bytes.Read(0, 22))
    return {};
  const std::uint32_t offset = bytes.Number(18);
  const auto png = PngSize(bytes, offset);
  return png ? png : BitmapSize(bytes, offset);
}

/// Whether a JPEG's marker begins no segment, but is followed by the next marker: the restarts, and one of old
/// encoders.
bool StandsAlone(std::uint32_t marker) { return (marker >= 0xD0 && marker <= 0xD7) || marker == 0x01; }

/// The sizes stand in the frame header, one of the segments that follow the first two bytes. Bytes between two segments
/// are passed over, as decoders do. Pictures have some twenty segments; what takes thousands of steps is refused like a
/// picture that is too large.
std::optional<PictureSize> JpegSize(PictureBytes &bytes) {
  std::uint64_t offset = 2;
  for (int step = 0; step < 4096; ++step) {
    if (!bytes.Read(offset, 9))
      return {};
    const std::uint32_t marker = bytes.Byte(1);
    if (bytes.Byte(0) != 0xFF || marker == 0x00 || marker == 0xFF) {
      ++offset;
      continue;
    }
    const bool isFrameHeader =
        marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC; // tables, reserved
    if (isFrameHeader)
      return PictureSize{bytes.SmallFromTop(7), bytes.SmallFromTop(5)};
    offset += StandsAlone(marker) ? 2 : 2 + bytes.SmallFromTop(2);
  }
  return unbearable;
}

std::uint64_t GifColorTableBytes(std::uint32_t flags) {
  return (flags & 0x80) != 0 ? std::uint64_t{6} << (flags & 7) : 0;
}

/// Where the data from `offset` on ends, a chain of blocks whose last one is empty. Takes a step for each.
std::uint64_t BehindGifData(PictureBytes &bytes, std::uint64_t offset, int &steps) {
  std::uint32_t length = 0;
  do {
    if (--steps <= 0 || !bytes.Read(offset, 1))
      return offset;
    length = bytes.Byte(0);
    offset += 1 + length;
  } while (length != 0);
  return offset;
}

/// The size of the screen that the frames are put on; in its place that of the first frame that is too large, which a
/// frame may be on any screen. Some decoders take all frames at once, so too many pixels are refused too, and so is
/// what takes very many steps. Bytes between two parts are passed over.
std::optional<PictureSize> GifSize(PictureBytes &bytes) {
  constexpr std::uint64_t mostPixelsOfFrames = 8 * mostPixels;
  const PictureSize screen{bytes.Small(6), bytes.Small(8)};
  if (!bytes.Read(10, 3))
    return screen;
  std::uint64_t offset = 13 + GifColorTableBytes(bytes.Byte(0)), pixels = 0;
  for (int steps = 1 << 16; steps > 0; --steps) {
    if (!bytes.Read(offset, 1) || bytes.StartWith(";"sv))
      return screen;
    if (bytes.StartWith("!"sv)) {
      offset = BehindGifData(bytes, offset + 2, steps);
    } else if (bytes.StartWith(","sv)) {
      if (!bytes.Read(offset, 10))
        return screen;
      const PictureSize frame{bytes.Small(5), bytes.Small(7)};
      pixels += std::uint64_t{frame.width} * frame.height;
      if (!IsBearable(frame) || pixels > mostPixelsOfFrames)
        return IsBearable(frame) ? unbearable : frame;
      offset = BehindGifData(bytes, offset + 11 + GifColorTableBytes(bytes.Byte(9)), steps);
    } else {
      ++offset;
    }
  }
  return unbearable;
}

} // namespace

std::optional<PictureSize> ClaimedSize(IStream *stream) {
  PictureBytes bytes(stream);
  if (!bytes.Read(0, 10))
    return {};
  if (bytes.StartWith("GIF8"sv))
    return GifSize(bytes);
  if (bytes.StartWith("BM"sv))
    return BitmapSize(bytes, sizeof(BITMAPFILEHEADER));
  if (bytes.StartWith("\0\0\1\0"sv))
    return IconSize(bytes);
  if (bytes.StartWith("\xFF\xD8"sv))
    return JpegSize(bytes);
  return PngSize(bytes, 0);
}

bool IsBearable(PictureSize size) {
  constexpr std::uint32_t longestSide = 32768;
  return size.width <= longestSide && size.height <= longestSide &&
         std::uint64_t{size.width} * size.height <= mostPixels;
}

} // namespace lumenor
