#pragma once
// A flyout whose rows come from a provider and are made anew when the provider's data change, whether the flyout
// is open or not, and the one of them that offers the search providers. Owned by the dock. User-interface thread.

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
  void Refresh() { CreateItems(); }

  void CreateItems() override;
  void InitializeComponent() override;

private:
  IActionDataProvider *provider;
  UINT refreshMessage;
};

/// Has no title, and choosing a row makes it the provider in use.
class SearchProviderFlyout : public DataProviderFlyout {
public:
  /// `bounds` is in screen coordinates; `title` isn't shown. `provider` is borrowed and outlives the flyout.
  SearchProviderFlyout(const RECT &bounds, const std::wstring &title, IActionDataProvider &provider);

  /// Sends a search provider that was chosen to the owner; runs any other element.
  void OnItemChosen(const Element &element) override;
};

} // namespace lumenor
