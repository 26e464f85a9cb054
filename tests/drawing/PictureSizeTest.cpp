#include "toolkit/drawing/PictureSize.h"

#include <gtest/gtest.h>

#include "system/Windows.h"

#include <shlwapi.h>
#include <wrl/client.h>

namespace lumenor {

/// For failure messages.
void PrintTo(const PictureSize &size, std::ostream *out) { *out << size.width << " by " << size.height; }

namespace {

using namespace std::literals;

std::optional<PictureSize> SizeIn(const std::string &bytes) {
  // Like a file's stream it has an end; Wine's stream on a global block can be read behind it.
  Microsoft::WRL::ComPtr<IStream> stream;
  stream.Attach(::SHCreateMemStream(reinterpret_cast<const BYTE *>(bytes.data()), static_cast<UINT>(bytes.size())));
  return ClaimedSize(stream.Get());
}

std::string Number(std::uint32_t number, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i)
    text += static_cast<char>(number >> 8 * i & 0xFF);
  return text;
}

std::string FromTop(std::uint32_t number, int bytes) {
  const std::string text = Number(number, bytes);
  return {text.rbegin(), text.rend()};
}

std::string BitmapHeader(std::uint32_t width, std::uint32_t height) {
  return Number(40, 4) + Number(width, 4) + Number(height, 4);
}
std::string Bmp(std::uint32_t width, std::uint32_t height) {
  return "BM" + std::string(12, 'x') + BitmapHeader(width, height);
}
std::string OldBmp(std::uint32_t width, std::uint32_t height) {
  return "BM" + std::string(12, 'x') + Number(12, 4) + Number(width, 2) + Number(height, 2) + Number(1, 4);
}
std::string Png(std::uint32_t width, std::uint32_t height) {
  return "\x89PNG\r\n\x1a\n\0\0\0\rIHDR"s + FromTop(width, 4) + FromTop(height, 4);
}
std::string Gif(std::uint32_t width, std::uint32_t height) { return "GIF89a" + Number(width, 2) + Number(height, 2); }
std::string Icon(const std::string &picture, std::uint32_t offset = 30) {
  return "\0\0\1\0\1\0"s + std::string(12, 'x') + Number(offset, 4) + std::string(8, 'x') + picture;
}
std::string Segment(char marker, const std::string &content) {
  return "\xFF"s + marker + FromTop(static_cast<std::uint32_t>(content.size()) + 2, 2) + content;
}
std::string Jpeg(char marker, std::uint32_t width, std::uint32_t height) {
  const std::string thumbnail = "\xFF\xC0" + std::string(20, '\1');
  return "\xFF\xD8"s + Segment('\xE0', thumbnail) + Segment('\xC4', "table") + "\xFF\xFF"s +
         Segment(marker, "\x08"s + FromTop(height, 2) + FromTop(width, 2) + "xxx");
}

TEST(ClaimedPictureSize, IsReadFromEachKindOfPicture) {
  EXPECT_EQ((PictureSize{30000, 20000}), SizeIn(Bmp(30000, 20000)));
  EXPECT_EQ((PictureSize{300, 200}), SizeIn(OldBmp(300, 200)));
  EXPECT_EQ((PictureSize{70000, 80000}), SizeIn(Png(70000, 80000)));
  EXPECT_EQ((PictureSize{300, 65535}), SizeIn(Gif(300, 65535)));
  EXPECT_EQ((PictureSize{256, 512}), SizeIn(Icon(BitmapHeader(256, 512))));
  EXPECT_EQ((PictureSize{256, 70000}), SizeIn(Icon(Png(256, 70000))));
  for (const char marker : {'\xC0', '\xC1', '\xC2', '\xCF'})
    EXPECT_EQ((PictureSize{65535, 4000}), SizeIn(Jpeg(marker, 65535, 4000))) << static_cast<int>(marker);
}

TEST(ClaimedPictureSize, OfABitmapWithTheTopRowFirstIsWithoutTheSign) {
  EXPECT_EQ((PictureSize{2, 3}), SizeIn(Bmp(2, static_cast<std::uint32_t>(-3))));
  EXPECT_EQ((PictureSize{0x80000000, 0x80000000}), SizeIn(Bmp(0x80000000, 0x80000000)));
  EXPECT_EQ((PictureSize{0xFFFFFFFF, 2}), SizeIn(Icon(BitmapHeader(0xFFFFFFFF, static_cast<std::uint32_t>(-2)))));
}

TEST(ClaimedPictureSize, IsUnknownForAllElse) {
  for (const std::string &bytes :
       {""s, "BM"s, "no picture of any kind"s, std::string(100, '\0'), "II*\0\x08\0\0\0\0\0\0\0"s})
    EXPECT_EQ(std::nullopt, SizeIn(bytes)) << bytes;
}

TEST(ClaimedPictureSize, IsUnknownWhenThePictureBreaksOffBeforeIt) {
  for (const std::string &whole : {Bmp(3, 4), Png(3, 4), Gif(3, 4), Icon(BitmapHeader(3, 4)), Icon(Png(3, 4))})
    for (std::size_t length = 0; length < whole.size(); ++length)
      EXPECT_EQ(std::nullopt, SizeIn(whole.substr(0, length))) << length << " bytes of " << whole;
  const std::string jpeg = Jpeg('\xC0', 3, 4);
  for (std::size_t length = 0; length < jpeg.size() - 3; ++length)
    EXPECT_EQ(std::nullopt, SizeIn(jpeg.substr(0, length))) << length;
  EXPECT_EQ(std::nullopt, SizeIn(Icon(BitmapHeader(3, 4), 0xFFFFFFFF)));
}

TEST(ClaimedPictureSize, OfAJpegIsFoundBehindBytesOfNoSegment) {
  const std::string frame = Jpeg('\xC1', 30000, 25088).substr(2);
  for (const std::string &stray : {"stray"s, "\xFF\0"s, "\xFF\xD0\xFF\xD3\xFF\xD7"s, "\xFF\x01"s, "x\xFF\xFF\xFF\0y"s})
    EXPECT_EQ((PictureSize{30000, 25088}), SizeIn("\xFF\xD8" + Segment('\xE0', "JFIF") + stray + frame)) << stray;
}

TEST(ClaimedPictureSize, OfAnEndlessJpegIsOneThatNobodyBears) {
  for (const char endless : {'\xFF', 'x', '\0'}) {
    const auto size = SizeIn("\xFF\xD8" + std::string(100'000, endless));
    ASSERT_TRUE(size);
    EXPECT_FALSE(IsBearable(*size));
  }
}

/// A screen of 3 by 4 with a color table, and a comment of two blocks.
const std::string gifStart = Gif(3, 4) + "\x81\0\0"s + "," + std::string(11, '\xFF') + "!\xFE\2,x\1,\0"s;

std::string GifFrame(std::uint32_t width, std::uint32_t height, bool hasColors = false) {
  return "," + Number(1, 2) + Number(2, 2) + Number(width, 2) + Number(height, 2) +
         (hasColors ? "\x80" + std::string(6, ',') : "\0"s) + "\2\3,,,\1;\0"s;
}

TEST(ClaimedPictureSize, OfAGifIsThatOfAFrameThatNobodyBears) {
  EXPECT_EQ((PictureSize{3, 4}), SizeIn(gifStart + GifFrame(5, 6) + GifFrame(4096, 4096, true) + ";"));
  EXPECT_EQ((PictureSize{65535, 65534}), SizeIn(gifStart + GifFrame(65535, 65534) + ";"));
  EXPECT_EQ((PictureSize{4097, 4096}), SizeIn(gifStart + GifFrame(1, 1, true) + GifFrame(4097, 4096)));
  EXPECT_EQ((PictureSize{4097, 4096}), SizeIn(gifStart + "stray" + GifFrame(4097, 4096)));
  EXPECT_EQ((PictureSize{3, 4}), SizeIn(gifStart + ";" + GifFrame(65535, 65535))) << "behind the end";
}

TEST(ClaimedPictureSize, OfAGifThatBreaksOffIsAsFarAsItGoes) {
  const std::string frame = GifFrame(4097, 4096);
  for (std::size_t length = 0; length < 10; ++length)
    EXPECT_EQ((PictureSize{3, 4}), SizeIn(gifStart + frame.substr(0, length))) << length;
  for (std::size_t length = 10; length < gifStart.size(); ++length)
    EXPECT_EQ((PictureSize{3, 4}), SizeIn(gifStart.substr(0, length))) << length;
}

TEST(ClaimedPictureSize, OfAGifWithVeryManyPixelsOrPartsIsOneThatNobodyBears) {
  std::string frames = gifStart;
  for (int i = 0; i < 8; ++i)
    frames += GifFrame(4096, 4096);
  EXPECT_EQ((PictureSize{3, 4}), SizeIn(frames));
  EXPECT_FALSE(IsBearable(*SizeIn(frames + GifFrame(1, 1))));
  const std::string noColors = Gif(3, 4) + std::string(3, '\0');
  EXPECT_EQ((PictureSize{3, 4}), SizeIn(noColors + std::string(65'535, 'x') + ";"));
  EXPECT_FALSE(IsBearable(*SizeIn(noColors + std::string(65'536, 'x') + ";")));
  EXPECT_FALSE(IsBearable(*SizeIn(gifStart + "!\xFE"s + std::string(200'000, '\1'))));
}

TEST(BearablePicture, HasNoMoreThan4096By4096PixelsAndNoSideAbove32768) {
  EXPECT_TRUE(IsBearable({4096, 4096}));
  EXPECT_TRUE(IsBearable({0, 0}));
  EXPECT_TRUE(IsBearable({32768, 512}));
  EXPECT_FALSE(IsBearable({4096, 4097}));
  EXPECT_FALSE(IsBearable({32769, 1}));
  EXPECT_FALSE(IsBearable({1, 32769}));
  EXPECT_FALSE(IsBearable({0x80000000, 0x7FFFFFFF}));
}

} // namespace
} // namespace lumenor
