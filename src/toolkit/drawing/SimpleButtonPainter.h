#pragma once
// The look of the dialogs' buttons: a gradient-filled rounded rectangle with a label. User-interface thread only.

#include <cstddef>
#include <memory>
#include <string>

#include "toolkit/drawing/ButtonLayout.h"
#include "toolkit/drawing/IButtonPainter.h"
#include "toolkit/Gradient.h"

namespace lumenor {

class TextElement;

/// Draws an outline, a fill on hover and press, and a label.
class SimpleButtonPainter : public IButtonPainter {
public:
  /// An empty `text` becomes the display name of `programPath`, where that is given. `skipBrushes` leaves the brushes
  /// to a derived class. Raises HResultError.
  SimpleButtonPainter(RenderTargetPtr renderTarget, const std::wstring &text, const ButtonLayout &layout,
                      const std::wstring &programPath, bool skipBrushes = false);

  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;

  /// Builds the label for the button's size of now; a later change of the size doesn't reach it.
  void Attach(Button *newButton) override;

  std::wstring GetLabel() const override { return text; }

protected:
  using BrushPtr = Microsoft::WRL::ComPtr<ID2D1LinearGradientBrush>;

  /// The brushes of one state, borrowed; `fill` is null where nothing is filled.
  struct StateBrushes {
    ID2D1LinearGradientBrush *outline;
    ID2D1LinearGradientBrush *fill;

    /// Stretches them to `height` pixels from (`left`, `top`) down.
    void Stretch(float left, float top, float height) const;
  };

  StateBrushes ChooseBrushes() const;

  template <std::size_t count> BrushPtr MakeBrush(const D2D1_GRADIENT_STOP (&stops)[count]) const {
    return MakeUnitGradient(renderTarget.Get(), stops, count);
  }

  std::wstring text;
  ButtonLayout layout;
  RenderTargetPtr renderTarget;
  BrushPtr normalBrush;
  BrushPtr pressedHighlightBrush;
  BrushPtr activeBrush;
  BrushPtr hoverHighlightBrush;
  std::shared_ptr<TextElement> labelText;
};

} // namespace lumenor
