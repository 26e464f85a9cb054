#include "toolkit/TextElement.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/HandleCounts.h"
#include "support/LogCapture.h"
#include "support/OperationSpy.h"
#include "support/RenderSurface.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"
#include "toolkit/StatusFont.h"
#include "toolkit/TestElements.h"

namespace lumenor {

namespace {

using Microsoft::WRL::ComPtr;
using tests::OperationSpy;
using tests::RenderSurface;

/// The places of operations in their interfaces.
enum : std::size_t {
  createTextFormatSlot = 15,
  createTextLayoutSlot = 18,
  createSolidColorBrushSlot = 8,
  drawTextLayoutSlot = 28,
};

using CreateTextFormat = HRESULT(STDMETHODCALLTYPE *)(IDWriteFactory *, const WCHAR *, IDWriteFontCollection *,
                                                      DWRITE_FONT_WEIGHT, DWRITE_FONT_STYLE, DWRITE_FONT_STRETCH, FLOAT,
                                                      const WCHAR *, IDWriteTextFormat **);
using CreateSolidColorBrush = HRESULT(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, const D2D1_COLOR_F *,
                                                           const D2D1_BRUSH_PROPERTIES *, ID2D1SolidColorBrush **);
using CreateTextLayout = HRESULT(STDMETHODCALLTYPE *)(IDWriteFactory *, const WCHAR *, UINT32, IDWriteTextFormat *,
                                                      FLOAT, FLOAT, IDWriteTextLayout **);
using DrawTextLayoutCall = void(STDMETHODCALLTYPE *)(ID2D1RenderTarget *, D2D1_POINT_2F, IDWriteTextLayout *,
                                                     ID2D1Brush *, D2D1_DRAW_TEXT_OPTIONS);

/// What the platform was asked for.
struct Requests {
  int formats = 0;
  int brushes = 0;
  std::wstring family, locale;
  bool systemCollection = false;
  DWRITE_FONT_WEIGHT weight{};
  DWRITE_FONT_STYLE style{};
  DWRITE_FONT_STRETCH stretch{};
  float size = 0;
  ComPtr<IDWriteTextFormat> format;
  D2D1_COLOR_F color{};
  std::vector<std::wstring> texts; // that were laid out
  HRESULT layoutResult = S_OK;     // of the layouts that are asked for
  std::vector<IDWriteTextLayout *> drawn;
  D2D1_DRAW_TEXT_OPTIONS options = D2D1_DRAW_TEXT_OPTIONS_CLIP;
};

Requests requests;
CreateTextFormat formerCreateTextFormat;
CreateSolidColorBrush formerCreateSolidColorBrush;
CreateTextLayout formerCreateTextLayout;
DrawTextLayoutCall formerDrawTextLayout;

HRESULT STDMETHODCALLTYPE RecordFormat(IDWriteFactory *factory, const WCHAR *family, IDWriteFontCollection *collection,
                                       DWRITE_FONT_WEIGHT weight, DWRITE_FONT_STYLE style, DWRITE_FONT_STRETCH stretch,
                                       FLOAT size, const WCHAR *locale, IDWriteTextFormat **format) {
  const HRESULT result =
      formerCreateTextFormat(factory, family, collection, weight, style, stretch, size, locale, format);
  ++requests.formats;
  requests.family = family;
  requests.locale = locale;
  requests.systemCollection = collection == nullptr;
  requests.weight = weight;
  requests.style = style;
  requests.stretch = stretch;
  requests.size = size;
  requests.format = *format;
  return result;
}

HRESULT STDMETHODCALLTYPE RecordBrush(ID2D1RenderTarget *target, const D2D1_COLOR_F *color,
                                      const D2D1_BRUSH_PROPERTIES *properties, ID2D1SolidColorBrush **brush) {
  ++requests.brushes;
  requests.color = *color;
  return formerCreateSolidColorBrush(target, color, properties, brush);
}

HRESULT STDMETHODCALLTYPE RecordLayout(IDWriteFactory *factory, const WCHAR *text, UINT32 length,
                                       IDWriteTextFormat *format, FLOAT width, FLOAT height,
                                       IDWriteTextLayout **layout) {
  if (FAILED(requests.layoutResult))
    return requests.layoutResult;
  requests.texts.emplace_back(text, length);
  return formerCreateTextLayout(factory, text, length, format, width, height, layout);
}

void STDMETHODCALLTYPE RecordDrawing(ID2D1RenderTarget *target, D2D1_POINT_2F origin, IDWriteTextLayout *layout,
                                     ID2D1Brush *brush, D2D1_DRAW_TEXT_OPTIONS options) {
  requests.drawn.push_back(layout);
  requests.options = options;
  formerDrawTextLayout(target, origin, layout, brush, options);
}

/// The size of the text by the platform's own measure, rounded up.
struct Size {
  long width, height;
  bool operator==(const Size &) const = default;
};

std::ostream &operator<<(std::ostream &stream, const Size &size) {
  return stream << size.width << " x " << size.height;
}

Size PlatformSize(const std::wstring &text, float fontSize, DWRITE_FONT_WEIGHT weight = DWRITE_FONT_WEIGHT_NORMAL) {
  const auto factory = CreateTextFactory();
  ComPtr<IDWriteTextFormat> format;
  ThrowIfFailed(factory->CreateTextFormat(GetStatusFont().lfFaceName, nullptr, weight, DWRITE_FONT_STYLE_NORMAL,
                                          DWRITE_FONT_STRETCH_NORMAL, fontSize, L"en", &format));
  ThrowIfFailed(format->SetWordWrapping(DWRITE_WORD_WRAPPING_NO_WRAP));
  ComPtr<IDWriteTextLayout> layout;
  ThrowIfFailed(
      factory->CreateTextLayout(text.data(), static_cast<UINT32>(text.size()), format.Get(), 10000, 10000, &layout));
  DWRITE_TEXT_METRICS metrics{};
  ThrowIfFailed(layout->GetMetrics(&metrics));
  return {static_cast<long>(std::ceil(metrics.width)), static_cast<long>(std::ceil(metrics.height))};
}

Size Desired(const TextElement &element) { return {element.DesiredWidth.Get(), element.DesiredHeight.Get()}; }

class TextElementTest : public ::testing::Test {
protected:
  TextElementTest() : textSpy(CreateTextFactory().Get()), targetSpy(surface.Target().Get()) {
    formerCreateTextFormat = textSpy.Exchange<CreateTextFormat>(createTextFormatSlot, RecordFormat);
    formerCreateSolidColorBrush = targetSpy.Exchange<CreateSolidColorBrush>(createSolidColorBrushSlot, RecordBrush);
    formerCreateTextLayout = textSpy.Exchange<CreateTextLayout>(createTextLayoutSlot, RecordLayout);
    formerDrawTextLayout = targetSpy.Exchange<DrawTextLayoutCall>(drawTextLayoutSlot, RecordDrawing);
    requests = Requests();
  }
  ~TextElementTest() override { requests = Requests(); }

