#include "toolkit/drawing/CheckedButton.h"

#include <utility>

#include "toolkit/drawing/IButtonPainter.h"

namespace lumenor {

namespace {

constexpr LONG checkBoxStyle = BS_CHECKBOX;

} // namespace

CheckedButton::CheckedButton(std::shared_ptr<IButtonPainter> painter) : Button(std::move(painter)) {
  subscriptions.Add(this, &CheckedButton::OnClick, Click);
}

BOOL CheckedButton::ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                                         DWORD mapId) {
  return mapId == 0 ? Button::ProcessWindowMessage(window, message, wParam, lParam, result) : FALSE;
}

// The owner-draw style contains the bit already; it is asked for to state what the button is.
void CheckedButton::OnCreate() {
  const LONG style = ::GetWindowLongW(handle, GWL_STYLE);
  if ((style & checkBoxStyle) == 0)
    ::SetWindowLongW(handle, GWL_STYLE, style | checkBoxStyle);
  painter->Attach(this);
}

void CheckedButton::OnClick() { Checked.Set(Checked.Get() == 0 ? 1 : 0); }

} // namespace lumenor
