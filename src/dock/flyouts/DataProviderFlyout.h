#pragma once
// A flyout whose rows come from a provider and are made anew when the provider's data change, whether the flyout
// is open or not. Owned by the dock. User-interface thread.

#include <string>

#include "dock/flyouts/FlyoutWindow.h"
#include "system/Windows.h"

namespace lumenor {

class IActionDataProvider;

class DataProviderFlyout : public FlyoutWindow {
public:
  /// `bounds` is in screen coordinates. `provider` is borrowed and outlives the flyout; its watch sends
  /// `refreshMessage` to the flyout's owner, which answers by Refresh.
  DataProviderFlyout(const RECT &bounds, const std::wstring &title, IActionDataProvider &provider, UINT refreshMessage);

  /// Makes the rows anew from the provider's data.
  void Refresh();

  void CreateItems() override;
  void InitializeComponent() override;

private:
  IActionDataProvider *provider;
  UINT refreshMessage;
};

} // namespace lumenor
