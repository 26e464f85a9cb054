#include "toolkit/drawing/GlowButtonPainter.h"

#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/ButtonStage.h"
#include "drawing/PaintSurface.h"
#include "drawing/Pictures.h"
#include "drawing/TestWindow.h"
#include "support/FailingDisk.h"
#include "support/HandleCounts.h"
#include "support/LogCapture.h"
#include "support/OperationSpy.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"
#include "toolkit/drawing/CommandNotFoundException.h"
#include "toolkit/drawing/WICHelper.h"

namespace lumenor {
namespace {

using namespace tests;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Pair;

constexpr std::uint32_t normalColor = 0xFF808080;
constexpr std::uint32_t hoverColor = 0xFF00FF00;
constexpr std::uint32_t glowColor = 0xFF0000FF;
constexpr std::uint32_t pressedColor = 0xFFFF0000;

/// The bar's way: a picture of 20 by 20 at (30, 10) of a button of 80 by 60, the label below it.
ButtonLayout BarLayout() {
  ButtonLayout layout;
  layout.fontSize = 12;
  layout.textFlag = 1;
  layout.imageLeft = 30;
  layout.imageRight = 30;
  layout.imageTop = 10;
  layout.imageBottom = 30;
  layout.textTop = 40;
  return layout;
}

constexpr D2D1_RECT_F buttonRect{10, 20, 90, 80};
const RECT buttonBounds{0, 0, 80, 60};

class GlowButtonPainterTest : public ::testing::Test {
protected:
  GlowButtonPainterTest() { MakeFolders(folders.CommonFolder()); }

  std::wstring Cache(const std::wstring &name) const { return folders.CommonFolder() + L"\\ImageCache\\" + name; }

  std::wstring MakePicture(const Picture &picture, const std::wstring &name = L"Mail.png") const {
    std::wstring path = folders.Root() + L"\\" + name;
    WritePicture(path, picture);
    return path;
  }

  /// A picture of one colour, whose three variants are in the cache in colours of their own.
  std::wstring MakeColoredPictures() const {
    MakeFolders(folders.CommonFolder() + L"\\ImageCache");
    WritePicture(Cache(L"Mail.png.hover"), SolidPicture(20, 20, hoverColor));
    WritePicture(Cache(L"Mail.png.glow"), SolidPicture(28, 28, glowColor));
    WritePicture(Cache(L"Mail.png.pressed"), SolidPicture(20, 20, pressedColor));
    return MakePicture(SolidPicture(20, 20, normalColor));
  }

  /// A painter whose button has been on the screen.
  std::shared_ptr<GlowButtonPainter> MakePainter(const std::wstring &imagePath, const std::wstring &text = L"",
                                                 unsigned insetImage = 0, const std::wstring &programPath = L"") const {
    auto painter = MakeFreshPainter(surface.Target(), imagePath, text, insetImage, programPath);
    painter->LoadVariants();
    return painter;
  }

  static std::shared_ptr<GlowButtonPainter> MakeFreshPainter(const RenderTargetPtr &target,
                                                             const std::wstring &imagePath,
                                                             const std::wstring &text = L"", unsigned insetImage = 0,
                                                             const std::wstring &programPath = L"") {
    return std::make_shared<GlowButtonPainter>(target, insetImage, text, imagePath, BarLayout(), programPath);
  }

  Picture Paint(IButtonPainter &painter, const D2D1_RECT_F &rect = buttonRect) {
    return surface.Draw([&] { painter.Paint(surface.Target(), &rect); });
  }

  /// The picture that a button of its own size shows in this state, drawn one to one.
  Picture PaintVariant(const std::shared_ptr<GlowButtonPainter> &painter, int isMouseOver, int isPressed) {
    Button button(painter);
    const ButtonStage stage(button, buttonBounds);
    button.IsMouseOver.Set(isMouseOver);
    button.IsPressed.Set(isPressed);
    const Picture painted = Paint(*painter);
    Picture variant = SolidPicture(20, 20, 0);
    for (int y = 0; y < 20; ++y)
      for (int x = 0; x < 20; ++x)
        variant.pixels[static_cast<std::size_t>(y * 20 + x)] = painted.At(40 + x, 30 + y);
    return variant;
  }

