#pragma once
// The look of a flyout's entries: a flat picture and a label, on a colour that appears on hover and press.
// User-interface thread only.

#include <memory>
#include <string>

#include "toolkit/drawing/ButtonLayout.h"
#include "toolkit/drawing/IButtonPainter.h"
#include "toolkit/Geometry.h"

namespace lumenor {

class ColorRectangle;
class TextElement;

/// Draws a picture and a label over a highlight.
class BackgroundHighlightButtonPainter : public IButtonPainter {
public:
  /// An empty `imagePath` means no picture. Raises HResultError when the file isn't a picture.
  BackgroundHighlightButtonPainter(RenderTargetPtr renderTarget, const std::wstring &text,
                                   const std::wstring &imagePath, const ButtonLayout &layout,
                                   const Color &highlightColor);

  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;

  /// Builds label and highlight for the button's size of now; a later change of the size doesn't reach them.
  void Attach(Button *newButton) override;

  std::wstring GetLabel() const override { return text; }

private:
  std::wstring text;
  ButtonLayout layout;
  RenderTargetPtr renderTarget;
  Microsoft::WRL::ComPtr<ID2D1Bitmap> image;
  Color highlightColor;
  std::shared_ptr<ColorRectangle> highlight;
  std::shared_ptr<TextElement> normalText;
  std::shared_ptr<TextElement> hoverText;
};

} // namespace lumenor
