#include "toolkit/drawing/BitmapShader.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "drawing/Pictures.h"
#include "system/HResultError.h"

namespace lumenor {
namespace {

using tests::MakeDib;
using tests::Picture;
using tests::PictureOf;
using tests::SolidPicture;

struct GlowValues {
  unsigned char red, green, blue;
  int radius;
  float falloff;
};

constexpr GlowValues barGlow{224, 224, 224, 4, 0.6F};

/// The glow as it is defined, a square root and a power for every pixel around every pixel, on the bytes of a picture
/// whose rows are `stride` bytes.
std::vector<unsigned char> GlowByDefinition(const std::vector<unsigned char> &source, int width, int height, int stride,
                                            const GlowValues &glow) {
  const int radius = glow.radius;
  const int glowStride = 4 * (width + 2 * radius);
  std::vector<unsigned char> result(static_cast<std::size_t>(glowStride * (height + 2 * radius)));
  for (int a = 3; a < static_cast<int>(source.size()); a += 4) {
    const unsigned char alpha = source[static_cast<std::size_t>(a)];
    if (alpha == 0)
      continue;
    const int centreRow = a / stride + radius;
    const int centreColumn = a % stride + 4 * radius;
    for (int y = centreRow - radius; y <= centreRow + radius; ++y) {
      for (int x = centreColumn - 4 * radius; x <= centreColumn + 4 * radius; x += 4) {
        const int dy = y - centreRow;
        const int dx = (x - centreColumn) / 4;
        const float distance = ::sqrtf(static_cast<float>(dx * dx + dy * dy));
        if (static_cast<float>(radius) < distance)
          continue;
        unsigned char *const pixelAlpha = result.data() + y * glowStride + x;
        const unsigned char old = *pixelAlpha;
        const float strength = static_cast<float>(alpha) * ::powf(glow.falloff, distance);
        const auto raised = static_cast<unsigned char>(static_cast<int>(floor(static_cast<double>(strength) + 0.5)));
        if (raised <= old)
          continue;
        *pixelAlpha = raised;
        if (old == 0) {
          pixelAlpha[-1] = glow.red;
          pixelAlpha[-2] = glow.green;
          pixelAlpha[-3] = glow.blue;
        }
      }
    }
  }
  return result;
}

std::vector<unsigned char> BytesOf(const Picture &picture) {
  const auto *bytes = reinterpret_cast<const unsigned char *>(picture.pixels.data());
  return {bytes, bytes + picture.pixels.size() * 4};
}

Picture Glow(const Picture &source, const GlowValues &glow) {
  const COuterGlowShader shader(glow.red, glow.green, glow.blue, glow.radius, glow.falloff);
  return PictureOf(shader.Shade(MakeDib(source).Get()).Get());
}

Picture Add(const Picture &source, int red, int green, int blue) {
  return PictureOf(CAdditiveColorShader(red, green, blue).Shade(MakeDib(source).Get()).Get());
}

Picture RandomPicture(std::mt19937 &random, int width, int height, unsigned visiblePercent) {
  Picture picture = SolidPicture(width, height, 0);
  for (std::uint32_t &pixel : picture.pixels) {
    const auto value = static_cast<std::uint32_t>(random());
    pixel = random() % 100 < visiblePercent ? value : value & 0xFFFFFF;
  }
  return picture;
}

void ExpectGlowByDefinition(const Picture &source, const GlowValues &glow) {
  const std::vector<unsigned char> expected =
      GlowByDefinition(BytesOf(source), source.width, source.height, 4 * source.width, glow);
  const Picture shaded = Glow(source, glow);
  EXPECT_EQ(source.width + 2 * glow.radius, shaded.width);
  EXPECT_EQ(source.height + 2 * glow.radius, shaded.height);
  EXPECT_EQ(expected, BytesOf(shaded)) << source.width << " by " << source.height << ", radius " << glow.radius;
}

TEST(AdditiveColorShader, AddsToEachChannelAndLeavesAlphaAlone) {
  const Picture source{2, 2, {0x00000000, 0xFF102030, 0x80102030, 0x01FFFFFF}};
  const Picture expected{2, 2, {0x000F1941, 0xFF1F3971, 0x801F3971, 0x01FFFFFF}};
  EXPECT_EQ(expected, Add(source, 15, 25, 65));
}

TEST(AdditiveColorShader, TwoHundredAndFiftyWithTwentyFourAddedGives255) {
  EXPECT_EQ((Picture{1, 1, {0xFFFFFFFF}}), Add({1, 1, {0xFFFAFAFA}}, 24, 24, 24));
}

TEST(AdditiveColorShader, NoValueWrapsWhateverIsAdded) {
  const Picture source{2, 1, {0x00FF0080, 0x12345678}};
  EXPECT_EQ((Picture{2, 1, {0x00FFFFFF, 0x12FFFFFF}}), Add(source, 1000, 1000, 1000));
  EXPECT_EQ((Picture{2, 1, {0x00000000, 0x12000000}}), Add(source, -1000, -1000, -1000));
}

TEST(AdditiveColorShader, OnlyReadsTheSource) {
  const Picture picture{1, 1, {0xFF102030}};
  const BitmapHandle source = MakeDib(picture);
  const BitmapHandle result = CAdditiveColorShader(1, 2, 3).Shade(source.Get());
  EXPECT_NE(source.Get(), result.Get());
  EXPECT_EQ(picture, PictureOf(source.Get()));
}

TEST(AdditiveColorShader, ASourceThatIsNoBitmapRaises) {
  EXPECT_THROW(CAdditiveColorShader(1, 1, 1).Shade(nullptr), HResultError);
}

TEST(OuterGlowShader, ATransparentPictureGivesATransparentGlowOfTheEnlargedSize) {
  EXPECT_EQ(SolidPicture(18, 15, 0), Glow(SolidPicture(10, 7, 0x00ABCDEF), barGlow));
}

TEST(OuterGlowShader, APixelAtExactlyTheRadiusStillCounts) {
  const Picture glow = Glow(SolidPicture(1, 1, 0xFF000000), barGlow);
  ASSERT_EQ(9, glow.width);
  ASSERT_EQ(9, glow.height);
  for (const auto &[x, y] : {std::pair{0, 4}, {8, 4}, {4, 0}, {4, 8}})
    EXPECT_EQ(0x21E0E0E0u, glow.At(x, y)) << "33 at " << x << ", " << y;
  EXPECT_EQ(0xFFE0E0E0u, glow.At(4, 4));
  EXPECT_EQ(0u, glow.At(0, 3)) << "farther than the radius";
  EXPECT_EQ(0u, glow.At(0, 0));
}

TEST(OuterGlowShader, HoldsOnlyTheHaloInItsOwnColour) {
  const Picture glow = Glow(SolidPicture(1, 1, 0xFF123456), {10, 20, 30, 1, 0.5F});
  const Picture expected{3, 3, {0, 0x800A141E, 0, 0x800A141E, 0xFF0A141E, 0x800A141E, 0, 0x800A141E, 0}};
  EXPECT_EQ(expected, glow);
}

TEST(OuterGlowShader, TheStrongestOfSeveralPixelsWins) {
  const Picture source{3, 1, {0x40000000, 0x00FFFFFF, 0xFF000000}};
  const Picture glow = Glow(source, {1, 2, 3, 2, 0.5F});
  ASSERT_EQ(7, glow.width);
  EXPECT_EQ(0x40010203u, glow.At(2, 2)) << "64 of its own, 64 from two pixels away";
  EXPECT_EQ(0x80010203u, glow.At(3, 2)) << "32 from the left, 128 from the right";
  EXPECT_EQ(0x20010203u, glow.At(1, 2));
}

TEST(OuterGlowShader, APixelFirstReachedWithALowAlphaKeepsItsColourWhileTheAlphaRises) {
  const Picture source{2, 1, {0x08000000, 0xFF000000}};
  const Picture glow = Glow(source, {200, 100, 50, 1, 0.5F});
  EXPECT_EQ(0xFFC86432u, glow.At(2, 1));
  EXPECT_EQ(0x80C86432u, glow.At(1, 1));
  EXPECT_EQ(0x04C86432u, glow.At(0, 1));
}

TEST(OuterGlowShader, AContributionThatRoundsToNothingLeavesThePixelUntouched) {
  const Picture glow = Glow(SolidPicture(1, 1, 0x01000000), barGlow);
  EXPECT_EQ(0x01E0E0E0u, glow.At(4, 4));
  EXPECT_EQ(0x01E0E0E0u, glow.At(5, 4)) << "0.6 rounds up";
  EXPECT_EQ(0u, glow.At(6, 4)) << "0.36 rounds down, and no colour is written";
}

TEST(OuterGlowShader, EveryByteIsTheOneOfTheDefinition) {
  std::mt19937 random(4711);
  for (int round = 0; round < 12; ++round) {
    const int width = 1 + static_cast<int>(random() % 40);
    const int height = 1 + static_cast<int>(random() % 40);
    ExpectGlowByDefinition(RandomPicture(random, width, height, 10 + 8 * static_cast<unsigned>(round)), barGlow);
  }
}

TEST(OuterGlowShader, EveryByteIsTheOneOfTheDefinitionForOtherRadiiAndFalloffs) {
  std::mt19937 random(4712);
  for (const int radius : {0, 1, 2, 3, 7, 12})
    for (const float falloff : {0.0F, 0.1F, 0.6F, 0.99F, 1.0F})
      ExpectGlowByDefinition(RandomPicture(random, 13, 9, 40), {1, 128, 255, radius, falloff});
}

TEST(OuterGlowShader, ASourceOf24BitsIsTakenByItsBytes) {
  BITMAPINFO info{};
  info.bmiHeader = {sizeof info.bmiHeader, 5, -3, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  void *bits = nullptr;
  const BitmapHandle source(ThrowIfNull(::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0)));
  constexpr int stride = 16;
  auto *const first = static_cast<unsigned char *>(bits);
  for (int i = 0; i < 3 * stride; ++i)
    first[i] = static_cast<unsigned char>(i * 5);
  const std::vector<unsigned char> bytes(first, first + 3 * stride);
  const BitmapHandle shaded = COuterGlowShader(9, 8, 7, 2, 0.5F).Shade(source.Get());
  EXPECT_EQ(GlowByDefinition(bytes, 5, 3, stride, {9, 8, 7, 2, 0.5F}), BytesOf(PictureOf(shaded.Get())));
}

TEST(OuterGlowShader, ASourceOfLessThanFourBytesGivesAnEmptyGlow) {
  const BitmapHandle source(::CreateBitmap(1, 1, 1, 1, nullptr));
  const BitmapHandle shaded = COuterGlowShader(1, 2, 3, 2, 0.5F).Shade(source.Get());
  EXPECT_EQ(SolidPicture(5, 5, 0), PictureOf(shaded.Get()));
}

TEST(OuterGlowShader, ASourceWhoseRowsAreNoWholePixelsRaises) {
  const BitmapHandle source(::CreateBitmap(3, 3, 1, 16, nullptr));
  EXPECT_THROW(COuterGlowShader(1, 2, 3, 2, 0.5F).Shade(source.Get()), HResultError);
}

TEST(OuterGlowShader, ASourceThatIsNoBitmapRaises) {
  EXPECT_THROW(COuterGlowShader(1, 2, 3, 4, 0.6F).Shade(nullptr), HResultError);
}

TEST(OuterGlowShader, OnlyReadsTheSource) {
  const Picture picture = SolidPicture(3, 3, 0x80402010);
  const BitmapHandle source = MakeDib(picture);
  const BitmapHandle shaded = COuterGlowShader(1, 2, 3, 4, 0.6F).Shade(source.Get());
  EXPECT_NE(source.Get(), shaded.Get());
  EXPECT_EQ(picture, PictureOf(source.Get()));
}

} // namespace
} // namespace lumenor
