// Texts that don't simply run from left to right, and texts that hardly are texts.

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "toolkit/GlyphSpy.h"
#include "toolkit/TextBoxScene.h"

namespace lumenor {

namespace {

using ::testing::FloatNear;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Pointwise;
using ::testing::SizeIs;

class TextBoxScripts : public tests::TextBoxScene {
protected:
  TextBoxScripts() { Open(); }
  ~TextBoxScripts() override { Unfocus(); }

  void Show(const std::wstring &text) {
    SetText(text);
    spy.Clear();
    Paint();
  }

  /// The runs of the last Show that go from right to left.
  std::vector<tests::DrawnRun> RunsFromTheRight() const {
    std::vector<tests::DrawnRun> found;
    for (const tests::DrawnRun &run : spy.Runs())
      if (run.rightToLeft)
        found.push_back(run);
    return found;
  }

  /// `x` of the field on the picture.
  static float OnPicture(int x) { return static_cast<float>(Bounds().left + x); }

  /// The highlighted columns of the field.
  std::vector<bool> Highlighted() const {
    const COLORREF color = ::GetSysColor(COLOR_HIGHLIGHT);
    const std::uint32_t pixel =
        0xFF000000U | static_cast<std::uint32_t>(GetRValue(color) << 16 | GetGValue(color) << 8 | GetBValue(color));
    std::vector<bool> columns;
    for (int x = 0; x < FieldWidth(); ++x)
      columns.push_back(At(x, 0) == pixel);
    return columns;
  }

  tests::GlyphSpy spy{surface.Target().Get()};
};

// Letters of their own width, none of which melts together with another.
const std::wstring arabic = L"\x645\x631\x62D\x628\x627";

} // namespace

TEST_F(TextBoxScripts, RightToLeftLettersStandLeftOfTheirLeadingEdge) {
  Show(L"ab " + arabic + L" cd");
  ASSERT_GT(PositionOf(3), PositionOf(4)) << "the control has them from right to left";
  ASSERT_THAT(RunsFromTheRight(), SizeIs(1));
  const std::vector<float> lefts = RunsFromTheRight()[0].lefts;
  ASSERT_THAT(lefts, SizeIs(5));
  for (std::size_t i = 0; i < 4; ++i)
    EXPECT_NEAR(lefts[i], OnPicture(PositionOf(4 + i)), 0.01) << "letter " << i;
  EXPECT_NEAR(lefts[4], OnPicture(PositionOf(7) - WidthOf(L"\x627")), 0.01);
}

TEST_F(TextBoxScripts, TextAroundRightToLeftLettersStaysInPlace) {
  Show(L"ab " + arabic + L" cd");
  std::vector<float> lefts;
  for (const tests::DrawnRun &run : spy.Runs())
    if (!run.rightToLeft)
      lefts.insert(lefts.end(), run.lefts.begin(), run.lefts.end());
  std::vector<float> expected;
  for (const std::size_t i : {0, 1, 2, 8, 9, 10})
    expected.push_back(OnPicture(PositionOf(i)));
  EXPECT_THAT(lefts, Pointwise(FloatNear(0.01F), expected));
}

TEST_F(TextBoxScripts, RightToLeftStemsArePaintedWhereTheControlHasThem) {
  Show(L"\x627\x627\x627\x627");
  const int width = PositionOf(1) - PositionOf(2);
  ASSERT_GT(width, 0);
  const auto cell = [&](int left) {
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < FieldHeight(); ++y)
      for (int x = left; x < left + width; ++x)
        pixels.push_back(At(x, y));
    return pixels;
  };
  const auto first = cell(PositionOf(1));
  EXPECT_THAT(first, ::testing::Contains(::testing::Gt(0U)));
  EXPECT_EQ(cell(PositionOf(2)), first);
  EXPECT_EQ(cell(PositionOf(3)), first);
  EXPECT_EQ(cell(PositionOf(3) - width), first);
}

