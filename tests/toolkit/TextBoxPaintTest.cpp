// What of a text box meets the eye: text, watermark, selection, caret.

#include "toolkit/TextBox.h"

#include <numeric>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <commctrl.h>

#include "support/LogCapture.h"
#include "support/OperationSpy.h"
#include "support/TestFolders.h"
#include "toolkit/FailingText.h"
#include "toolkit/GlyphSpy.h"
#include "toolkit/StatusFont.h"
#include "toolkit/TextBoxScene.h"

namespace lumenor {

namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

std::uint32_t PixelOf(COLORREF color) {
  return 0xFF000000U | static_cast<std::uint32_t>(GetRValue(color) << 16 | GetGValue(color) << 8 | GetBValue(color));
}

constexpr std::uint32_t white = 0xFFFFFFFF;

class PaintedTextBox : public tests::TextBoxScene {
protected:
  PaintedTextBox() { Open(); }
  ~PaintedTextBox() override { Unfocus(); }

  void Paint() {
    spy.Clear();
    TextBoxScene::Paint();
  }

  /// The pixels of the columns from `left` on, `width` wide.
  std::vector<std::uint32_t> Columns(int left, int width) const {
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < FieldHeight(); ++y)
      for (int x = left; x < left + width; ++x)
        pixels.push_back(At(x, y));
    return pixels;
  }

  /// The columns that are of one colour from the line's top to its bottom.
  std::vector<int> ColumnsOf(std::uint32_t color) const {
    std::vector<int> columns;
    for (int x = 0; x < FieldWidth(); ++x)
      if (At(x, 0) == color && At(x, LineBottom() - 1) == color)
        columns.push_back(x);
    return columns;
  }

  int LineBottom() const { return std::min(static_cast<int>(FontMetrics().tmHeight), FieldHeight()); }

  static std::vector<int> Range(int from, int to) {
    std::vector<int> range(static_cast<std::size_t>(to - from));
    std::iota(range.begin(), range.end(), from);
    return range;
  }

  tests::GlyphSpy spy{surface.Target().Get()};
};

const std::wstring pangram = L"The quick brown fox jumps over the lazy dog";

} // namespace

TEST_F(PaintedTextBox, EmptyFieldShowsTheWatermark) {
  box.WatermarkText.Set(L"cue");
  Paint();
  EXPECT_THAT(spy.Texts(), ElementsAre(L"cue"));
  ASSERT_THAT(PaintedColumns(), Not(IsEmpty()));
  EXPECT_GE(PaintedColumns().front(), box.watermarkElement->Left.Get());
  EXPECT_TRUE(KeptWithinTheField());
}

TEST_F(PaintedTextBox, WatermarkGivesWayToTheFocus) {
  box.WatermarkText.Set(L"cue");
  Focus();
  HideCaret();
  Paint();
  EXPECT_THAT(spy.Texts(), IsEmpty());
  EXPECT_THAT(PaintedColumns(), IsEmpty());
  Unfocus();
  Paint();
  EXPECT_THAT(spy.Texts(), ElementsAre(L"cue"));
}

TEST_F(PaintedTextBox, WatermarkStaysWithTheFocusWhenItShall) {
  box.WatermarkText.Set(L"cue");
  box.WatermarkShownOnFocus.Set(1);
  Focus();
  Paint();
  EXPECT_THAT(spy.Texts(), ElementsAre(L"cue"));
}

TEST_F(PaintedTextBox, WatermarkGivesWayToText) {
  box.WatermarkText.Set(L"cue");
  box.WatermarkShownOnFocus.Set(1);
  SetText(L"x");
  Paint();
  EXPECT_THAT(spy.Texts(), IsEmpty());
  EXPECT_THAT(spy.Runs(), SizeIs(1));
  EXPECT_EQ(box.textElement->Text.Get(), L"x");
}

TEST_F(PaintedTextBox, WatermarkIsTheOneOfTheControl) {
  ::SendMessageW(box.handle, EM_SETCUEBANNER, 0, reinterpret_cast<LPARAM>(L"told"));
  Paint();
  EXPECT_THAT(spy.Texts(), ElementsAre(L"told"));
}