  TestFolders folders;
  PaintSurface surface{100, 100};
};

// The name of a cached picture.

TEST(FileNameOf, IsWhatFollowsTheLastSeparator) {
  EXPECT_EQ(L"Mail.png", FileNameOf(L"C:\\pictures\\Mail.png"));
  EXPECT_EQ(L"Mail.png", FileNameOf(L"..\\Mail.png"));
  EXPECT_EQ(L"Mail.png", FileNameOf(L"C:/pictures/Mail.png"));
  EXPECT_EQ(L"a/b.png", FileNameOf(L"C:\\pictures\\a/b.png"));
}

TEST(FileNameOf, IsEmptyWithoutASeparator) {
  EXPECT_EQ(L"", FileNameOf(L"Mail.png"));
  EXPECT_EQ(L"", FileNameOf(L""));
}

TEST(FileNameOf, OfAClosingBackslashIsTheTextBeforeItLessOneCharacter) {
  EXPECT_EQ(L"C:\\picture", FileNameOf(L"C:\\pictures\\"));
  EXPECT_EQ(L"", FileNameOf(L"a\\"));
  EXPECT_EQ(L"", FileNameOf(L"\\"));
  EXPECT_EQ(L"", FileNameOf(L"pictures/"));
}

TEST(CommandNotFoundException, TellsItsName) {
  EXPECT_STREQ("CommandNotFoundException", CommandNotFoundException().what());
}

// The cache.

TEST_F(GlowButtonPainterTest, TheFirstPainterOfAPictureWritesItsThreeVariantsToTheCache) {
  Picture picture = SolidPicture(6, 5, 0);
  picture.pixels[8] = 0xFF102030;
  MakePainter(MakePicture(picture));
  EXPECT_THAT(ListFolder(folders.CommonFolder() + L"\\ImageCache"),
              ElementsAre(L"Mail.png.glow", L"Mail.png.hover", L"Mail.png.pressed"));

  Picture hover = SolidPicture(6, 5, 0x00181818);
  hover.pixels[8] = 0xFF283848;
  EXPECT_EQ(hover, ReadPicture(Cache(L"Mail.png.hover")));
  Picture pressed = SolidPicture(6, 5, 0x000F1941);
  pressed.pixels[8] = 0xFF1F3971;
  EXPECT_EQ(pressed, ReadPicture(Cache(L"Mail.png.pressed")));
  const Picture glow = ReadPicture(Cache(L"Mail.png.glow"));
  ASSERT_EQ(14, glow.width);
  ASSERT_EQ(13, glow.height);
  EXPECT_EQ(0xFFE0E0E0u, glow.At(6, 5));
  EXPECT_EQ(0x21E0E0E0u, glow.At(10, 5));
  EXPECT_EQ(0u, glow.At(11, 5));
}

TEST_F(GlowButtonPainterTest, ACachedVariantIsShownAndThePictureIsNotDecodedForItAgain) {
  const std::wstring path = MakeColoredPictures();
  const LogCapture log(folders);
  const auto painter = MakePainter(path);
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Loading bitmap file: " + Utf8(path),
                                       "INFO: Loading bitmap file: " + Utf8(Cache(L"Mail.png.hover")),
                                       "INFO: Loading bitmap file: " + Utf8(Cache(L"Mail.png.glow")),
                                       "INFO: Loading bitmap file: " + Utf8(Cache(L"Mail.png.pressed"))));
  EXPECT_EQ(SolidPicture(20, 20, normalColor), PaintVariant(painter, 0, 0));
  EXPECT_EQ(SolidPicture(20, 20, hoverColor), PaintVariant(painter, 1, 0));
  EXPECT_EQ(SolidPicture(20, 20, pressedColor), PaintVariant(painter, 0, 1));
}

