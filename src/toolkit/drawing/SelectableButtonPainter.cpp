#include "toolkit/drawing/SelectableButtonPainter.h"

#include <cmath>
#include <iterator>
#include <utility>

#include "system/Desktop.h"
#include "system/HResultError.h"
#include "toolkit/drawing/CheckedButton.h"
#include "toolkit/TextElement.h"

using Microsoft::WRL::ComPtr;

namespace lumenor {
namespace {

constexpr float boxDistance = 2.0F;   // from the button's left edge
constexpr float labelDistance = 5.0F; // from the box
constexpr float cornerRadius = 2.0F;
constexpr float outlineWidth = 1.0F;
constexpr float brushOffset = 1.0F;
constexpr float tickPart = 0.9F; // of the box's side
constexpr D2D1_MATRIX_3X2_F identity{1.0F, 0.0F, 0.0F, 1.0F, 0.0F, 0.0F};
constexpr D2D1_COLOR_F tickColor{1.0F, 1.0F, 1.0F, 1.0F};

// One stop paints as a plain colour.
constexpr D2D1_GRADIENT_STOP normalStops[] = {{0.0F, {0.5F, 0.5F, 0.5F, 0.9F}}};
constexpr D2D1_GRADIENT_STOP pressedHighlightStops[] = {{0.0F, {1.0F, 1.0F, 1.0F, 0.1F}}};
constexpr D2D1_GRADIENT_STOP activeStops[] = {{0.0F, {1.0F, 1.0F, 1.0F, 0.9F}}};
constexpr D2D1_GRADIENT_STOP hoverHighlightStops[] = {{0.0F, {0.8F, 0.8F, 0.8F, 0.9F}}};

constexpr D2D1_POINT_2F tickPoints[] = {{10.884766F, 25.200684F}, {0.478027F, 33.606934F}, {12.418945F, 50.305664F},
                                        {24.004883F, 50.229492F}, {50.5625F, 7.01709F},    {37.986328F, 0.0F},
                                        {17.919922F, 36.49121F},  {10.884766F, 25.200684F}};

ComPtr<ID2D1PathGeometry> MakeTick(ID2D1RenderTarget *renderTarget) {
  ComPtr<ID2D1Factory> factory;
  renderTarget->GetFactory(&factory);
  ComPtr<ID2D1PathGeometry> tick;
  ThrowIfFailed(factory->CreatePathGeometry(&tick));
  ComPtr<ID2D1GeometrySink> sink;
  ThrowIfFailed(tick->Open(&sink));
  sink->BeginFigure(tickPoints[0], D2D1_FIGURE_BEGIN_FILLED);
  sink->AddLines(tickPoints + 1, static_cast<UINT32>(std::size(tickPoints) - 1));
  sink->EndFigure(D2D1_FIGURE_END_OPEN);
  ThrowIfFailed(sink->Close());
  return tick;
}

} // namespace

SelectableButtonPainter::SelectableButtonPainter(RenderTargetPtr renderTarget, const std::wstring &text,
                                                 const ButtonLayout &layout, const std::wstring &programPath)
    : SimpleButtonPainter(std::move(renderTarget), text, layout, programPath, true) {
  ThrowIfFailed(this->renderTarget->CreateSolidColorBrush(&tickColor, nullptr, &tickBrush));
  normalBrush = MakeBrush(normalStops);
  pressedHighlightBrush = MakeBrush(pressedHighlightStops);
  activeBrush = MakeBrush(activeStops);
  hoverHighlightBrush = MakeBrush(hoverHighlightStops);
  tickGeometry = MakeTick(this->renderTarget.Get());
}

void SelectableButtonPainter::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  if (!IsButtonVisible())
    return;
  const StateBrushes brushes = ChooseBrushes();
  const D2D1_RECT_F box = Box(*rect);
  if (IsLowColorDisplay()) {
    target->FillRectangle(rect, brushes.outline);
  } else {
    brushes.Stretch(rect->left + brushOffset, rect->top + brushOffset, 1.0F);
    PaintBox(target.Get(), box, brushes);
  }
  if (!text.empty()) {
    const D2D1_RECT_F label{box.right + labelDistance, rect->top, rect->right, rect->bottom};
    labelText->Paint(target, &label);
  }
}

D2D1_RECT_F SelectableButtonPainter::Box(const D2D1_RECT_F &rect) const {
  const float half = std::fabs(rect.bottom - rect.top) * 0.5F;
  return {rect.left + boxDistance, half + rect.top - layout.fontSize * 0.5F, layout.fontSize + rect.left + boxDistance,
          rect.bottom - half + layout.fontSize * 0.5F};
}

/// The outline comes last, so that it lies over the tick.
void SelectableButtonPainter::PaintBox(ID2D1RenderTarget *target, const D2D1_RECT_F &box, const StateBrushes &brushes) {
  const D2D1_ROUNDED_RECT shape{box, cornerRadius, cornerRadius};
  if (brushes.fill != nullptr)
    target->FillRoundedRectangle(&shape, brushes.fill);
  if (static_cast<CheckedButton *>(button)->Checked.Get() != 0)
    PaintTick(target, box);
  target->DrawRoundedRectangle(&shape, brushes.outline, outlineWidth, nullptr);
}

void SelectableButtonPainter::PaintTick(ID2D1RenderTarget *target, const D2D1_RECT_F &box) {
  D2D1_RECT_F bounds{};
  tickGeometry->GetBounds(&identity, &bounds);
  const float scaleX = std::fabs(box.right - box.left) / std::fabs(bounds.right - bounds.left) * tickPart;
  const float scaleY = std::fabs(box.bottom - box.top) / std::fabs(bounds.bottom - bounds.top) * tickPart;
  const D2D1_MATRIX_3X2_F intoBox{scaleX, 0.0F, 0.0F, scaleY, box.left, box.top};
  target->SetTransform(&intoBox);
  target->FillGeometry(tickGeometry.Get(), tickBrush.Get(), nullptr);
  target->SetTransform(&identity);
}

} // namespace lumenor
