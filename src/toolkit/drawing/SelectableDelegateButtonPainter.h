#pragma once
// The look of a two-state button: one of two painters, by the button's Checked. User-interface thread only.

#include <memory>

#include "toolkit/drawing/IButtonPainter.h"

namespace lumenor {

/// Passes painting on to one of two painters. Its button must be a CheckedButton.
class SelectableDelegateButtonPainter : public IButtonPainter {
public:
  SelectableDelegateButtonPainter(std::shared_ptr<IButtonPainter> uncheckedPainter,
                                  std::shared_ptr<IButtonPainter> checkedPainter);

  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override;

  /// Attaches both painters, the unchecked one first.
  void Attach(Button *newButton) override;
  void Detach() override;

private:
  std::shared_ptr<IButtonPainter> uncheckedPainter;
  std::shared_ptr<IButtonPainter> checkedPainter;
};

} // namespace lumenor