TEST_F(GlowButtonPainterTest, VariantsAreMadeAfterTheFirstPictureOfTheWindowAndBeforeItsFirstMessage) {
  const std::wstring path = MakePicture(SolidPicture(20, 20, 0xFF000000));
  TestWindow window;
  std::shared_ptr<GlowButtonPainter> painter;
  std::shared_ptr<Button> button;
  std::vector<bool> cached;
  const auto note = [&] { cached.push_back(Exists(Cache(L"Mail.png.pressed"))); };
  window.onInitialize = [&] {
    painter = MakeFreshPainter(window.Target(), path);
    button = std::make_shared<Button>(painter);
    window.canvas.AddChild(button.get());
    button->SetBounds(&buttonBounds);
    note();
  };
  window.onPaint = [&](ID2D1RenderTarget *) { note(); };
  window.Create(nullptr);
  note();
  EXPECT_THAT(cached, ElementsAre(false, false, true));
  EXPECT_EQ(SolidPicture(20, 20, 0xFF181818), ReadPicture(Cache(L"Mail.png.hover")));
}

TEST_F(GlowButtonPainterTest, AttachingToAButtonThatIsOnTheScreenLoadsTheVariantsAtOnceAndOnce) {
  const std::wstring path = MakeColoredPictures();
  const auto painter = MakeFreshPainter(surface.Target(), path);
  const LogCapture log(folders);
  EXPECT_EQ(SolidPicture(20, 20, hoverColor), PaintVariant(painter, 1, 0));
  EXPECT_EQ(SolidPicture(20, 20, pressedColor), PaintVariant(painter, 0, 1));
  EXPECT_EQ(3U, log.Lines().size());
}

TEST_F(GlowButtonPainterTest, APainterThatIsGoneBeforeTheFirstPictureMakesNoVariants) {
  TestWindow window;
  std::shared_ptr<Button> button;
  window.onInitialize = [&] {
    button = std::make_shared<Button>(MakeFreshPainter(window.Target(), MakePicture(SolidPicture(20, 20, 0xFF000000))));
    window.canvas.AddChild(button.get());
    button->SetPainter(std::make_shared<RecordingPainter>());
  };
  window.Create(nullptr);
  EXPECT_FALSE(Exists(Cache(L"Mail.png.hover")));
}

TEST_F(GlowButtonPainterTest, APainterThatGivesWayListensNoLonger) {
  TestWindow window;
  const std::wstring path = MakePicture(SolidPicture(20, 20, 0xFF000000));
  std::shared_ptr<Button> button;
  window.onInitialize = [&] {
    button = std::make_shared<Button>(MakeFreshPainter(window.Target(), path));
    window.canvas.AddChild(button.get());
    const auto entries = [&] { return std::pair(button->Width.changed.Count(), button->Height.changed.Count()); };
    const auto before = entries();
    const std::shared_ptr<IButtonPainter> former = MakeFreshPainter(window.Target(), path);
    button->SetPainter(former);
    button->SetPainter(MakeFreshPainter(window.Target(), path));
    EXPECT_EQ(before, entries());
    EXPECT_EQ(nullptr, former->GetButton());
  };
  window.Create(nullptr);
}

TEST_F(GlowButtonPainterTest, ThePictureStandsInForAVariantThatCannotBeMade) {
  const std::wstring path = MakePicture(SolidPicture(20, 20, normalColor));
  const auto painter = MakeFreshPainter(surface.Target(), path);
  WriteBytes(path, "damaged meanwhile");
  const LogCapture log(folders);
  painter->LoadVariants();
  EXPECT_EQ(SolidPicture(20, 20, normalColor), PaintVariant(painter, 1, 0)) << "and no halo";
  EXPECT_EQ(SolidPicture(20, 20, normalColor), PaintVariant(painter, 0, 1));
  for (const wchar_t *variant : {L"hover", L"glow", L"pressed"})
    EXPECT_THAT(log.Lines(), Contains(HasSubstr("ERROR: GlowButtonPainter: can't make " +
                                                Utf8(Cache(std::wstring(L"Mail.png.") + variant)) + ", error 8")));
}

TEST_F(GlowButtonPainterTest, TheColoursOfAStretchedPictureRunIntoEachOther) {
  const Picture normal = PaintVariant(MakePainter(MakePicture({2, 1, {0xFF000000, 0xFFFFFFFF}})), 0, 0);
  EXPECT_NEAR(0x80, normal.At(9, 10) & 0xFF, 0x40);
  EXPECT_NEAR(0x80, normal.At(10, 10) & 0xFF, 0x40);
}

