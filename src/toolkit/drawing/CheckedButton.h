#pragma once
// A button with two states: every click flips Checked. User-interface thread.

#include <memory>

#include "system/Windows.h"
#include "toolkit/drawing/Button.h"
#include "toolkit/Event.h"
#include "toolkit/Property.h"

namespace lumenor {

class CheckedButton : public Button {
public:
  /// `painter` must not be null.
  explicit CheckedButton(std::shared_ptr<IButtonPainter> painter);

  /// 0 or 1. The button's own listener is the first of Click: one that is added later reads the new value.
  Property<int> Checked{0};

protected:
  void OnCreate() override;

private:
  void OnClick() { Checked.Set(Checked.Get() == 0 ? 1 : 0); }
};

} // namespace lumenor
