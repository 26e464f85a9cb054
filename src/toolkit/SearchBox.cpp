#include "toolkit/SearchBox.h"

#include "system/HResultError.h"
#include "toolkit/Gradient.h"
#include "toolkit/StatusFont.h"

namespace lumenor {

namespace {

constexpr float cornerRadius = 6.0F;
constexpr float frameWidth = 0.6F;
constexpr float shadeWidth = 2.0F;
constexpr float promptSize = 10.0F;
constexpr D2D1_COLOR_F white{1, 1, 1, 1};

constexpr D2D1_GRADIENT_STOP frameStops[] = {{0.0F, {0.117F, 0.117F, 0.117F, 1}}, {1.0F, {0.361F, 0.361F, 0.361F, 1}}};
constexpr D2D1_GRADIENT_STOP shadeStops[] = {{0.031F, {0, 0, 0, 1}}, {1.0F, {0, 0, 0, 0.149F}}};

/// The gradient runs from the frame's top to its bottom.
void DrawFrame(ID2D1RenderTarget *renderTarget, const D2D1_RECT_F &rect, ID2D1Brush *brush, float strokeWidth) {
  StretchUnitGradient(brush, rect.left, rect.top, rect.bottom - rect.top);
  const D2D1_ROUNDED_RECT frame{rect, cornerRadius, cornerRadius};
  renderTarget->DrawRoundedRectangle(&frame, brush, strokeWidth);
}

} // namespace

SearchBox::SearchBox(RenderTargetPtr renderTarget)
    : frameBrush(MakeUnitGradient(renderTarget.Get(), frameStops, 2, 0.0F)),
      shadeBrush(MakeUnitGradient(renderTarget.Get(), shadeStops, 2, 0.0F)) {
  ThrowIfFailed(renderTarget->CreateSolidColorBrush(&white, nullptr, &promptBrush));
  promptFormat = CreateStatusTextFormat(CreateTextFactory().Get(), DWRITE_FONT_WEIGHT_NORMAL, DWRITE_FONT_STYLE_ITALIC,
                                        DWRITE_FONT_STRETCH_NORMAL, promptSize);
}

void SearchBox::Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) {
  DrawFrame(renderTarget.Get(), *rect, frameBrush.Get(), frameWidth);
  D2D1_RECT_F lower = *rect;
  lower.top += frameWidth;
  lower.bottom += frameWidth;
  DrawFrame(renderTarget.Get(), lower, shadeBrush.Get(), shadeWidth);
}

} // namespace lumenor