TEST_F(TextBoxScripts, FieldThatBeginsWithRightToLeftTextBeginsAtItsEdge) {
  Show(L"\x628");
  ASSERT_THAT(PaintedColumns(), Not(IsEmpty()));
  ASSERT_THAT(spy.Runs(), SizeIs(1));
  EXPECT_GE(spy.Runs()[0].lefts[0], OnPicture(PositionOf(0)));
}

TEST_F(TextBoxScripts, SelectionAcrossDirectionsHasAGap) {
  SetText(L"ab " + arabic + L" cd");
  Focus();
  Select(1, 5); // "b ", and the two letters that stand furthest to the right
  HideCaret();
  Paint();
  std::vector<bool> expected(static_cast<std::size_t>(FieldWidth()), false);
  for (int x = PositionOf(1); x < PositionOf(2) + WidthOf(L" "); ++x)
    expected[static_cast<std::size_t>(x)] = true;
  for (int x = PositionOf(5); x < PositionOf(3); ++x)
    expected[static_cast<std::size_t>(x)] = true;
  EXPECT_EQ(Highlighted(), expected);
}

TEST_F(TextBoxScripts, SurrogatePairTakesTheRoomThatTheControlGivesIt) {
  Show(L"a\xD83D\xDE00z");
  std::vector<float> lefts;
  for (const tests::DrawnRun &run : spy.Runs())
    lefts.insert(lefts.end(), run.lefts.begin(), run.lefts.end());
  ASSERT_THAT(lefts, SizeIs(3)) << "one glyph for the pair";
  EXPECT_NEAR(lefts[1], OnPicture(PositionOf(1)), 0.01);
  EXPECT_NEAR(lefts[2], OnPicture(PositionOf(3)), 0.01);
}

TEST_F(TextBoxScripts, SelectedSurrogatePairIsHighlightedAsAWhole) {
  SetText(L"a\xD83D\xDE00");
  Focus();
  Select(3, 3);
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  ::GetGUIThreadInfo(::GetCurrentThreadId(), &info);
  Select(1, 3);
  HideCaret();
  Paint();
  const std::vector<bool> highlighted = Highlighted();
  const auto first = std::find(highlighted.begin(), highlighted.end(), true);
  EXPECT_EQ(first - highlighted.begin(), PositionOf(1));
  // The control may share an odd width out unevenly between the halves.
  EXPECT_NEAR(static_cast<LONG>(std::find(first, highlighted.end(), false) - highlighted.begin()), info.rcCaret.left,
              1);
}

TEST_F(TextBoxScripts, ComposedCharacterLeavesWhatFollowsInPlace) {
  Show(L"xe\x301lx");
  std::vector<float> lefts;
  for (const tests::DrawnRun &run : spy.Runs())
    lefts.insert(lefts.end(), run.lefts.begin(), run.lefts.end());
  ASSERT_GE(lefts.size(), 4U);
  EXPECT_NEAR(lefts[0], OnPicture(PositionOf(0)), 0.01);
  EXPECT_NEAR(lefts[1], OnPicture(PositionOf(1)), 0.01);
  EXPECT_NEAR(lefts[lefts.size() - 2], OnPicture(PositionOf(3)), 0.01);
  EXPECT_NEAR(lefts.back(), OnPicture(PositionOf(4)), 0.01);
}

TEST_F(TextBoxScripts, LineBreaksAndControlCharactersLeaveOneLine) {
  const std::vector<std::wstring> texts{L"one\r\ntwo", L"one\ntwo", L"a\tb\x01\x7F\x1Fz", L"a\x2028z\x2029z\x85z"};
  for (const std::wstring &text : texts) {
    Show(text);
    for (const tests::DrawnRun &run : spy.Runs())
      EXPECT_EQ(run.baseline, static_cast<float>(Bounds().top + FontMetrics().tmAscent));
    ASSERT_THAT(spy.Runs(), Not(IsEmpty()));
    EXPECT_EQ(spy.Runs().back().lefts.back(), OnPicture(PositionOf(Text().size() - 1)));
    EXPECT_TRUE(KeptWithinTheField());
  }
}

