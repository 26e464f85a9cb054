#include "toolkit/drawing/SimpleButtonPainter.h"

#include <utility>

#include "system/Desktop.h"
#include "toolkit/drawing/Button.h"
#include "toolkit/drawing/ButtonParts.h"
#include "toolkit/drawing/ProgramAppearance.h"
#include "toolkit/TextElement.h"

namespace lumenor {
namespace {

constexpr float cornerRadius = 6.0F;
constexpr float outlineWidth = 1.0F;

// From top to bottom: position, then red, green, blue, alpha.
constexpr D2D1_GRADIENT_STOP normalStops[] = {
    {0.0F, {1.0F, 1.0F, 1.0F, 0.9F}}, {0.8F, {0.9F, 0.9F, 0.9F, 0.8F}}, {1.0F, {0.0F, 0.0F, 0.0F, 0.1F}}};
constexpr D2D1_GRADIENT_STOP pressedHighlightStops[] = {
    {0.0F, {1.0F, 1.0F, 1.0F, 0.1F}}, {0.2F, {0.5F, 0.5F, 0.5F, 0.8F}}, {1.0F, {0.0F, 0.0F, 0.0F, 0.9F}}};
constexpr D2D1_GRADIENT_STOP activeStops[] = {
    {0.0F, {0.2F, 0.2F, 0.2F, 0.9F}}, {0.8F, {0.4F, 0.4F, 0.4F, 0.85F}}, {1.0F, {0.5F, 0.5F, 0.5F, 0.8F}}};
constexpr D2D1_GRADIENT_STOP hoverHighlightStops[] = {{0.0F, {0.8F, 0.8F, 0.8F, 0.9F}},
                                                      {1.0F, {0.3F, 0.3F, 0.3F, 0.8F}}};

long Tenth(long length) { return static_cast<long>(static_cast<double>(length) * 0.1); }

} // namespace

SimpleButtonPainter::SimpleButtonPainter(RenderTargetPtr renderTarget, const std::wstring &text,
                                         const ButtonLayout &layout, const std::wstring &programPath, bool skipBrushes)
    : text(text), layout(layout), renderTarget(std::move(renderTarget)) {
  if (!skipBrushes) {
    normalBrush = MakeBrush(normalStops);
    pressedHighlightBrush = MakeBrush(pressedHighlightStops);
    activeBrush = MakeBrush(activeStops);
    hoverHighlightBrush = MakeBrush(hoverHighlightStops);
  }
  if (text.empty() && !programPath.empty())
    this->text = ProgramDisplayName(programPath);
}

void SimpleButtonPainter::Attach(Button *newButton) {
  IButtonPainter::Attach(newButton);
  const long dx = Tenth(newButton->Width.Get());
  const long dy = Tenth(newButton->Height.Get());
  labelText = std::make_shared<TextElement>(renderTarget);
  labelText->SetUp(text, {.size = layout.fontSize,
                          .weight = DWRITE_FONT_WEIGHT_MEDIUM,
                          .color = {1.0F, 1.0F, 1.0F, 0.95F},
                          .alignment = LabelAlignment(layout)});
  const RECT bounds = newButton->GetBounds();
  const RECT inner{bounds.left + dx, bounds.top + dy, bounds.right - dx, bounds.bottom - dy};
  labelText->SetBounds(&inner);
}

void SimpleButtonPainter::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  if (!IsButtonVisible())
    return;
  const StateBrushes brushes = ChooseBrushes();
  if (IsLowColorDisplay()) {
    target->FillRectangle(rect, brushes.outline);
  } else {
    const D2D1_ROUNDED_RECT shape{*rect, cornerRadius, cornerRadius};
    brushes.Stretch(rect->left, rect->top, static_cast<float>(button->Height.Get()));
    if (brushes.fill != nullptr)
      target->FillRoundedRectangle(&shape, brushes.fill);
    target->DrawRoundedRectangle(&shape, brushes.outline, outlineWidth, nullptr);
  }
  if (!text.empty())
    labelText->Paint(target, rect);
}

SimpleButtonPainter::StateBrushes SimpleButtonPainter::ChooseBrushes() const {
  if (button->IsPressed.Get() != 0)
    return {activeBrush.Get(), pressedHighlightBrush.Get()};
  if (button->IsMouseOver.Get() != 0)
    return {activeBrush.Get(), hoverHighlightBrush.Get()};
  return {normalBrush.Get(), nullptr};
}

void SimpleButtonPainter::StateBrushes::Stretch(float left, float top, float height) const {
  StretchUnitGradient(outline, left, top, height);
  if (fill != nullptr)
    StretchUnitGradient(fill, left, top, height);
}

} // namespace lumenor