TEST_F(GlowButtonPainterTest, APictureIsDecodedOnceForAllItsMissingVariants) {
  const std::wstring path = MakePicture(SolidPicture(6, 5, 0xFF102030));
  const LogCapture log(folders);
  MakePainter(path);
  const std::vector<std::string> lines = log.Lines();
  EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "INFO: Loading hbitmap from file: " + Utf8(path)));
}

TEST_F(GlowButtonPainterTest, PicturesOfOneNameInTwoFoldersShareTheirVariants) {
  MakePainter(MakePicture(SolidPicture(20, 20, 0xFF000000)));
  MakeFolders(folders.Root() + L"\\other");
  const auto second = MakePainter(MakePicture(SolidPicture(20, 20, 0xFF646464), L"other\\Mail.png"));
  EXPECT_EQ(SolidPicture(20, 20, 0xFF646464), PaintVariant(second, 0, 0));
  EXPECT_EQ(SolidPicture(20, 20, 0xFF181818), PaintVariant(second, 1, 0)) << "that of the first";
}

TEST_F(GlowButtonPainterTest, ACacheFileThatIsNoPictureIsMadeUpForAtEveryStartAndNotReplaced) {
  MakeFolders(folders.CommonFolder() + L"\\ImageCache");
  const std::wstring path = MakePicture(SolidPicture(20, 20, 0xFF000000));
  for (const std::string &bytes : {std::string("garbage"), std::string()}) {
    WriteBytes(Cache(L"Mail.png.hover"), bytes);
    for (int start = 0; start < 2; ++start) {
      EXPECT_EQ(SolidPicture(20, 20, 0xFF181818), PaintVariant(MakePainter(path), 1, 0));
      EXPECT_EQ(bytes, ReadBytes(Cache(L"Mail.png.hover")));
      EXPECT_TRUE(Exists(Cache(L"Mail.png.hover")));
    }
  }
}

TEST_F(GlowButtonPainterTest, ACacheFolderThatCannotBeMadeCostsOnlyTheCache) {
  WriteBytes(folders.CommonFolder() + L"\\ImageCache", "a file, not a folder");
  const auto painter = MakePainter(MakePicture(SolidPicture(20, 20, 0xFF000000)));
  EXPECT_EQ(SolidPicture(20, 20, 0xFF000000), PaintVariant(painter, 0, 0));
  EXPECT_EQ(SolidPicture(20, 20, 0xFF181818), PaintVariant(painter, 1, 0));
  EXPECT_EQ(SolidPicture(20, 20, 0xFF0F1941), PaintVariant(painter, 0, 1));
  EXPECT_EQ("a file, not a folder", ReadBytes(folders.CommonFolder() + L"\\ImageCache"));
}

TEST_F(GlowButtonPainterTest, AFullDiskCostsOnlyTheCacheAndLeavesNothingInIt) {
  const std::wstring picture = MakePicture(SolidPicture(20, 20, 0xFF000000));
  const FullDisk full(20);
  const auto painter = MakePainter(picture);
  EXPECT_EQ(SolidPicture(20, 20, 0xFF181818), PaintVariant(painter, 1, 0));
  EXPECT_EQ(SolidPicture(20, 20, 0xFF0F1941), PaintVariant(painter, 0, 1));
  EXPECT_THAT(ListFolder(folders.CommonFolder() + L"\\ImageCache"), IsEmpty());
}