TEST_F(TextBoxScripts, ControlCharactersShowNothing) {
  Show(L"l\x01\x02l");
  const int from = PositionOf(0) + WidthOf(L"l");
  ASSERT_GT(PositionOf(3), from) << "the control gives them room";
  for (const int x : PaintedColumns())
    EXPECT_FALSE(x >= from && x < PositionOf(3)) << x;
}

TEST_F(TextBoxScripts, OddTextsArePaintedWithoutHarm) {
  std::vector<std::wstring> texts{L"\xD83D",
                                  L"\xDE00",
                                  L"a\xDE00\xD83Dz",
                                  L"\xD83D\xD83D\xDE00",
                                  std::wstring(150, L'w'),
                                  std::wstring(150, L' '),
                                  std::wstring(150, L'\x5D0'),
                                  std::wstring(150, L'\x301'),
                                  L"\x202E"
                                  L"abc\x202C"
                                  L"def",
                                  L"\x200F\x200E\x200D\xFEFF",
                                  L"\xFFFE\xFFFF",
                                  L"\x0E01\x0E33\x4E2D\x6587\xD55C",
                                  L"\x301\x302",
                                  std::wstring(30000, L'x')};
  std::wstring mixed; // halves of pairs, both directions, marks
  for (std::size_t i = 0; i < 120; ++i)
    mixed += static_cast<wchar_t>(i % 3 == 0 ? 0xD83D : i % 3 == 1 ? 0x5D0 + i % 20 : 0x301);
  texts.push_back(mixed);
  Focus();
  for (const std::wstring &text : texts) {
    SetText(text);
    const int length = static_cast<int>(Text().size());
    for (const auto &[start, end] : std::vector<std::pair<int, int>>{{0, 0}, {0, length}, {length / 2, length}}) {
      Select(start, end);
      EXPECT_NO_THROW(Paint());
      EXPECT_TRUE(KeptWithinTheField());
    }
  }
}

TEST_F(TextBoxScripts, TextWithNulEndsThere) {
  ::SendMessageW(box.handle, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"ab\0cd"));
  ::SendMessageW(box.handle, WM_CHAR, 0, 1);
  EXPECT_EQ(Text(), L"ab");
  Paint();
  EXPECT_EQ(box.textElement->Text.Get(), L"ab");
}

TEST_F(TextBoxScripts, BookInTheFieldIsReadInPartsOnly) {
  SetText(std::wstring(20000, L'i'));
  spy.Clear();
  box.received.clear();
  Paint();
  EXPECT_LT(box.CountOf(EM_POSFROMCHAR), 1000);
  ASSERT_THAT(spy.Runs(), Not(IsEmpty()));
  EXPECT_NEAR(spy.Runs()[0].lefts[0], OnPicture(PositionOf(0)), 0.01);
  ASSERT_THAT(PaintedColumns(), Not(IsEmpty()));
  EXPECT_GT(PaintedColumns().back(), FieldWidth() - ScaleX(5));
}

TEST_F(TextBoxScripts, SliceOfABookStandsWhereTheControlHasIt) {
  std::wstring text;
  for (int i = 100; i < 400; ++i)
    text += std::to_wstring(i) + L" ";
  SetText(text);
  Focus();
  Select(700, 700);
  spy.Clear();
  Paint();
  const std::wstring shown = box.textElement->Text.Get();
  const std::size_t start = text.find(shown);
  ASSERT_NE(start, std::wstring::npos);
  ASSERT_GT(start, 0U);
  ASSERT_THAT(spy.Runs(), SizeIs(1));
  EXPECT_NEAR(spy.Runs()[0].lefts[700 - start], OnPicture(PositionOf(700)), 0.01);
}

} // namespace lumenor
