#pragma once
// The painter of the bar's buttons: the glowing picture and label of an element, and for an element with a flyout an
// arrow that shows whether it is open. Owned by its button. User-interface thread.

#include <memory>

#include "content/Element.h"
#include "toolkit/drawing/ButtonLayout.h"
#include "toolkit/drawing/GlowButtonPainter.h"
#include "toolkit/drawing/ImageElement.h"

namespace lumenor {

class DockGlowButtonPainter : public GlowButtonPainter {
public:
  /// Raises CommandNotFoundException when `element` has neither a picture nor a program that exists, HResultError when
  /// a picture can't be made.
  DockGlowButtonPainter(RenderTargetPtr renderTarget, unsigned insetImage, const Element &element,
                        const ButtonLayout &layout);

  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;
  void Layout() override;

private:
  std::shared_ptr<ImageElement> arrowDown;
  std::shared_ptr<ImageElement> arrowUp;
};

} // namespace lumenor
