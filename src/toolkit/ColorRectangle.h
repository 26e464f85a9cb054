#pragma once
// An element that fills its rectangle with one colour. User-interface thread.

#include "toolkit/UIElement.h"

namespace lumenor {

class ColorRectangle : public UIElement {
public:
  /// `bounds` is kept as a record of what the rectangle was made for; layout and painting don't read it. Raises
  /// HResultError when the brush can't be made.
  ColorRectangle(const RECT &bounds, RenderTargetPtr renderTarget, const Color &color);

  void Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) override;

  /// The rectangle given at construction.
  const RECT &GetCreationBounds() const { return bounds; }

private:
  RECT bounds;
  Microsoft::WRL::ComPtr<ID2D1SolidColorBrush> brush;
};

} // namespace lumenor
