#pragma once
// A panel that sets its children one after the other, each as long as it asks for. User-interface thread.

#include "toolkit/PanelWindow.h"

namespace lumenor {

class StackPanel : public PanelWindow<StackPanel> {
public:
  StackPanel();

  Property<lumenor::Orientation> Orientation{lumenor::Orientation::Horizontal};

  /// Places every child that isn't collapsed and publishes the length of the row as the desired size along it; the one
  /// across isn't written. The panel's own length is ignored, so children may overflow.
  void Layout() override;
};

} // namespace lumenor
