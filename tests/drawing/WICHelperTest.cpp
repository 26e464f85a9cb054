#include "toolkit/drawing/WICHelper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/PaintSurface.h"
#include "drawing/Pictures.h"
#include "support/FailingDisk.h"
#include "support/LogCapture.h"
#include "support/OperationSpy.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"

namespace lumenor {
namespace {

using Microsoft::WRL::ComPtr;
using namespace tests;
using namespace std::literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WICHelper : public ::testing::Test {
protected:
  std::wstring Path(const std::wstring &name) const { return folders.Root() + L"\\" + name; }

  std::wstring MakePicture(int width, int height, std::uint32_t pixel = 0xFF336699) const {
    const std::wstring path = Path(L"picture.png");
    WritePicture(path, SolidPicture(width, height, pixel));
    return path;
  }

  Picture Load(const std::wstring &path, bool limitToIconSize) {
    return surface.PictureOf(LoadBitmapFromFile(surface.Target().Get(), path, limitToIconSize).Get());
  }

  TestFolders folders;
  CurrentFolder currentFolder{folders.Root() + L"\\current"};
  PaintSurface surface{10, 10};
};

HRESULT ResultOf(const std::function<void()> &action) {
  try {
    action();
  } catch (const HResultError &error) {
    return error.Result();
  }
  return S_OK;
}

TEST_F(WICHelper, APictureInTheLanguageFolderIsLoaded) {
  WriteBytes(folders.CommonFolder() + L"\\LangRes\\unused", "");
  WritePicture(folders.CommonFolder() + L"\\LangRes\\mail.png", SolidPicture(3, 2, 0xFF010203));
  EXPECT_EQ(SolidPicture(3, 2, 0xFF010203), Load(L"mail.png", false));
}

// Device bitmaps from files.

TEST_F(WICHelper, ANameThatExistsNowhereGivesTheBuiltInPictureWithTwoInfoLinesAndAnErrorLine) {
  const LogCapture log(folders);
  const Picture loaded = Load(L"nowhere.png", true);
  EXPECT_EQ(48, loaded.width);
  EXPECT_EQ(48, loaded.height);
  EXPECT_TRUE(IsPremultipliedOf(loaded, ReadResourcePicture(L"IDI_DEFAULT")));
  const std::string installed = Utf8(folders.InstallFolder()) + "\\nowhere.png";
  const std::string common = Utf8(folders.CommonFolder()) + "\\LangRes\\nowhere.png";
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: WICHelper: can't find nowhere.png falling back to " + installed,
                                       "INFO: WICHelper: can't find " + installed + " falling back to " + common,
                                       "ERROR: WICHelper: cannot find " + common + " loading default image"));
}

TEST_F(WICHelper, AFolderGivesTheBuiltInPictureAsADeviceBitmap) {
  const LogCapture log(folders);
  EXPECT_TRUE(IsPremultipliedOf(Load(folders.Root(), false), ReadResourcePicture(L"IDI_DEFAULT")));
  EXPECT_THAT(log.Lines(),
              ElementsAre("ERROR: WICHelper: cannot find " + Utf8(folders.Root()) + " loading default image"));
}

TEST_F(WICHelper, AFolderIsDecodedAsAGdiBitmapAndRaises) {
  EXPECT_THROW(LoadHBitmapFromFile(folders.Root()), HResultError);
}

TEST_F(WICHelper, LoadingAFileIsLogged) {
  const std::wstring path = MakePicture(2, 2);
  const LogCapture log(folders);
  Load(path, false);
  LoadHBitmapFromFile(path);
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Loading bitmap file: " + Utf8(path),
                                       "INFO: Loading hbitmap from file: " + Utf8(path)));
}

TEST_F(WICHelper, DeviceBitmapsArePremultiplied) {
  const Picture straight{2, 2, {0xFF336699, 0x80FF8040, 0x00FFFFFF, 0x40000080}};
  WritePicture(Path(L"alpha.png"), straight);
  EXPECT_TRUE(IsPremultipliedOf(Load(Path(L"alpha.png"), false), straight));
  EXPECT_TRUE(IsPremultipliedOf(Load(Path(L"alpha.png"), true), straight));
}

struct LimitCase {
  int width, height, limitedWidth, limitedHeight;
};