TEST_F(GlowButtonPainterTest, WithoutACacheTheGlowIsDrawnPixelForPixel) {
  WriteBytes(folders.CommonFolder() + L"\\ImageCache", "a file, not a folder");
  Picture picture = SolidPicture(48, 48, 0);
  picture.pixels[24 * 48 + 24] = 0xFF000000;
  ButtonLayout layout;
  layout.fontSize = 12;
  const auto painter = std::make_shared<GlowButtonPainter>(surface.Target(), 0, L"", MakePicture(picture), layout, L"");
  Button button(painter);
  const ButtonStage stage(button, {0, 0, 48, 48});
  button.IsMouseOver.Set(1);
  const Picture painted = Paint(*painter, {10, 10, 58, 58});
  const Picture halo = PictureOf(COuterGlowShader(224, 224, 224, 4, 0.6F).Shade(MakeDib(picture).Get()).Get());
  for (int y = 0; y < 56; ++y)
    for (int x = 0; x < 56; ++x)
      ASSERT_EQ(halo.At(x, y) >> 24, painted.At(6 + x, 6 + y) >> 24) << x << ", " << y;
}

TEST_F(GlowButtonPainterTest, APainterLeavesNoBitmapBehind) {
  WriteBytes(folders.CommonFolder() + L"\\ImageCache", "a file, not a folder");
  const std::wstring good = MakePicture(SolidPicture(20, 20, 0xFF000000));
  const auto makeAll = [&] {
    MakePainter(good);
    EXPECT_THROW(MakePainter(folders.Root()), HResultError);
    MakePainter(L"", L"", 0, L"C:\\windows\\regedit.exe");
  };
  makeAll();
  const int before = CountGdiObjects();
  makeAll();
  EXPECT_EQ(before, CountGdiObjects());
}

TEST_F(GlowButtonPainterTest, OnlyTheLastFolderOfTheCacheIsMade) {
  DeleteTree(folders.ProgramData() + L"\\Tarnwick");
  const auto painter = MakePainter(MakePicture(SolidPicture(20, 20, 0xFF000000)));
  EXPECT_FALSE(Exists(folders.ProgramData() + L"\\Tarnwick"));
  EXPECT_EQ(SolidPicture(20, 20, 0xFF181818), PaintVariant(painter, 1, 0));
}

TEST_F(GlowButtonPainterTest, AMissingPictureShowsTheBuiltInOneInAllStatesAndFillsNoCache) {
  const auto painter = MakePainter(folders.Root() + L"\\nowhere.png");
  const Picture normal = PaintVariant(painter, 0, 0);
  EXPECT_NE(SolidPicture(20, 20, 0), normal);
  EXPECT_EQ(normal, PaintVariant(painter, 0, 1));
  EXPECT_THAT(ListFolder(folders.CommonFolder() + L"\\ImageCache"), IsEmpty());
}

TEST_F(GlowButtonPainterTest, AFileThatIsNoPictureRaises) {
  WriteBytes(folders.Root() + L"\\bad.png", "garbage");
  EXPECT_THROW(MakePainter(folders.Root() + L"\\bad.png"), HResultError);
}

TEST_F(GlowButtonPainterTest, AFolderForAPictureRaises) { EXPECT_THROW(MakePainter(folders.Root()), HResultError); }

TEST_F(GlowButtonPainterTest, APictureAbove48PixelsIsLimitedAndSoIsItsCachedGlow) {
  const std::wstring path = MakePicture(SolidPicture(200, 100, 0xFF000000), L"Big.png");
  const LogCapture log(folders);
  MakePainter(path);
  EXPECT_EQ((SolidPicture(48, 24, 0xFF181818)), ReadPicture(Cache(L"Big.png.hover")));
  EXPECT_EQ(56, ReadPicture(Cache(L"Big.png.glow")).width);
  EXPECT_EQ(32, ReadPicture(Cache(L"Big.png.glow")).height);
}

using MakeBitmapFunction = HRESULT(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, IWICBitmapSource *,
                                                        const D2D1_BITMAP_PROPERTIES *, ID2D1Bitmap **);

std::vector<std::pair<UINT, UINT>> bitmapSizes;
MakeBitmapFunction platformMakeBitmap = nullptr;

HRESULT STDMETHODCALLTYPE HearSize(ID2D1RenderTarget *self, IWICBitmapSource *source,
                                   const D2D1_BITMAP_PROPERTIES *properties, ID2D1Bitmap **bitmap) {
  UINT width = 0;
  UINT height = 0;
  source->GetSize(&width, &height);
  bitmapSizes.emplace_back(width, height);
  return platformMakeBitmap(self, source, properties, bitmap);
}

