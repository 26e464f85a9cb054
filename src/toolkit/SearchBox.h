#pragma once
// The frame around the search field: two rounded outlines that make it look sunk in. No window, no filling.
// User-interface thread.

#include "system/Windows.h"

#include <dwrite.h>

#include "toolkit/UIElement.h"

namespace lumenor {

class SearchBox : public UIElement {
public:
  /// Raises HResultError when a brush or the text format can't be made.
  explicit SearchBox(RenderTargetPtr renderTarget);

  void Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) override;

private:
  Microsoft::WRL::ComPtr<ID2D1LinearGradientBrush> frameBrush;
  Microsoft::WRL::ComPtr<ID2D1LinearGradientBrush> shadeBrush;
  Microsoft::WRL::ComPtr<ID2D1SolidColorBrush> promptBrush;
  Microsoft::WRL::ComPtr<IDWriteTextFormat> promptFormat;
};

} // namespace lumenor