  /// An element that shows `text` and is ready to be painted.
  void Show(TextElement &element, const std::wstring &text) {
    element.BeginUpdate();
    element.Text.Set(text);
    element.EndUpdate();
    requests = Requests();
  }

  RenderSurface surface{60, 40};
  OperationSpy textSpy;
  OperationSpy targetSpy;
};

TEST_F(TextElementTest, StartsWithItsDefaultsAFormatAndNoBrush) {
  const TextElement element(surface.Target());
  EXPECT_EQ(element.Text.Get(), L"");
  EXPECT_EQ(element.Color.Get(), (Color{1, 1, 1, 1}));
  EXPECT_EQ(element.TextAlignment.Get(), DWRITE_TEXT_ALIGNMENT_LEADING);
  EXPECT_EQ(element.FontSize.Get(), 10.0F);
  EXPECT_EQ(element.FontWeight.Get(), 400);
  EXPECT_EQ(element.FontStyle.Get(), DWRITE_FONT_STYLE_NORMAL);
  EXPECT_EQ(element.FontStretch.Get(), 5);
  EXPECT_EQ(element.WordWrapping.Get(), 1);
  EXPECT_EQ(element.Trimming.Get(), 1);
  EXPECT_EQ(requests.formats, 1);
  EXPECT_EQ(requests.brushes, 0);
}

TEST_F(TextElementTest, FormatIsOfTheStatusFontAndOfEveryProperty) {
  TextElement element(surface.Target());
  element.BeginUpdate();
  element.FontSize.Set(13.5F);
  element.FontWeight.Set(DWRITE_FONT_WEIGHT_BOLD);
  element.FontStyle.Set(DWRITE_FONT_STYLE_ITALIC);
  element.FontStretch.Set(DWRITE_FONT_STRETCH_CONDENSED);
  element.TextAlignment.Set(DWRITE_TEXT_ALIGNMENT_CENTER);
  element.WordWrapping.Set(DWRITE_WORD_WRAPPING_WRAP);
  element.EndUpdate();
  EXPECT_EQ(requests.family, L"Tahoma");
  EXPECT_TRUE(requests.systemCollection);
  EXPECT_EQ(requests.locale, L"en");
  EXPECT_EQ(requests.size, 13.5F);
  EXPECT_EQ(requests.weight, DWRITE_FONT_WEIGHT_BOLD);
  EXPECT_EQ(requests.style, DWRITE_FONT_STYLE_ITALIC);
  EXPECT_EQ(requests.stretch, DWRITE_FONT_STRETCH_CONDENSED);
  EXPECT_EQ(requests.format->GetTextAlignment(), DWRITE_TEXT_ALIGNMENT_CENTER);
  EXPECT_EQ(requests.format->GetParagraphAlignment(), DWRITE_PARAGRAPH_ALIGNMENT_CENTER);
  EXPECT_EQ(requests.format->GetWordWrapping(), DWRITE_WORD_WRAPPING_WRAP);
  EXPECT_EQ(requests.format->GetReadingDirection(), DWRITE_READING_DIRECTION_LEFT_TO_RIGHT);
}

TEST_F(TextElementTest, TrimmingCutsCharactersWithASign) {
  TextElement element(surface.Target());
  element.Trimming.Set(2);
  DWRITE_TRIMMING trimming{DWRITE_TRIMMING_GRANULARITY_WORD, 9, 9};
  ComPtr<IDWriteInlineObject> sign;
  requests.format->GetTrimming(&trimming, &sign);
  EXPECT_EQ(trimming.granularity, DWRITE_TRIMMING_GRANULARITY_CHARACTER);
  EXPECT_NE(sign, nullptr);
  element.Trimming.Set(0);
  requests.format->GetTrimming(&trimming, sign.ReleaseAndGetAddressOf());
  EXPECT_EQ(trimming.granularity, DWRITE_TRIMMING_GRANULARITY_NONE);
  EXPECT_EQ(sign, nullptr);
}

TEST_F(TextElementTest, AsksForItsMeasuredSize) {
  TextElement element(surface.Target());
  element.Text.Set(L"Lumenor dock");
  EXPECT_EQ(Desired(element), PlatformSize(L"Lumenor dock", 10));
  element.FontSize.Set(23.5F);
  EXPECT_EQ(Desired(element), PlatformSize(L"Lumenor dock", 23.5F));
  element.FontWeight.Set(DWRITE_FONT_WEIGHT_BOLD);
  EXPECT_EQ(Desired(element), PlatformSize(L"Lumenor dock", 23.5F, DWRITE_FONT_WEIGHT_BOLD));
  EXPECT_GT(element.DesiredWidth.Get(), 100);
}

TEST_F(TextElementTest, EmptyTextIsNoWiderThanNothingAndOneLineHigh) {
  TextElement element(surface.Target());
  element.Update();
  EXPECT_EQ(Desired(element), (Size{0, PlatformSize(L"x", 10).height}));
  EXPECT_GT(element.DesiredHeight.Get(), 9);
}

TEST_F(TextElementTest, TrailingBlanksDontCount) {
  TextElement element(surface.Target());
  element.Text.Set(L"dock");
  const Size size = Desired(element);
  element.Text.Set(L"dock    ");
  EXPECT_EQ(Desired(element), size);
}

TEST_F(TextElementTest, LongTextIsntWrapped) {
  TextElement element(surface.Target());
  const std::wstring words = L"several words that would not fit into one line of a button ";
  element.Text.Set(words + words + words + words);
  EXPECT_EQ(element.DesiredHeight.Get(), PlatformSize(L"x", 10).height);
  EXPECT_GT(element.DesiredWidth.Get(), 1000);
}

TEST_F(TextElementTest, TextChangeMeasuresWithoutANewFormat) {
  TextElement element(surface.Target());
  Show(element, L"a");
  element.Text.Set(L"abc");
  EXPECT_EQ(requests.formats, 0);
  EXPECT_EQ(requests.brushes, 0);
  EXPECT_EQ(Desired(element), PlatformSize(L"abc", 10));
}

TEST_F(TextElementTest, EveryOtherPropertyMakesFormatAndBrushAnew) {
  TextElement element(surface.Target());
  const auto expectRebuilt = [&](const char *property, auto change) {
    requests = Requests();
    change();
    EXPECT_EQ(requests.formats, 1) << property;
    EXPECT_EQ(requests.brushes, 1) << property;
  };
  expectRebuilt("Color", [&] { element.Color.Set({0.25F, 0.5F, 0.75F, 0.125F}); });
  EXPECT_EQ(requests.color.r, 0.25F);
  EXPECT_EQ(requests.color.g, 0.5F);
  EXPECT_EQ(requests.color.b, 0.75F);
  EXPECT_EQ(requests.color.a, 0.125F);
  expectRebuilt("TextAlignment", [&] { element.TextAlignment.Set(DWRITE_TEXT_ALIGNMENT_TRAILING); });
  expectRebuilt("FontSize", [&] { element.FontSize.Set(11); });
  expectRebuilt("FontWeight", [&] { element.FontWeight.Set(DWRITE_FONT_WEIGHT_BOLD); });
  expectRebuilt("FontStyle", [&] { element.FontStyle.Set(DWRITE_FONT_STYLE_ITALIC); });
  expectRebuilt("FontStretch", [&] { element.FontStretch.Set(DWRITE_FONT_STRETCH_EXPANDED); });
  expectRebuilt("Trimming", [&] { element.Trimming.Set(0); });
}

TEST_F(TextElementTest, EqualColorRebuildsToo) {
  TextElement element(surface.Target());
  Show(element, L"a");
  tests::GeometryLog log(element);
  element.DesiredWidth.Set(999);
  log.changes.clear();
  element.Color.Set(element.Color.Get());
  EXPECT_EQ(requests.formats, 1);
  EXPECT_EQ(log.changes.size(), 1U) << "it has measured";
}

TEST_F(TextElementTest, WordWrappingWaitsForTheNextUpdate) {
  TextElement element(surface.Target());
  requests = Requests();
  element.WordWrapping.Set(DWRITE_WORD_WRAPPING_WRAP);
  EXPECT_EQ(requests.formats, 0);
  element.Text.Set(L"a");
  EXPECT_EQ(requests.formats, 0);
  element.FontSize.Set(11);
  EXPECT_EQ(requests.format->GetWordWrapping(), DWRITE_WORD_WRAPPING_WRAP);
}

TEST_F(TextElementTest, GroupOfChangesUpdatesOnceAtItsEnd) {
  TextElement element(surface.Target());
  Show(element, L"dock");
  element.BeginUpdate();
  const Size size = Desired(element);
  element.FontSize.Set(20);
  element.FontWeight.Set(DWRITE_FONT_WEIGHT_BOLD);
  element.Color.Set({1, 0, 0, 1});
  EXPECT_EQ(requests.formats + requests.brushes, 0);
  EXPECT_EQ(Desired(element), size);
  element.EndUpdate();
  EXPECT_EQ(requests.formats, 1);
  EXPECT_EQ(requests.brushes, 1);
  EXPECT_EQ(Desired(element), PlatformSize(L"dock", 20, DWRITE_FONT_WEIGHT_BOLD));
}

TEST_F(TextElementTest, MeasuringInvalidates) {
  tests::Leaf parent;
  TextElement element(surface.Target());
  element.parent = &parent;
  element.Text.Set(L"a");
  element.Update();
  EXPECT_EQ(parent.calls, (std::vector<std::string>{"Invalidate", "Invalidate"}));
}

TEST_F(TextElementTest, FailureRaises) {
  TextElement element(surface.Target());
  EXPECT_THROW(element.FontSize.Set(-1.0F), HResultError);
}

/// Where the drawing left something, as left, top, right and bottom pixel; all -1 for nothing.
struct Ink {
  int left = -1, top = -1, right = -1, bottom = -1;
};

Ink FindInk(const RenderSurface &surface, int width, int height) {
  Ink ink;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      if (surface.At(x, y) != 0) {
        ink.left = ink.left < 0 ? x : std::min(ink.left, x);
        ink.right = std::max(ink.right, x);
        ink.top = ink.top < 0 ? y : ink.top;
        ink.bottom = y;
      }
  return ink;
}

class PaintedText : public TextElementTest {
protected:
  /// Paints into 5, 4 to `right`, 36 of the surface.
  Ink Paint(TextElement &element, float right) {
    const D2D1_RECT_F rect{5, 4, right, 36};
    surface.Draw([&] { element.Paint(surface.Target(), &rect); });
    return FindInk(surface, 60, 40);
  }
};

TEST_F(PaintedText, StandsAtTheLeftAndInTheMiddleOfItsHeight) {
  TextElement element(surface.Target());
  Show(element, L"HHHH");
  const Ink ink = Paint(element, 60);
  EXPECT_GE(ink.left, 5);
  EXPECT_LE(ink.left, 7);
  EXPECT_NEAR((ink.top + ink.bottom) / 2.0, 20, 2);
  EXPECT_EQ(ink.bottom - ink.top + 1, 7) << "the height of a capital of size 10";
}

TEST_F(PaintedText, TrailingAlignmentStandsAtTheRight) {
  TextElement element(surface.Target());
  Show(element, L"HH");
  element.TextAlignment.Set(DWRITE_TEXT_ALIGNMENT_TRAILING);
  const Ink ink = Paint(element, 55);
  EXPECT_LE(ink.right, 55);
  EXPECT_GE(ink.right, 52);
}

TEST_F(PaintedText, HasItsColor) {
  TextElement element(surface.Target());
  Show(element, L"HHHH");
  element.Color.Set({0, 1, 0, 1});
  Paint(element, 60);
  const std::vector<std::uint32_t> row = surface.Draw([&] {
    const D2D1_RECT_F rect{0, 0, 60, 40};
    element.Paint(surface.Target(), &rect);
  });
  EXPECT_EQ(*std::max_element(row.begin(), row.end()), 0xFF00FF00);
}

TEST_F(PaintedText, IsDrawnOnTheTargetOfItsConstruction) {
  RenderSurface other(60, 40);
  TextElement element(surface.Target());
  Show(element, L"HHHH");
  const D2D1_RECT_F rect{0, 0, 60, 40};
  surface.Draw([&] { element.Paint(other.Target(), &rect); });
  EXPECT_EQ(requests.texts, std::vector<std::wstring>{L"HHHH"});
  EXPECT_EQ(requests.drawn.size(), 1U);
  EXPECT_EQ(requests.options, D2D1_DRAW_TEXT_OPTIONS_NONE);
  EXPECT_NE(FindInk(surface, 60, 40).left, -1);
}

TEST_F(PaintedText, NeverUpdatedItPaintsNothing) {
  TextElement element(surface.Target());
  element.Text.Set(L"HHHH");
  EXPECT_EQ(Paint(element, 60).left, -1);
}

TEST_F(PaintedText, IsLaidOutOnceForAllPaintsInAnyRoom) {
  TextElement element(surface.Target());
  Show(element, L"HHHH");
  const Ink wide = Paint(element, 60);
  const Ink narrow = Paint(element, 25);
  EXPECT_LT(narrow.right, wide.right);
  EXPECT_EQ(Paint(element, 60).right, wide.right);
  EXPECT_EQ(requests.texts, std::vector<std::wstring>{L"HHHH"});
  EXPECT_EQ(requests.drawn.size(), 3U);
}

TEST_F(PaintedText, ShowsEachChange) {
  TextElement element(surface.Target());
  Show(element, L"H");
  const Ink one = Paint(element, 60);
  element.Text.Set(L"HHH");
  const Ink three = Paint(element, 60);
  EXPECT_GT(three.right, one.right);
  element.FontSize.Set(14);
  const Ink big = Paint(element, 60);
  EXPECT_GT(big.right, three.right);
  element.TextAlignment.Set(DWRITE_TEXT_ALIGNMENT_TRAILING);
  EXPECT_GT(Paint(element, 60).left, big.left);
}

/// Drawing a text without keeping its layout is the simplest way to the same picture.
TEST_F(PaintedText, HasThePixelsOfTheTextDrawnWithoutAKeptLayout) {
  TextElement element(surface.Target());
  element.FontSize.Set(12); // of a format that is recorded
  const ComPtr<IDWriteTextFormat> format = requests.format;
  ComPtr<ID2D1SolidColorBrush> white;
  const D2D1_COLOR_F color{1, 1, 1, 1};
  ThrowIfFailed(surface.Target()->CreateSolidColorBrush(&color, nullptr, &white));
  for (const std::wstring text : {L"", L"Mail", L"HHHHHHHHHHHHHHHH", L"gjpq\u00C4\u6F22"}) {
    element.Text.Set(text);
    for (const float right : {60.0F, 33.5F, 5.0F, 60.0F}) {
      const D2D1_RECT_F rect{5, 4, right, 36};
      const auto painted = surface.Draw([&] { element.Paint(surface.Target(), &rect); });
      const auto expected = surface.Draw([&] {
        surface.Target()->DrawText(text.c_str(), static_cast<UINT32>(text.size()), format.Get(), &rect, white.Get(),
                                   D2D1_DRAW_TEXT_OPTIONS_NONE, DWRITE_MEASURING_MODE_NATURAL);
      });
      EXPECT_EQ(expected, painted) << right;
    }
  }
}

TEST_F(PaintedText, ThatCannotBeLaidOutIsMissingAndLogged) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  TextElement element(surface.Target());
  Show(element, L"HHHH");
  requests.layoutResult = E_OUTOFMEMORY;
  EXPECT_EQ(Paint(element, 60).left, -1);
  EXPECT_EQ(log.Lines(), std::vector<std::string>{"ERROR: TextElement: can't lay out the text, error 8007000e"});
  requests.layoutResult = S_OK;
  EXPECT_NE(Paint(element, 60).left, -1);
}

TEST_F(PaintedText, PaintsNothingIntoAnInvertedRectangle) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  TextElement element(surface.Target());
  Show(element, L"HHHH");
  EXPECT_EQ(Paint(element, 4).left, -1);
  EXPECT_TRUE(requests.drawn.empty());
  EXPECT_EQ(log.Lines(), std::vector<std::string>());
}