TEST_F(GlowButtonPainterTest, WhatIsShownOfABigPictureIsWithin48PixelsToo) {
  const std::wstring path = MakePicture(SolidPicture(200, 100, 0xFF000000), L"Big.png");
  OperationSpy spy(surface.Target().Get());
  platformMakeBitmap = spy.Exchange(5, &HearSize);
  bitmapSizes.clear();
  MakePainter(path);
  EXPECT_THAT(bitmapSizes, ElementsAre(Pair(48, 24), Pair(48, 24), Pair(48, 27), Pair(48, 24)));
}

// Programs.

class GlowButtonPainterOfAProgram : public GlowButtonPainterTest {
protected:
  GlowButtonPainterOfAProgram() { ::CopyFileW(L"C:\\windows\\regedit.exe", program.c_str(), TRUE); }

  std::wstring program = folders.Root() + L"\\Tool.exe";
};

TEST_F(GlowButtonPainterOfAProgram, ShowsTheProgramsOwnPictureAndCachesItsVariantsByTheProgramsName) {
  const auto painter = MakePainter(L"", L"Label", 0, program);
  const Picture normal = PaintVariant(painter, 0, 0);
  EXPECT_FALSE(InkOf(normal).right == 0) << "nothing to see";
  EXPECT_NE(normal, PaintVariant(painter, 1, 0));
  EXPECT_NE(normal, PaintVariant(painter, 0, 1));
  EXPECT_THAT(ListFolder(folders.CommonFolder() + L"\\ImageCache"),
              ElementsAre(L"Tool.exe.glow", L"Tool.exe.hover", L"Tool.exe.pressed"));
  EXPECT_EQ(48, ReadPicture(Cache(L"Tool.exe.hover")).width);
}

TEST_F(GlowButtonPainterOfAProgram, ThatDoesNotExistRaisesCommandNotFoundWithoutAPicture) {
  EXPECT_THROW(MakePainter(L"", L"Label", 0, folders.Root() + L"\\nowhere.exe"), CommandNotFoundException);
  EXPECT_FALSE(Exists(folders.CommonFolder() + L"\\ImageCache"));
}

TEST_F(GlowButtonPainterOfAProgram, ThatDoesNotExistIsNotLookedAtWithAPicture) {
  const auto painter = MakePainter(MakeColoredPictures(), L"", 0, folders.Root() + L"\\nowhere.exe");
  EXPECT_EQ(SolidPicture(20, 20, normalColor), PaintVariant(painter, 0, 0));
}

/// Tells what the painter took for its label.
class LabelTeller : public GlowButtonPainter {
public:
  using GlowButtonPainter::GlowButtonPainter;
  std::wstring Label() const { return text; }
};

TEST_F(GlowButtonPainterOfAProgram, TakesTheProgramsDisplayNameOnlyForAMissingLabel) {
  const auto label = [&](const std::wstring &text, const std::wstring &imagePath) {
    return LabelTeller(surface.Target(), 0, text, imagePath, BarLayout(), program).Label();
  };
  EXPECT_EQ(L"Tool.exe", label(L"", L""));
  EXPECT_EQ(L"Given", label(L"Given", L""));
  EXPECT_EQ(L"", label(L"", MakeColoredPictures())) << "a button with a picture keeps its empty label";
}

// Painting.

class GlowButtonOnStage : public GlowButtonPainterTest {
protected:
  void Put(const std::wstring &text = L"", unsigned insetImage = 0) {
    painter = MakePainter(MakeColoredPictures(), text, insetImage);
    button = std::make_unique<Button>(painter);
    stage = std::make_unique<ButtonStage>(*button, buttonBounds);
  }

  Picture PaintState(int isPressed, int isMouseOver) {
    button->IsPressed.Set(isPressed);
    button->IsMouseOver.Set(isMouseOver);
    return Paint(*painter);
  }

  std::shared_ptr<GlowButtonPainter> painter;
  std::unique_ptr<Button> button;
  std::unique_ptr<ButtonStage> stage;
};

