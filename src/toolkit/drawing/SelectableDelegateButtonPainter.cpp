#include "toolkit/drawing/SelectableDelegateButtonPainter.h"

#include <utility>

#include "toolkit/drawing/CheckedButton.h"

namespace lumenor {

SelectableDelegateButtonPainter::SelectableDelegateButtonPainter(std::shared_ptr<IButtonPainter> uncheckedPainter,
                                                                 std::shared_ptr<IButtonPainter> checkedPainter)
    : uncheckedPainter(std::move(uncheckedPainter)), checkedPainter(std::move(checkedPainter)) {}

void SelectableDelegateButtonPainter::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  if (!uncheckedPainter || !checkedPainter || !IsButtonVisible())
    return;
  const bool isChecked = static_cast<CheckedButton *>(button)->Checked.Get() != 0;
  (isChecked ? checkedPainter : uncheckedPainter)->Paint(target, rect);
}

void SelectableDelegateButtonPainter::Attach(Button *newButton) {
  IButtonPainter::Attach(newButton);
  if (uncheckedPainter)
    uncheckedPainter->Attach(newButton);
  if (checkedPainter)
    checkedPainter->Attach(newButton);
}

void SelectableDelegateButtonPainter::Detach() {
  IButtonPainter::Detach();
  if (uncheckedPainter)
    uncheckedPainter->Detach();
  if (checkedPainter)
    checkedPainter->Detach();
}

} // namespace lumenor