TEST_F(PaintedText, ShowsTheBeginningOfATextThatNoScreenHolds) {
  TextElement element(surface.Target());
  for (const std::size_t length : {std::size_t{70'000}, std::size_t{5'000'000}}) {
    Show(element, std::wstring(length, L'H'));
    EXPECT_GT(Paint(element, 40).left, 0) << length;
    EXPECT_EQ(length, element.Text.Get().size());
    EXPECT_EQ(8192U, requests.texts.back().size());
  }
}

TEST_F(PaintedText, TooLongItEndsInAnEllipsisInsideItsRectangle) {
  TextElement element(surface.Target());
  Show(element, L"HHHHHHHHHHHH");
  const Ink ink = Paint(element, 40);
  EXPECT_LT(ink.right, 40);
  int highest = 40;
  for (int x = 33; x < 40; ++x)
    for (int y = 0; y < 40; ++y)
      if (surface.At(x, y) != 0)
        highest = std::min(highest, y);
  EXPECT_GE(highest, ink.bottom - 2) << "dots on the base line, no letter";
}

TEST_F(PaintedText, UntrimmedItIsCutByTheClipOnly) {
  TextElement element(surface.Target());
  Show(element, L"HHHHHHHHHHHH");
  element.Trimming.Set(0);
  const RECT bounds{0, 0, 35, 32};
  element.SetBounds(&bounds);
  EXPECT_GT(Paint(element, 40).right, 50) << "unclipped it runs on";
  tests::Leaf painter;
  const D2D1_RECT_F parentRect{5, 4, 60, 40};
  surface.Draw([&] { painter.PaintChild(surface.Target(), &element, &parentRect); });
  const Ink ink = FindInk(surface, 60, 40);
  EXPECT_LT(ink.right, 40);
  EXPECT_GE(ink.right, 36);
  bool letterAtTheEdge = false;
  for (int x = 33; x < 40; ++x)
    letterAtTheEdge = letterAtTheEdge || surface.At(x, ink.top) != 0;
  EXPECT_TRUE(letterAtTheEdge);
}

TEST_F(TextElementTest, UpdatesLeaveNothingBehind) {
  TextElement element(surface.Target());
  Show(element, L"a");
  const int objects = tests::CountGdiObjects();
  const int handles = tests::CountKernelHandles();
  for (int i = 0; i < 20; ++i)
    element.Color.Set(element.Color.Get());
  EXPECT_EQ(tests::CountGdiObjects(), objects);
  EXPECT_EQ(tests::CountKernelHandles(), handles);
}

} // namespace

} // namespace lumenor
