#pragma once
// The flyout that offers the search providers: no title, and choosing a row makes it the provider in use. Owned by the
// dock. User-interface thread.

#include <string>

#include "dock/flyouts/DataProviderFlyout.h"

namespace lumenor {

class SearchProviderFlyout : public DataProviderFlyout {
public:
  /// `bounds` is in screen coordinates; `title` isn't shown. `provider` is borrowed and outlives the flyout.
  SearchProviderFlyout(const RECT &bounds, const std::wstring &title, IActionDataProvider &provider);

  /// Sends a search provider that was chosen to the owner; runs any other element.
  void OnItemChosen(const Element &element) override;
};

} // namespace lumenor