TEST_F(GlowButtonOnStage, EachStateHasItsPictureAndOnlyHoverAHalo) {
  Put();
  const RECT picture{40, 30, 60, 50};
  const RECT halo{36, 26, 64, 54};
  const struct {
    int isPressed, isMouseOver;
    std::uint32_t color;
    RECT ink;
  } states[] = {{0, 0, normalColor, picture},
                {0, 1, hoverColor, halo},
                {1, 0, pressedColor, picture},
                {1, 1, pressedColor, picture}};
  for (const auto &state : states) {
    SCOPED_TRACE(testing::Message() << state.isPressed << ", " << state.isMouseOver);
    const Picture painted = PaintState(state.isPressed, state.isMouseOver);
    ExpectRect(picture, BoundsOf(painted, state.color));
    ExpectRect(state.ink, InkOf(painted));
  }
}

TEST_F(GlowButtonOnStage, TheHaloStandsFourPixelsOutOfThePictureAndBehindIt) {
  Put();
  const Picture painted = PaintState(0, 1);
  ExpectRect({36, 26, 64, 54}, BoundsOf(painted, glowColor));
  EXPECT_EQ(hoverColor, painted.At(40, 30));
  EXPECT_EQ(glowColor, painted.At(39, 30));
}

TEST_F(GlowButtonOnStage, AnInsetPictureFillsTheButtonButForATenth) {
  Put(L"", 1);
  ExpectRect({18, 26, 82, 74}, InkOf(PaintState(0, 0)));
}

TEST_F(GlowButtonOnStage, ATenthIsCutToWholePixels) {
  Put(L"", 1);
  ExpectRect({7, 3, 50, 26}, InkOf(surface.Draw([&] {
               painter->Paint(surface.Target(), std::data({D2D1_RECT_F{2, 1, 55, 28}}));
             })));
}

TEST_F(GlowButtonOnStage, TheHaloOfAnInsetPictureStandsOutOfTheWholeButton) {
  Put(L"", 7);
  const Picture painted = PaintState(0, 1);
  ExpectRect({6, 16, 94, 84}, BoundsOf(painted, glowColor));
  ExpectRect({18, 26, 82, 74}, BoundsOf(painted, hoverColor));
}

TEST_F(GlowButtonOnStage, OpacityFadesThePictures) {
  Put();
  button->Opacity.Set(51);
  const Picture painted = PaintState(0, 1);
  EXPECT_EQ(51u, painted.At(36, 26) >> 24) << "the halo alone";
  EXPECT_EQ(92u, painted.At(50, 40) >> 24) << "a fifth over a fifth";
  EXPECT_EQ(51u, PaintState(1, 0).At(50, 40) >> 24);
  button->Opacity.Set(0);
  ExpectRect({}, InkOf(PaintState(0, 1)));
}

TEST_F(GlowButtonOnStage, OpacityDoesNotFadeTheLabel) {
  Put(L"MMM");
  const RECT label = InkOf(PaintState(0, 0));
  EXPECT_GT(label.bottom, 60) << "the label below the picture";
  button->Opacity.Set(0);
  const RECT alone = InkOf(PaintState(0, 0));
  EXPECT_GE(alone.top, 60);
  EXPECT_EQ(label.bottom, alone.bottom);
}

TEST_F(GlowButtonOnStage, TheLabelStandsAtItsMarginsInEveryState) {
  Put(L"MMM");
  for (const auto &[isPressed, isMouseOver] : {std::pair{0, 0}, {0, 1}, {1, 0}, {1, 1}}) {
    const Picture painted = PaintState(isPressed, isMouseOver);
    const RECT white = BoundsOf(painted, 0xFFFFFFFF);
    EXPECT_GE(white.top, 60) << "20 + 40";
    EXPECT_LE(white.bottom, 80);
    EXPECT_NEAR(50, (white.left + white.right) / 2, 1) << "centred";
  }
}

TEST_F(GlowButtonOnStage, WithoutALabelNoTextIsDrawn) {
  Put();
  ExpectRect({40, 30, 60, 50}, InkOf(PaintState(0, 0)));
}

