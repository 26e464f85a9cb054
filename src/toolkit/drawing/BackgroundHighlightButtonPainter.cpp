#include "toolkit/drawing/BackgroundHighlightButtonPainter.h"

#include <utility>

#include "toolkit/ColorRectangle.h"
#include "toolkit/drawing/Button.h"
#include "toolkit/drawing/ButtonParts.h"
#include "toolkit/drawing/WICHelper.h"
#include "toolkit/TextElement.h"

namespace lumenor {

BackgroundHighlightButtonPainter::BackgroundHighlightButtonPainter(RenderTargetPtr renderTarget,
                                                                   const std::wstring &text,
                                                                   const std::wstring &imagePath,
                                                                   const ButtonLayout &layout,
                                                                   const Color &highlightColor)
    : text(text), layout(layout), renderTarget(std::move(renderTarget)), highlightColor(highlightColor) {
  if (!imagePath.empty())
    image = LoadBitmapFromFile(this->renderTarget.Get(), imagePath, false);
}

void BackgroundHighlightButtonPainter::Attach(Button *newButton) {
  IButtonPainter::Attach(newButton);
  normalText = MakeButtonLabel(renderTarget, text, layout, *newButton);
  hoverText = MakeButtonLabel(renderTarget, text, layout, *newButton);
  highlight = std::make_shared<ColorRectangle>(newButton->GetBounds(), renderTarget, highlightColor);
}

void BackgroundHighlightButtonPainter::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  if (!IsButtonVisible())
    return;
  const bool isMouseOver = button->IsMouseOver.Get() != 0;
  if (isMouseOver || button->IsPressed.Get() != 0)
    highlight->Paint(target, rect);
  if (image) {
    const D2D1_RECT_F imageRectangle = PictureRectangle(layout, *rect);
    target->DrawBitmap(image.Get(), &imageRectangle, 1.0F, D2D1_BITMAP_INTERPOLATION_MODE_LINEAR, nullptr);
  }
  if (!text.empty()) {
    const D2D1_RECT_F textRectangle = LabelRectangle(layout, *rect);
    (isMouseOver ? hoverText : normalText)->Paint(target, &textRectangle);
  }
}

} // namespace lumenor