TEST_F(PaintedTextBox, EveryGlyphStandsWhereTheControlHasItsCharacter) {
  SetText(L"The quick fox");
  Paint();
  ASSERT_THAT(spy.Runs(), SizeIs(1));
  std::vector<float> expected;
  for (std::size_t i = 0; i < 13; ++i)
    expected.push_back(static_cast<float>(Bounds().left + PositionOf(i)));
  EXPECT_THAT(spy.Runs()[0].lefts, ::testing::Pointwise(::testing::FloatNear(0.01F), expected));
  EXPECT_EQ(spy.Runs()[0].baseline, static_cast<float>(Bounds().top + FontMetrics().tmAscent));
  EXPECT_EQ(spy.Runs()[0].size, static_cast<float>(ScaleY(10)));
  EXPECT_FALSE(spy.Runs()[0].rightToLeft);
}

TEST_F(PaintedTextBox, PixelsKeepStepWithTheControl) {
  const std::wstring text = L"l l  l ll   l l l l";
  SetText(text);
  Paint();
  const int width = WidthOf(L"l");
  const auto first = Columns(PositionOf(0), width);
  EXPECT_THAT(first, ::testing::Contains(::testing::Gt(0U)));
  std::vector<int> cells;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (text[i] == L'l') {
      EXPECT_EQ(Columns(PositionOf(i), width), first) << "character " << i;
      for (const int x : Range(PositionOf(i), PositionOf(i) + width))
        cells.push_back(x);
    }
  EXPECT_THAT(PaintedColumns(), Each(::testing::AnyOfArray(cells))) << "and nothing stands between";
}

TEST_F(PaintedTextBox, SelectionLiesBehindTheSelectedCharacters) {
  SetText(L"Hello world");
  Focus();
  Select(3, 8);
  HideCaret();
  Paint();
  EXPECT_EQ(ColumnsOf(PixelOf(::GetSysColor(COLOR_HIGHLIGHT))), Range(PositionOf(3), PositionOf(8)));
  EXPECT_THAT(Columns(PositionOf(3), 20), ::testing::Contains(white)) << "the text lies on it";
  EXPECT_TRUE(KeptWithinTheField());
}

TEST_F(PaintedTextBox, SelectionToTheEndReachesBehindTheLastCharacter) {
  SetText(L"Hello");
  Focus();
  Select(0, 5);
  HideCaret();
  Paint();
  EXPECT_EQ(ColumnsOf(PixelOf(::GetSysColor(COLOR_HIGHLIGHT))), Range(PositionOf(0), PositionOf(4) + WidthOf(L"o")));
}

TEST_F(PaintedTextBox, SelectionIsShownWithTheFocusOnly) {
  SetText(L"Hello world");
  Select(3, 8);
  Paint();
  EXPECT_THAT(ColumnsOf(PixelOf(::GetSysColor(COLOR_HIGHLIGHT))), IsEmpty());
  EXPECT_THAT(spy.Runs(), SizeIs(1));
}

/// A colour of the system while it lives.
class SystemColor {
public:
  SystemColor(int which, COLORREF color) : which(which), former(::GetSysColor(which)) { Set(color); }
  ~SystemColor() { Set(former); }
  SystemColor(const SystemColor &) = delete;
  SystemColor &operator=(const SystemColor &) = delete;

private:
  void Set(COLORREF color) const { ::SetSysColors(1, &which, &color); }
  int which;
  COLORREF former;
};

TEST_F(PaintedTextBox, SelectionHasTheSystemsColors) {
  const SystemColor ground(COLOR_HIGHLIGHT, RGB(0, 128, 255));
  const SystemColor letters(COLOR_HIGHLIGHTTEXT, RGB(255, 0, 0));
  tests::WatchedTextBox other(surface.Target(), controlId);
  other.parent = &Root();
  const RECT bounds = Bounds();
  other.SetBounds(&bounds);
  other.FontSize = box.FontSize;
  other.OnAttached();
  other.ApplySystemFont();
  ::SetWindowTextW(other.handle, L"HHH");
  ::SetFocus(other.handle);
  ::SendMessageW(other.handle, EM_SETSEL, 1, 2);
  other.caretVisible = 0;
  spy.Clear();
  const D2D1_RECT_F all{0, 0, 200, 60};
  surface.Draw([&] { Root().PaintChild(surface.Target(), &other, &all); });
  EXPECT_THAT(ColumnsOf(0xFF0080FF), Not(IsEmpty()));
  ASSERT_THAT(spy.Runs(), SizeIs(2));
  EXPECT_EQ(spy.Runs()[0].color.g, 1.0F) << "white at first";
  EXPECT_EQ(spy.Runs()[1].color.g, 0.0F) << "and red on the selection";
  EXPECT_EQ(spy.Runs()[1].color.r, 1.0F);
}

