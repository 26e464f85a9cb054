#pragma once
// The look of a check box: a small box with a tick, and a label. User-interface thread only.

#include "toolkit/drawing/SimpleButtonPainter.h"

namespace lumenor {

/// Draws a box as high as the label's font, ticked while the button, a CheckedButton, is checked.
class SelectableButtonPainter : public SimpleButtonPainter {
public:
  /// As SimpleButtonPainter. Raises HResultError.
  SelectableButtonPainter(RenderTargetPtr renderTarget, const std::wstring &text, const ButtonLayout &layout,
                          const std::wstring &programPath);

  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;

private:
  D2D1_RECT_F Box(const D2D1_RECT_F &rect) const;
  void PaintBox(ID2D1RenderTarget *target, const D2D1_RECT_F &box, const StateBrushes &brushes);
  void PaintTick(ID2D1RenderTarget *target, const D2D1_RECT_F &box);

  Microsoft::WRL::ComPtr<ID2D1SolidColorBrush> tickBrush;
  Microsoft::WRL::ComPtr<ID2D1PathGeometry> tickGeometry;
};

} // namespace lumenor