constexpr LimitCase limitCases[] = {
    {100, 50, 48, 24}, {50, 100, 24, 48}, {100, 100, 48, 48}, {20, 30, 20, 30},  {48, 48, 48, 48},   {49, 48, 48, 47},
    {48, 49, 47, 48},  {47, 49, 46, 48},  {1, 1, 1, 1},       {1000, 48, 48, 2}, {30, 600, 2, 48},   {300, 300, 48, 48},
    {96, 97, 47, 48},  {97, 96, 48, 47},  {48, 1, 48, 1},     {64, 64, 48, 48},  {256, 256, 48, 48},
};

TEST_F(WICHelper, TheLimitScalesTheLongerSideTo48AndNeverEnlarges) {
  for (const LimitCase &limitCase : limitCases) {
    const std::wstring path = MakePicture(limitCase.width, limitCase.height);
    const Picture expected = SolidPicture(limitCase.limitedWidth, limitCase.limitedHeight, 0xFF336699);
    EXPECT_EQ(expected, Load(path, true)) << limitCase.width << " by " << limitCase.height;
    EXPECT_EQ(expected, PictureOf(LoadHBitmapFromFile(path).Get())) << limitCase.width << " by " << limitCase.height;
  }
}

using ScaleFunction = HRESULT(STDMETHODCALLTYPE *)(IWICBitmapScaler *, IWICBitmapSource *, UINT, UINT,
                                                   WICBitmapInterpolationMode);

std::vector<WICBitmapInterpolationMode> modes;
ScaleFunction platformScale = nullptr;

HRESULT STDMETHODCALLTYPE HearMode(IWICBitmapScaler *self, IWICBitmapSource *source, UINT width, UINT height,
                                   WICBitmapInterpolationMode mode) {
  modes.push_back(mode);
  return platformScale(self, source, width, height, mode);
}

TEST_F(WICHelper, EveryPictureGoesThroughTheCubicScalerOfTheLimit) {
  const std::wstring path = MakePicture(20, 30);
  ComPtr<IWICBitmapScaler> scaler;
  ThrowIfFailed(GetImagingFactory()->CreateBitmapScaler(&scaler));
  OperationSpy spy(scaler.Get());
  platformScale = spy.Exchange(8, &HearMode);
  modes.clear();
  Load(path, false);
  EXPECT_THAT(modes, IsEmpty());
  Load(path, true);
  LoadHBitmapFromFile(path);
  EXPECT_THAT(modes, ElementsAre(WICBitmapInterpolationModeCubic, WICBitmapInterpolationModeCubic));
}

TEST_F(WICHelper, WithoutTheLimitAPictureKeepsItsSize) {
  EXPECT_EQ(SolidPicture(100, 50, 0xFF336699), Load(MakePicture(100, 50), false));
}

TEST_F(WICHelper, APictureTooThinForTheLimitRaises) {
  const std::wstring path = MakePicture(1000, 10);
  EXPECT_THROW(Load(path, true), HResultError);
  EXPECT_THROW(LoadHBitmapFromFile(path), HResultError);
  EXPECT_EQ(1000, Load(path, false).width);
}

// GDI bitmaps from files.

TEST_F(WICHelper, AMissingFileGivesNoGdiBitmapAndAnErrorLine) {
  const LogCapture log(folders);
  EXPECT_FALSE(LoadHBitmapFromFile(L"nowhere.png"));
  const std::string common = Utf8(folders.CommonFolder()) + "\\LangRes\\nowhere.png";
  const std::vector<std::string> lines = log.Lines();
  ASSERT_EQ(4u, lines.size());
  EXPECT_EQ("INFO: Loading hbitmap from file: " + common, lines[2]);
  EXPECT_EQ("ERROR: WICHelper: cannot find " + common, lines[3]);
}

TEST_F(WICHelper, GdiBitmapsArePremultiplied) {
  const Picture straight{2, 2, {0xFF336699, 0x80FF8040, 0x00FFFFFF, 0x40000080}};
  WritePicture(Path(L"alpha.png"), straight);
  EXPECT_TRUE(IsPremultipliedOf(PictureOf(LoadHBitmapFromFile(Path(L"alpha.png")).Get()), straight));
}