TEST_F(GlowButtonOnStage, TheLabelIsClippedToItsRectangle) {
  Put(L"MMM");
  button->Height.Set(42); // 2 pixels are left for the label
  const RECT label = BoundsOf(Paint(*painter), 0xFFFFFFFF);
  EXPECT_LE(label.bottom, 62);
}

TEST_F(GlowButtonPainterTest, ALabelWhoseMarginsCrossTakesTheBandBetweenThem) {
  const std::wstring path = MakeColoredPictures();
  const auto paint = [&](int textTop, int textBottom) {
    ButtonLayout layout = BarLayout();
    layout.textTop = textTop;
    layout.textBottom = textBottom;
    const auto painter = std::make_shared<GlowButtonPainter>(surface.Target(), 0, L"MMM", path, layout, L"");
    Button button(painter);
    const ButtonStage stage(button, buttonBounds);
    return Paint(*painter);
  };
  const Picture crossed = paint(54, 22);
  EXPECT_EQ(paint(38, 6), crossed) << "16 pixels from 38 on either way";
  EXPECT_NE(0, BoundsOf(crossed, 0xFFFFFFFF).right);
}

TEST_F(GlowButtonOnStage, TheLabelFollowsAChangeOfTheSize) {
  Put(L"M");
  const RECT before = BoundsOf(PaintState(0, 0), 0xFFFFFFFF);
  button->Width.Set(40);
  const RECT narrower = BoundsOf(PaintState(0, 0), 0xFFFFFFFF);
  EXPECT_EQ(before.left - 20, narrower.left);
  button->Height.Set(52);
  const RECT lower = BoundsOf(PaintState(0, 0), 0xFFFFFFFF);
  EXPECT_EQ(narrower.top - 4, lower.top);
}

TEST_F(GlowButtonOnStage, AnInvisibleButtonIsNotDrawn) {
  Put(L"MMM");
  button->Visibility.Set(Visibility::Hidden);
  ExpectRect({}, InkOf(PaintState(0, 1)));
  button->Visibility.Set(Visibility::Visible);
  EXPECT_NE(0, InkOf(PaintState(0, 1)).right);
  stage->Hide();
  ExpectRect({}, InkOf(PaintState(0, 1)));
}

// Attaching.

/// Counts the calls of Layout, which a derived painter may have replaced.
class LayoutCounter : public GlowButtonPainter {
public:
  using GlowButtonPainter::GlowButtonPainter;
  void Layout() override { ++layouts; }
  int layouts = 0;
};

TEST_F(GlowButtonPainterTest, AttachTakesTheListenersFromTheOldButtonToTheNewOne) {
  const auto painter =
      std::make_shared<LayoutCounter>(surface.Target(), 0, L"", MakeColoredPictures(), BarLayout(), L"");
  EXPECT_EQ(nullptr, painter->GetButton());
  EXPECT_EQ(0, painter->layouts);
  Button first(painter);
  Button second(painter);
  painter->Attach(&first);
  EXPECT_EQ(&first, painter->GetButton());
  EXPECT_EQ(1, painter->layouts);
  first.Width.Set(10);
  first.Height.Set(10);
  EXPECT_EQ(3, painter->layouts);
  painter->Attach(&second);
  EXPECT_EQ(&second, painter->GetButton());
  EXPECT_EQ(4, painter->layouts);
  first.Width.Set(20);
  first.Height.Set(20);
  EXPECT_EQ(4, painter->layouts);
  second.Width.Set(10);
  second.Height.Set(10);
  EXPECT_EQ(6, painter->layouts);
}

TEST_F(GlowButtonPainterTest, AttachingTwiceToOneButtonLaysOutOncePerChange) {
  const auto painter =
      std::make_shared<LayoutCounter>(surface.Target(), 0, L"", MakeColoredPictures(), BarLayout(), L"");
  Button button(painter);
  painter->Attach(&button);
  painter->Attach(&button);
  button.Width.Set(10);
  EXPECT_EQ(3, painter->layouts);
}

TEST_F(GlowButtonPainterTest, AnUnattachedPainterDrawsNothing) {
  const auto painter = MakePainter(MakeColoredPictures(), L"MMM");
  ExpectRect({}, InkOf(Paint(*painter)));
}

} // namespace
} // namespace lumenor
