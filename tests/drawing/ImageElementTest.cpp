#include "toolkit/drawing/ImageElement.h"

#include <gtest/gtest.h>

#include "drawing/PaintSurface.h"
#include "drawing/Pictures.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"

namespace lumenor {
namespace {

using namespace tests;

class ImageElementTest : public ::testing::Test {
protected:
  std::wstring MakePicture(const Picture &picture) const {
    std::wstring path = folders.Root() + L"\\picture.png";
    WritePicture(path, picture);
    return path;
  }

  TestFolders folders;
  PaintSurface surface{8, 6};
};

TEST_F(ImageElementTest, AsksForTheFullSizeOfItsPicture) {
  const ImageElement element(MakePicture(SolidPicture(100, 50, 0xFF112233)), surface.Target());
  EXPECT_EQ(100, element.DesiredWidth.Get());
  EXPECT_EQ(50, element.DesiredHeight.Get());
  EXPECT_EQ(0, element.Width.Get());
  EXPECT_EQ(0, element.Height.Get());
}

TEST_F(ImageElementTest, ShowsAPictureOfTheProgramsResources) {
  const ImageElement element(L"IDI_SPLITTER", L"Image", surface.Target());
  EXPECT_EQ(2, element.DesiredWidth.Get());
  EXPECT_EQ(60, element.DesiredHeight.Get());
}

TEST_F(ImageElementTest, AMissingFileShowsTheBuiltInPicture) {
  const ImageElement element(L"nowhere.png", surface.Target());
  EXPECT_EQ(48, element.DesiredWidth.Get());
  EXPECT_EQ(48, element.DesiredHeight.Get());
}

TEST_F(ImageElementTest, AFileThatIsNoPictureAndAMissingResourceRaise) {
  WriteBytes(folders.Root() + L"\\bad.png", "garbage");
  EXPECT_THROW(ImageElement(folders.Root() + L"\\bad.png", surface.Target()), HResultError);
  EXPECT_THROW(ImageElement(L"IDI_NOWHERE", L"Image", surface.Target()), HResultError);
}

TEST_F(ImageElementTest, StretchesTheWholePictureOverTheRectangleThatItIsGiven) {
  ImageElement element(MakePicture(SolidPicture(3, 3, 0xFF112233)), surface.Target());
  const D2D1_RECT_F rect{2, 1, 7, 5};
  const Picture painted = surface.Draw([&] { element.Paint(surface.Target(), &rect); });
  for (int y = 0; y < painted.height; ++y)
    for (int x = 0; x < painted.width; ++x)
      EXPECT_EQ(x >= 2 && x < 7 && y >= 1 && y < 5 ? 0xFF112233u : 0u, painted.At(x, y)) << x << ", " << y;
}

TEST_F(ImageElementTest, TheColoursOfAStretchedPictureRunIntoEachOther) {
  ImageElement element(MakePicture({2, 1, {0xFF000000, 0xFFFFFFFF}}), surface.Target());
  const D2D1_RECT_F rect{0, 0, 8, 6};
  const Picture painted = surface.Draw([&] { element.Paint(surface.Target(), &rect); });
  EXPECT_NEAR(0x80, painted.At(3, 2) & 0xFF, 0x40);
  EXPECT_NEAR(0x80, painted.At(4, 2) & 0xFF, 0x40);
}

TEST_F(ImageElementTest, PaintsItsPixelsOneToOneWhereTheRectangleHasItsSize) {
  const Picture picture{2, 2, {0xFF112233, 0xFF445566, 0xFF778899, 0xFFAABBCC}};
  ImageElement element(MakePicture(picture), surface.Target());
  const D2D1_RECT_F rect{0, 0, 2, 2};
  const Picture painted = surface.Draw([&] { element.Paint(surface.Target(), &rect); });
  EXPECT_EQ(picture, (Picture{2, 2, {painted.At(0, 0), painted.At(1, 0), painted.At(0, 1), painted.At(1, 1)}}));
}

TEST_F(ImageElementTest, OpacityPlaysNoPart) {
  ImageElement element(MakePicture(SolidPicture(2, 2, 0xFF112233)), surface.Target());
  element.Opacity.Set(10);
  const D2D1_RECT_F rect{0, 0, 8, 6};
  EXPECT_EQ(SolidPicture(8, 6, 0xFF112233), surface.Draw([&] { element.Paint(surface.Target(), &rect); }));
}

TEST_F(ImageElementTest, KeepAspectCutsTheHeightToAnInteger) {
  ImageElement element(MakePicture(SolidPicture(100, 50, 0xFF112233)), surface.Target());
  element.DesiredWidth.Set(33);
  element.KeepAspect();
  EXPECT_EQ(16, element.DesiredHeight.Get());
  EXPECT_EQ(33, element.DesiredWidth.Get());
  element.DesiredWidth.Set(200);
  element.KeepAspect();
  EXPECT_EQ(100, element.DesiredHeight.Get());
}

} // namespace
} // namespace lumenor
