#include "toolkit/EditTextElement.h"

#include <string>

#include <gmock/gmock.h>

#include "support/RenderSurface.h"
#include "system/HResultError.h"
#include "toolkit/FailingText.h"
#include "toolkit/GlyphSpy.h"

namespace lumenor {

namespace {

using ::testing::SizeIs;

constexpr long advance = 9;

/// What an edit control would tell of `text` with every character `advance` wide.
EditReading ReadingOf(const std::wstring &text) {
  EditReading reading;
  reading.text = text;
  for (std::size_t i = 0; i < text.size(); ++i) {
    reading.positions.push_back(static_cast<long>(i) * advance);
    reading.widths.push_back(advance);
  }
  reading.height = 12;
  reading.ascent = 10;
  return reading;
}

class ShownText : public ::testing::Test {
protected:
  ShownText() {
    element.BeginUpdate();
    element.EndUpdate();
  }

  EditTextElement::BrushPtr Brush() {
    EditTextElement::BrushPtr brush;
    const D2D1_COLOR_F white{1, 1, 1, 1};
    surface.Target()->CreateSolidColorBrush(&white, nullptr, &brush);
    return brush;
  }

  /// The left edges of the glyphs that are painted now, run by run.
  std::vector<std::vector<float>> Painted() {
    spy.Clear();
    const D2D1_RECT_F all{0, 0, 400, 40};
    surface.Draw([&] { element.Paint(surface.Target(), &all); });
    std::vector<std::vector<float>> lefts;
    for (const tests::DrawnRun &run : spy.Runs())
      lefts.push_back(run.lefts);
    return lefts;
  }

  tests::RenderSurface surface{400, 40};
  EditTextElement element{surface.Target(), Brush(), Brush()};
  tests::GlyphSpy spy{surface.Target().Get()};
};

using Lefts = std::vector<std::vector<float>>;

TEST_F(ShownText, StandsWhereTheReadingHasIt) {
  element.Show(ReadingOf(L"abc"));
  EXPECT_EQ((Lefts{{0, 9, 18}}), Painted());
}

TEST_F(ShownText, ThatCouldNotBeShapedIsShapedByTheNextShow) {
  for (const int failedCall : {1, 2}) {
    element.Show(ReadingOf(L"a long text"));
    {
      const tests::FailingText failing(failedCall);
      EXPECT_THROW(element.Show(ReadingOf(L"abc")), HResultError);
    }
    element.Show(ReadingOf(L"abc"));
    EXPECT_EQ((Lefts{{0, 9, 18}}), Painted()) << "call " << failedCall;
    EXPECT_EQ(L"abc", element.Text.Get());
  }
}

TEST_F(ShownText, StaysTheFormerOneAfterAShowThatFailed) {
  for (const int failedCall : {1, 2}) {
    element.Show(ReadingOf(L"abcd"));
    const tests::FailingText failing(failedCall);
    EXPECT_THROW(element.Show(ReadingOf(L"a longer text")), HResultError);
    EXPECT_EQ((Lefts{{0, 9, 18, 27}}), Painted()) << "call " << failedCall;
  }
}

TEST_F(ShownText, StaysInStepAfterAnUpdateThatFailed) {
  element.Show(ReadingOf(L"abcd"));
  for (int failedCall = 1; failedCall <= 3; ++failedCall) {
    const tests::FailingText failing(failedCall);
    EXPECT_THROW(element.Update(), HResultError);
    element.Show(ReadingOf(L"abc"));
    EXPECT_EQ((Lefts{{0, 9, 18}}), Painted()) << "call " << failedCall;
    element.Show(ReadingOf(L"abcd"));
  }
}

} // namespace

} // namespace lumenor
