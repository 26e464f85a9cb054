#include "dock/bar/BarButtons.h"

#include <gtest/gtest.h>

#include "dock/bar/BarFixture.h"
#include "toolkit/Scale.h"

namespace lumenor {

namespace {

/// All of a layout, in the order of its fields.
std::vector<double> Fields(const ButtonLayout &layout) {
  return {static_cast<double>(layout.fontSize),    static_cast<double>(layout.textFlag),
          static_cast<double>(layout.textStyle),   static_cast<double>(layout.imageLeft),
          static_cast<double>(layout.imageRight),  static_cast<double>(layout.imageTop),
          static_cast<double>(layout.imageBottom), static_cast<double>(layout.textLeft),
          static_cast<double>(layout.textRight),   static_cast<double>(layout.textTop),
          static_cast<double>(layout.textBottom)};
}

using Numbers = std::vector<double>;

/// The first at 96 dots per inch, the other at 144.
const Numbers &ByDensity(const Numbers &normal, const Numbers &dense) { return ScaleX(96) == 96 ? normal : dense; }

TEST(BarButtonLayout, OfFixedAndUserButtons) {
  EXPECT_EQ(ByDensity({10, 1, 15, 22, 23, 16, 29, 0, 0, 64, 29}, {15, 1, 15, 33, 35, 24, 44, 0, 0, 96, 44}),
            Fields(MakeBarButtonLayout()));
}

TEST(BarButtonLayout, OfTheForYouButton) {
  EXPECT_EQ(ByDensity({10, 1, 15, 2, 2, 16, 16, 0, 0, 64, 29}, {15, 1, 15, 3, 3, 24, 24, 0, 0, 96, 44}),
            Fields(MakeForYouLayout()));
}

TEST(BarButtonLayout, OfTheSearchButtons) {
  EXPECT_EQ(ByDensity({10, 1, 0, 3, 3, 3, 3, 0, 0, 0, 0}, {15, 1, 0, 5, 5, 5, 5, 0, 0, 0, 0}),
            Fields(MakeSearchButtonLayout()));
}

TEST(BarButtonLayout, OfTheSystemButtons) {
  EXPECT_EQ(ByDensity({13, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, {13, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}),
            Fields(MakeSystemButtonLayout()));
}

class CommandElements : public BarFixture {
protected:
  static Element Expected(const wchar_t *command, const wchar_t *image, const wchar_t *toolTip) {
    Element element;
    element.ActionParams = command;
    element.Image = image;
    element.ToolTip = toolTip;
    return element;
  }
};

TEST_F(CommandElements, TakeTheirToolTipsFromTheLanguageResources) {
  WriteTexts({{L"SearchBox.SelectProviderToolTip", L"Where to search"},
              {L"SearchBox.ButtonToolTip", L"Search now"},
              {L"Button.Tooltip.Reset", L"As it was"},
              {L"Button.Tooltip.Close", L"Good bye"}},
             L"For you, \u00e4");
  EXPECT_EQ(Expected(L"foryou", L"..\\resources\\foryou_idle.png", L"For you, \u00e4"), MakeForYouElement(false));
  EXPECT_EQ(Expected(L"foryou", L"..\\resources\\foryou_active.png", L"For you, \u00e4"), MakeForYouElement(true));
  EXPECT_EQ(Expected(L"searchProvider", L"..\\resources\\arrow.png", L"Where to search"), MakeSearchProviderElement());
  EXPECT_EQ(Expected(L"search", L"..\\resources\\search.png", L"Search now"), MakeSearchElement());
  EXPECT_EQ(Expected(L"resetConfirmation", L"..\\resources\\reset-icon.png", L"As it was"), MakeResetElement());
  EXPECT_EQ(Expected(L"close", L"..\\resources\\close-icon.png", L"Good bye"), MakeCloseElement());
}

TEST_F(CommandElements, HaveEmptyToolTipsWithoutLanguageResources) {
  EXPECT_EQ(Expected(L"foryou", L"..\\resources\\foryou_idle.png", L""), MakeForYouElement(false));
  EXPECT_EQ(Expected(L"close", L"..\\resources\\close-icon.png", L""), MakeCloseElement());
}

} // namespace

} // namespace lumenor