TEST_F(PaintedTextBox, CaretIsOnePixelWideAndAsHighAsTheLine) {
  SetText(L"ab");
  Focus();
  Select(1, 1);
  HideCaret();
  Paint();
  const auto without = Columns(0, FieldWidth());
  box.caretVisible = 1;
  Paint();
  EXPECT_EQ(ColumnsOf(white), Range(PositionOf(1), PositionOf(1) + 1));
  const auto with = Columns(0, FieldWidth());
  for (int y = 0; y < LineBottom(); ++y)
    EXPECT_EQ(At(PositionOf(1), y), white) << "row " << y;
  for (std::size_t i = 0; i < with.size(); ++i)
    if (static_cast<int>(i) % FieldWidth() != PositionOf(1)) {
      EXPECT_EQ(with[i], without[i]);
    }
}

TEST_F(PaintedTextBox, CaretIsAtLeastAsHighAsADigit) {
  SetText(L"08");
  Paint();
  std::vector<int> digitRows;
  for (int y = 0; y < FieldHeight(); ++y)
    for (int x = 0; x < FieldWidth(); ++x)
      if (At(x, y) != 0)
        digitRows.push_back(y);
  ASSERT_FALSE(digitRows.empty());
  Focus();
  Select(2, 2);
  Paint();
  const int caret = PositionOf(1) + WidthOf(L"8");
  EXPECT_EQ(At(caret, digitRows.front()), white);
  EXPECT_EQ(At(caret, digitRows.back()), white);
}

TEST_F(PaintedTextBox, CaretStandsBehindTheTextAtItsEnd) {
  SetText(L"ab");
  Focus();
  Select(2, 2);
  Paint();
  const int end = PositionOf(1) + WidthOf(L"b");
  EXPECT_EQ(ColumnsOf(white), Range(end, end + 1));
}

TEST_F(PaintedTextBox, CaretOfTheEmptyFieldStandsWhereTextWillBegin) {
  Focus();
  Paint();
  const int start = static_cast<int>(box.textElement->Left.Get());
  EXPECT_EQ(PaintedColumns(), Range(start, start + 1));
}

TEST_F(PaintedTextBox, CaretStandsAtTheEndOfTheSelectionThatMoves) {
  SetText(L"Hello world");
  Focus();
  Select(8, 3);
  Paint();
  EXPECT_EQ(ColumnsOf(white), Range(PositionOf(3), PositionOf(3) + 1));
}

TEST_F(PaintedTextBox, CaretFollowsItsPhase) {
  Focus();
  Paint();
  EXPECT_THAT(PaintedColumns(), SizeIs(1));
  box.Ask(WM_TIMER, 5);
  Paint();
  EXPECT_THAT(PaintedColumns(), IsEmpty());
  box.Ask(WM_KEYDOWN, VK_SHIFT);
  Paint();
  EXPECT_THAT(PaintedColumns(), SizeIs(1));
}

TEST_F(PaintedTextBox, CaretIsGoneWithTheFocus) {
  Focus();
  Unfocus();
  box.caretVisible = 1;
  Paint();
  EXPECT_THAT(PaintedColumns(), IsEmpty());
}

TEST_F(PaintedTextBox, LongTextIsScrolledToItsEnd) {
  SetText(pangram);
  Focus();
  Select(43, 43);
  Paint();
  const int end = PositionOf(42) + WidthOf(L"g");
  ASSERT_LT(PositionOf(0), 0);
  ASSERT_LT(end, FieldWidth());
  EXPECT_EQ(ColumnsOf(white), Range(end, end + 1));
  ASSERT_THAT(PaintedColumns(), Not(IsEmpty()));
  EXPECT_EQ(PaintedColumns().back(), end);
  ASSERT_THAT(spy.Runs(), SizeIs(1));
  EXPECT_NEAR(spy.Runs()[0].lefts[42], Bounds().left + PositionOf(42), 0.01);
  EXPECT_TRUE(KeptWithinTheField());
}

TEST_F(PaintedTextBox, LongTextIsScrolledBackByHome) {
  SetText(pangram);
  Focus();
  Select(43, 43);
  ::SendMessageW(box.handle, WM_KEYDOWN, VK_HOME, 1);
  Paint();
  EXPECT_EQ(PositionOf(0), box.textElement->Left.Get());
  EXPECT_EQ(ColumnsOf(white), Range(PositionOf(0), PositionOf(0) + 1));
  ASSERT_THAT(PaintedColumns(), Not(IsEmpty()));
  EXPECT_GT(PaintedColumns().back(), FieldWidth() - ScaleX(10)) << "the field is full";
  EXPECT_TRUE(KeptWithinTheField());
}