/// A picture of 8 by 8 of which only the first rows are there.
std::string BrokenOffPicture() {
  BITMAPFILEHEADER file{0x4D42, 54 + 8 * 8 * 4, 0, 0, 54};
  BITMAPINFOHEADER info{sizeof info, 8, 8, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  std::string bytes(reinterpret_cast<const char *>(&file), sizeof file);
  return bytes.append(reinterpret_cast<const char *>(&info), sizeof info).append(100, 'x');
}

TEST_F(WICHelper, APictureThatBreaksOffGivesTheGdiBitmapAsItStands) {
  WriteBytes(Path(L"broken.bmp"), BrokenOffPicture());
  const BitmapHandle bitmap = LoadHBitmapFromFile(Path(L"broken.bmp"));
  ASSERT_TRUE(bitmap);
  EXPECT_EQ(8, PictureOf(bitmap.Get()).width);
  EXPECT_EQ(8, PictureOf(bitmap.Get()).height);
}

// Bad input.

TEST_F(WICHelper, AFileThatIsNoPictureRaises) {
  for (const std::string &bytes :
       {std::string(), std::string("garbage"), std::string("\x89PNG\r\n\x1a\n", 8), std::string(5000, '\0')}) {
    WriteBytes(Path(L"bad.png"), bytes);
    EXPECT_THROW(Load(Path(L"bad.png"), true), HResultError) << bytes.size();
    EXPECT_THROW(LoadHBitmapFromFile(Path(L"bad.png")), HResultError) << bytes.size();
  }
}

TEST_F(WICHelper, ALargePictureIsLoadedWithTheLimit) {
  WriteBlackPicture(Path(L"large.png"), 4000, 4000);
  EXPECT_EQ(SolidPicture(48, 48, 0xFF000000), Load(Path(L"large.png"), true));
  EXPECT_EQ(SolidPicture(48, 48, 0xFF000000), PictureOf(LoadHBitmapFromFile(Path(L"large.png")).Get()));
}

/// A BMP file of some bytes that claims a picture of this size.
std::string ClaimingPicture(LONG width, LONG height) {
  BITMAPFILEHEADER file{0x4D42, 2000, 0, 0, 54};
  BITMAPINFOHEADER info{sizeof info, width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  std::string bytes(reinterpret_cast<const char *>(&file), sizeof file);
  return bytes.append(reinterpret_cast<const char *>(&info), sizeof info).append(1946, 'x');
}

TEST_F(WICHelper, AHugePictureRaisesBeforeAnythingIsDecoded) {
  WriteBlackPicture(Path(L"huge.png"), 20000, 20000);
  WriteBytes(Path(L"huge.bmp"), ClaimingPicture(30000, -30000));
  WriteBytes(Path(L"wild.bmp"), ClaimingPicture(0x7FFFFFFF, 0x7FFFFFFF));
  WriteBytes(Path(L"huge.gif"), "GIF89a\1\0\1\0\0\0\0,\0\0\0\0\x30\x75\x31\x75\0\2\1\4\0;"s);
  const std::vector<std::pair<const wchar_t *, const char *>> pictures = {{L"huge.png", "20000 by 20000"},
                                                                          {L"huge.bmp", "30000 by 30000"},
                                                                          {L"wild.bmp", "2147483647 by 2147483647"},
                                                                          {L"huge.gif", "30000 by 30001"}};
  const LogCapture log(folders);
  for (const auto &[name, size] : pictures) {
    const std::string line = "ERROR: WICHelper: " + Utf8(Path(name)) + " claims " + size + " pixels";
    log.Clear();
    EXPECT_EQ(WINCODEC_ERR_IMAGESIZEOUTOFRANGE, ResultOf([&, path = Path(name)] { Load(path, true); })) << size;
    EXPECT_EQ(WINCODEC_ERR_IMAGESIZEOUTOFRANGE, ResultOf([&, path = Path(name)] { Load(path, false); })) << size;
    EXPECT_EQ(WINCODEC_ERR_IMAGESIZEOUTOFRANGE, ResultOf([&, path = Path(name)] { LoadHBitmapFromFile(path); }))
        << size;
    EXPECT_EQ(3, std::ranges::count(log.Lines(), line)) << size;
  }
}

TEST_F(WICHelper, AFileThatAnotherProgramHoldsRaises) {
  const std::wstring path = MakePicture(4, 4);
  const FileHandle held(::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_THROW(Load(path, true), HResultError);
}

// Resources.

TEST_F(WICHelper, BuiltInPicturesAreLoadedAndTheirTypeIgnoresCase) {
  for (const wchar_t *type : {L"Image", L"IMAGE", L"image"}) {
    const auto bitmap = LoadBitmapFromResource(surface.Target().Get(), L"IDI_SPLITTER", type);
    const Picture loaded = surface.PictureOf(bitmap.Get());
    EXPECT_EQ(2, loaded.width);
    EXPECT_EQ(60, loaded.height);
    EXPECT_TRUE(IsPremultipliedOf(loaded, ReadResourcePicture(L"IDI_SPLITTER")));
  }
}

TEST_F(WICHelper, AMissingResourceRaisesEFail) {
  const auto load = [&](const wchar_t *name, const wchar_t *type) {
    return ResultOf([&] { LoadBitmapFromResource(surface.Target().Get(), name, type); });
  };
  EXPECT_EQ(E_FAIL, load(L"IDI_NOWHERE", L"Image"));
  EXPECT_EQ(E_FAIL, load(L"IDI_DEFAULT", L"Picture"));
  EXPECT_EQ(E_FAIL, load(L"", L"Image"));
}

TEST_F(WICHelper, AResourceThatIsNoPictureRaisesTheDecodersFailure) {
  EXPECT_EQ(WINCODEC_ERR_COMPONENTNOTFOUND, ResultOf([&] {
              LoadBitmapFromResource(surface.Target().Get(), L"#103", L"#5"); // a dialog template
            }));
}

// GDI bitmaps to device bitmaps and files.

TEST_F(WICHelper, AGdiBitmapsAlphaIsTakenAsStraight) {
  const Picture straight{2, 2, {0xFF336699, 0x80FF8040, 0x00FFFFFF, 0x40000080}};
  const BitmapHandle source = MakeDib(straight);
  const ComPtr<ID2D1Bitmap> bitmap = LoadBitmapFromHBitmap(surface.Target().Get(), source.Get());
  EXPECT_TRUE(IsPremultipliedOf(surface.PictureOf(bitmap.Get()), straight));
  EXPECT_EQ(straight, PictureOf(source.Get())) << "the source stays the caller's";
}

TEST_F(WICHelper, NoGdiBitmapRaises) {
  EXPECT_THROW(LoadBitmapFromHBitmap(surface.Target().Get(), nullptr), HResultError);
  EXPECT_THROW(SaveHBitmapAsPng(nullptr, Path(L"none.png")), HResultError);
}

TEST_F(WICHelper, ASavedBitmapIsAPngFileWithTheSamePixelsWhateverItsName) {
  const Picture straight{3, 2, {0xFF336699, 0x80FF8040, 0x01FFFFFF, 0x40000080, 0xFF000000, 0xFFFFFFFF}};
  const std::wstring path = Path(L"Mail.png.hover");
  WriteBytes(path, std::string(10000, 'x'));
  SaveHBitmapAsPng(MakeDib(straight).Get(), path);
  EXPECT_EQ("\x89PNG\r\n\x1a\n", ReadBytes(path).substr(0, 8));
  EXPECT_EQ(straight, ReadPicture(path));
}

TEST_F(WICHelper, SavingWhereNothingCanBeWrittenRaises) {
  const BitmapHandle source = MakeDib(SolidPicture(2, 2, 0xFF336699));
  EXPECT_THROW(SaveHBitmapAsPng(source.Get(), Path(L"no such folder\\a.png")), HResultError);
  EXPECT_THROW(SaveHBitmapAsPng(source.Get(), folders.Root()), HResultError) << "a folder";
}

TEST_F(WICHelper, SavingOnAFullDiskRaisesAndLeavesWhatWasThere) {
  const BitmapHandle source = MakeDib(SolidPicture(48, 48, 0xFF336699));
  WriteBytes(Path(L"old.png"), "old");
  {
    const FullDisk full(100);
    EXPECT_THROW(SaveHBitmapAsPng(source.Get(), Path(L"old.png")), HResultError);
    EXPECT_THROW(SaveHBitmapAsPng(source.Get(), Path(L"new.png")), HResultError);
  }
  EXPECT_EQ("old", ReadBytes(Path(L"old.png")));
  EXPECT_FALSE(Exists(Path(L"new.png")));
  EXPECT_FALSE(Exists(Path(L"new.png.new")));
}

TEST_F(WICHelper, WritePngReturnsAFailureInsteadOfRaisingIt) {
  const BitmapHandle source = MakeDib(SolidPicture(2, 2, 0xFF336699));
  ComPtr<IWICBitmap> picture;
  ThrowIfFailed(GetImagingFactory()->CreateBitmapFromHBITMAP(source.Get(), nullptr, WICBitmapUseAlpha, &picture));
  ComPtr<IWICStream> readOnly;
  ThrowIfFailed(GetImagingFactory()->CreateStream(&readOnly));
  WriteBytes(Path(L"readonly.png"), "x");
  ThrowIfFailed(readOnly->InitializeFromFilename(Path(L"readonly.png").c_str(), GENERIC_READ));
  EXPECT_LT(WritePng(picture.Get(), readOnly.Get()), 0);
}

TEST_F(WICHelper, WritePngReturnsTheFailureOfAnUnfinishedSource) {
  ComPtr<IWICFormatConverter> unfinished;
  ThrowIfFailed(GetImagingFactory()->CreateFormatConverter(&unfinished));
  ComPtr<IWICStream> stream;
  ThrowIfFailed(GetImagingFactory()->CreateStream(&stream));
  ThrowIfFailed(stream->InitializeFromFilename(Path(L"empty.png").c_str(), GENERIC_WRITE));
  EXPECT_LT(WritePng(unfinished.Get(), stream.Get()), 0);
}

TEST_F(WICHelper, WritePngReturnsTheFailureOfASourceThatBreaksOff) {
  WriteBytes(Path(L"broken.bmp"), BrokenOffPicture());
  ComPtr<IWICBitmapDecoder> decoder;
  ThrowIfFailed(GetImagingFactory()->CreateDecoderFromFilename(Path(L"broken.bmp").c_str(), nullptr, GENERIC_READ,
                                                               WICDecodeMetadataCacheOnLoad, &decoder));
  ComPtr<IWICBitmapFrameDecode> frame;
  ThrowIfFailed(decoder->GetFrame(0, &frame));
  ComPtr<IWICStream> stream;
  ThrowIfFailed(GetImagingFactory()->CreateStream(&stream));
  ThrowIfFailed(stream->InitializeFromFilename(Path(L"broken.png").c_str(), GENERIC_WRITE));
  EXPECT_LT(WritePng(frame.Get(), stream.Get()), 0);
}

// The pieces.

TEST_F(WICHelper, ADibHas32BitsTopRowFirstAndIsEmpty) {
  const BitmapHandle dib = CreateDib(5, 3);
  DIBSECTION section{};
  ASSERT_NE(0, ::GetObjectW(dib.Get(), sizeof section, &section));
  EXPECT_EQ(5, section.dsBm.bmWidth);
  EXPECT_EQ(3, section.dsBm.bmHeight);
  EXPECT_EQ(20, section.dsBm.bmWidthBytes);
  EXPECT_EQ(1, section.dsBm.bmPlanes);
  EXPECT_EQ(32, section.dsBm.bmBitsPixel);
  EXPECT_EQ(static_cast<DWORD>(BI_RGB), section.dsBmih.biCompression);
  EXPECT_EQ(SolidPicture(5, 3, 0), PictureOf(dib.Get()));

  static_cast<std::uint32_t *>(section.dsBm.bmBits)[1] = 0x00102030;
  const MemoryDeviceContext context(::CreateCompatibleDC(nullptr));
  const SelectedObject selected(context.Get(), dib.Get());
  EXPECT_EQ(RGB(0x10, 0x20, 0x30), ::GetPixel(context.Get(), 1, 0));
}

TEST_F(WICHelper, ADibOfNoSizeRaises) {
  EXPECT_THROW(CreateDib(0, 5), HResultError);
  EXPECT_THROW(CreateDib(-3, 5), HResultError);
  EXPECT_THROW(CreateDib(100000, 100000), HResultError);
}

TEST_F(WICHelper, TheImagingFactoryIsSharedUntilItIsReleased) {
  const ComPtr<IWICImagingFactory> first = GetImagingFactory();
  const ComPtr<IWICImagingFactory> second = GetImagingFactory();
  EXPECT_EQ(first.Get(), second.Get());
  ReleaseImagingFactory();
  EXPECT_NE(first.Get(), GetImagingFactory().Get()) << "the first one is still held here";
}

} // namespace
} // namespace lumenor
