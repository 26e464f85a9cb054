#pragma once
// A two-state button that is a check box to screen readers too: the platform's proxies are told its role, and ask its
// window whether it is checked. User-interface thread.

#include "toolkit/drawing/CheckedButton.h"

namespace lumenor {

class CheckBox : public CheckedButton {
public:
  /// `painter` must not be null.
  explicit CheckBox(std::shared_ptr<IButtonPainter> painter);

  /// Answers BM_GETCHECK and BM_GETSTATE as the platform's check boxes do; the platform takes the window for a button
  /// that is never checked.
  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId = 0) override;

protected:
  void OnCreate() override;
  void OnDestroy() override;

private:
  void OnCheckedChanged();
};

} // namespace lumenor
