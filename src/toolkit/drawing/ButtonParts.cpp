#include "toolkit/drawing/ButtonParts.h"

#include "toolkit/TextElement.h"

namespace lumenor {

std::shared_ptr<TextElement> MakeButtonLabel(const RenderTargetPtr &renderTarget, const std::wstring &text,
                                             const ButtonLayout &layout, const UIElement &button) {
  const auto label = std::make_shared<TextElement>(renderTarget);
  label->BeginUpdate();
  label->Text.Set(text);
  label->Left.Set(layout.textLeft);
  label->Top.Set(layout.textTop);
  label->Width.Set(button.Width.Get() - layout.textRight - layout.textLeft);
  label->Height.Set(button.Height.Get() - layout.textBottom - layout.textTop);
  label->FontSize.Set(layout.fontSize);
  label->FontWeight.Set(DWRITE_FONT_WEIGHT_NORMAL);
  label->Color.Set({1.0F, 1.0F, 1.0F, 1.0F});
  label->TextAlignment.Set(LabelAlignment(layout));
  label->EndUpdate();
  return label;
}

D2D1_RECT_F PictureRectangle(const ButtonLayout &layout, const D2D1_RECT_F &rect) {
  return {rect.left + static_cast<float>(layout.imageLeft), rect.top + static_cast<float>(layout.imageTop),
          rect.right - static_cast<float>(layout.imageRight), rect.bottom - static_cast<float>(layout.imageBottom)};
}

D2D1_RECT_F LabelRectangle(const ButtonLayout &layout, const D2D1_RECT_F &rect) {
  return {rect.left + static_cast<float>(layout.textLeft), rect.top + static_cast<float>(layout.textTop),
          rect.right - static_cast<float>(layout.textRight), rect.bottom - static_cast<float>(layout.textBottom)};
}

DWRITE_TEXT_ALIGNMENT LabelAlignment(const ButtonLayout &layout) {
  return layout.textFlag != 0 ? DWRITE_TEXT_ALIGNMENT_CENTER : DWRITE_TEXT_ALIGNMENT_LEADING;
}

} // namespace lumenor
