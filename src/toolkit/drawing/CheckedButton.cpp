#include "toolkit/drawing/CheckedButton.h"

#include <utility>

#include "toolkit/drawing/IButtonPainter.h"

namespace lumenor {

CheckedButton::CheckedButton(std::shared_ptr<IButtonPainter> painter) : Button(std::move(painter)) {
  subscriptions.Add(this, &CheckedButton::OnClick, Click);
}

// The owner-draw style contains the bit already; it is asked for to state what the button is.
void CheckedButton::OnCreate() {
  const LONG style = ::GetWindowLongW(handle, GWL_STYLE);
  if ((style & BS_CHECKBOX) == 0)
    ::SetWindowLongW(handle, GWL_STYLE, style | BS_CHECKBOX);
  painter->Attach(this);
}

} // namespace lumenor
