#include "toolkit/drawing/ButtonParts.h"

#include <algorithm>
#include <cstdlib>

#include "toolkit/TextElement.h"

namespace lumenor {

std::shared_ptr<TextElement> MakeButtonLabel(const RenderTargetPtr &renderTarget, const std::wstring &text,
                                             const ButtonLayout &layout, const UIElement &button) {
  const long room = button.Height.Get() - layout.textBottom - layout.textTop;
  const auto label = std::make_shared<TextElement>(renderTarget);
  label->SetUp(text, {.size = layout.fontSize, .alignment = LabelAlignment(layout)});
  label->Left.Set(layout.textLeft);
  // The margins may cross, as those of the bar's buttons do: the label then takes the band between the two lines. What
  // a clip whose edges are swapped shows is undefined.
  label->Top.Set(layout.textTop + std::min(room, 0L));
  label->Width.Set(button.Width.Get() - layout.textRight - layout.textLeft);
  label->Height.Set(std::abs(room));
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