TEST_F(PaintedTextBox, SelectionOfLongTextKeepsWithinTheField) {
  SetText(pangram);
  Focus();
  Select(0, 43);
  HideCaret();
  Paint();
  const auto selected = ColumnsOf(PixelOf(::GetSysColor(COLOR_HIGHLIGHT)));
  ASSERT_THAT(selected, Not(IsEmpty()));
  EXPECT_EQ(selected.front(), box.textElement->Left.Get());
  EXPECT_TRUE(KeptWithinTheField());
}

TEST_F(PaintedTextBox, CaretAtTheRightEdgeIsSeen) {
  Focus();
  for (int i = 1; i < 40; ++i) {
    SetText(std::wstring(static_cast<std::size_t>(i), L'i'));
    Select(i, i);
    Paint();
    EXPECT_THAT(ColumnsOf(white), SizeIs(1)) << i;
  }
}

TEST_F(PaintedTextBox, SecondPaintMakesNothingAnew) {
  SetText(L"Hello");
  Focus();
  Select(1, 3);
  Paint();
  Paint();
  ASSERT_THAT(ColumnsOf(white), SizeIs(1)) << "caret, selection and text";
  EXPECT_EQ(spy.Brushes(), 0);
}

namespace {

/// In the place of IDWriteTextLayout::Draw.
HRESULT STDMETHODCALLTYPE RefuseToDraw(IDWriteTextLayout *, void *, IDWriteTextRenderer *, FLOAT, FLOAT) {
  return E_OUTOFMEMORY;
}

/// One whose table of operations all of them share.
Microsoft::WRL::ComPtr<IDWriteTextLayout> AnyLayout() {
  const auto factory = CreateTextFactory();
  const auto format = CreateStatusTextFormat(factory.Get(), DWRITE_FONT_WEIGHT_NORMAL, DWRITE_FONT_STYLE_NORMAL,
                                             DWRITE_FONT_STRETCH_NORMAL, 12);
  Microsoft::WRL::ComPtr<IDWriteTextLayout> layout;
  factory->CreateTextLayout(L"x", 1, format.Get(), 100, 100, &layout);
  return layout;
}

constexpr char notLaidOut[] = "ERROR: TextBox: can't lay out the text, error 8007000e";

} // namespace

TEST_F(PaintedTextBox, TextThatCannotBeLaidOutIsMissingAndLogged) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  for (const int failedCall : {1, 2}) {
    SetText(L"former");
    Paint();
    SetText(L"abc");
    {
      const tests::FailingText failing(failedCall);
      EXPECT_NO_THROW(Paint());
    }
    EXPECT_THAT(spy.Runs(), IsEmpty()) << "call " << failedCall;
    EXPECT_THAT(log.Lines(), ElementsAre(notLaidOut));
    log.Clear();
    Paint();
    EXPECT_THAT(spy.Runs(), SizeIs(1)) << "call " << failedCall;
  }
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(PaintedTextBox, WatermarkThatCannotBeLaidOutIsMissingAndLogged) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  box.WatermarkText.Set(L"cue");
  {
    const tests::FailingText failing(1);
    EXPECT_NO_THROW(Paint());
  }
  EXPECT_THAT(PaintedColumns(), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre(notLaidOut));
  Paint();
  EXPECT_THAT(PaintedColumns(), Not(IsEmpty()));
}

TEST_F(PaintedTextBox, TextThatCannotBeDrawnIsMissingAndLeavesNoClipBehind) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  SetText(L"abc");
  Focus();
  Select(0, 2);
  HideCaret();
  {
    constexpr std::size_t drawSlot = 58;
    tests::OperationSpy layouts(AnyLayout().Get());
    layouts.Exchange(drawSlot, &RefuseToDraw);
    EXPECT_NO_THROW(Paint());
  }
  EXPECT_THAT(spy.Runs(), IsEmpty());
  EXPECT_THAT(log.Lines(), AllOf(SizeIs(2), Each("ERROR: EditTextElement: can't draw the text, error 8007000e")))
      << "the text, and its selected part";
  Paint();
  EXPECT_THAT(spy.Runs(), SizeIs(2));
}

} // namespace lumenor
