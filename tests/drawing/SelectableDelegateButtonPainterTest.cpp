#include "toolkit/drawing/SelectableDelegateButtonPainter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/ButtonStage.h"
#include "drawing/PaintSurface.h"
#include "drawing/Pictures.h"
#include "toolkit/drawing/CheckedButton.h"

namespace lumenor {
namespace {

using namespace tests;
using ::testing::ElementsAre;

constexpr D2D1_RECT_F buttonRect{2, 1, 9, 7};
const RECT buttonBounds{0, 0, 10, 10};

/// Fills its rectangle with one colour, and says when it was attached.
class FillingPainter : public IButtonPainter {
public:
  FillingPainter(const D2D1_COLOR_F &color, std::vector<FillingPainter *> &attached)
      : color(color), attached(attached) {}

  void Attach(Button *newButton) override {
    IButtonPainter::Attach(newButton);
    attached.push_back(this);
  }

  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override {
    Microsoft::WRL::ComPtr<ID2D1SolidColorBrush> brush;
    target->CreateSolidColorBrush(&color, nullptr, &brush);
    target->FillRectangle(rect, brush.Get());
  }

private:
  D2D1_COLOR_F color;
  std::vector<FillingPainter *> &attached;
};

class SelectableDelegateButtonPainterTest : public ::testing::Test {
protected:
  Picture Paint() {
    return surface.Draw([&] { painter->Paint(surface.Target(), &buttonRect); });
  }

  /// What the window sees when the user has clicked.
  void Click() { ::SendMessageW(button.handle, WM_COMMAND, 0, reinterpret_cast<LPARAM>(button.handle)); }

  std::vector<FillingPainter *> attached;
  std::shared_ptr<FillingPainter> red = std::make_shared<FillingPainter>(D2D1_COLOR_F{1, 0, 0, 1}, attached);
  std::shared_ptr<FillingPainter> blue = std::make_shared<FillingPainter>(D2D1_COLOR_F{0, 0, 1, 1}, attached);
  std::shared_ptr<SelectableDelegateButtonPainter> painter =
      std::make_shared<SelectableDelegateButtonPainter>(red, blue);
  CheckedButton button{painter};
  PaintSurface surface{12, 10};
};

TEST_F(SelectableDelegateButtonPainterTest, ShowsTheOtherPictureOnTheVeryRepaintAfterAClick) {
  const ButtonStage stage(button, buttonBounds);
  const RECT rect{2, 1, 9, 7};
  ExpectRect(rect, BoundsOf(Paint(), 0xFFFF0000));
  Click();
  ExpectRect(rect, BoundsOf(Paint(), 0xFF0000FF));
  Click();
  ExpectRect(rect, BoundsOf(Paint(), 0xFFFF0000));
}

TEST_F(SelectableDelegateButtonPainterTest, AttachesTheUncheckedPainterFirst) {
  painter->Attach(&button);
  EXPECT_THAT(attached, ElementsAre(red.get(), blue.get()));
  EXPECT_EQ(&button, painter->GetButton());
  EXPECT_EQ(&button, red->GetButton());
  EXPECT_EQ(&button, blue->GetButton());
}

TEST_F(SelectableDelegateButtonPainterTest, DetachesBothPainters) {
  painter->Attach(&button);
  painter->Detach();
  EXPECT_EQ(nullptr, painter->GetButton());
  EXPECT_EQ(nullptr, red->GetButton());
  EXPECT_EQ(nullptr, blue->GetButton());
}

TEST_F(SelectableDelegateButtonPainterTest, AnInvisibleButtonIsNotDrawn) {
  const ButtonStage stage(button, buttonBounds);
  stage.Hide();
  ExpectRect({}, InkOf(Paint()));
}

TEST_F(SelectableDelegateButtonPainterTest, DrawsNothingBeforeItIsAttached) { ExpectRect({}, InkOf(Paint())); }

TEST_F(SelectableDelegateButtonPainterTest, DrawsNothingUnlessItHasBothPainters) {
  for (const auto &[unchecked, checked] :
       {std::pair{red, std::shared_ptr<FillingPainter>()}, std::pair{std::shared_ptr<FillingPainter>(), red}}) {
    painter = std::make_shared<SelectableDelegateButtonPainter>(unchecked, checked);
    CheckedButton other(painter);
    const ButtonStage stage(other, buttonBounds);
    for (const int isChecked : {0, 1}) {
      other.Checked.Set(isChecked);
      ExpectRect({}, InkOf(Paint()));
    }
  }
}

} // namespace
} // namespace lumenor
