#pragma once
// The flyout that offers the search providers: no title, and choosing a row makes it the provider in use. Owned by the
// dock. User-interface thread.

#include <string>

#include "dock/flyouts/DataProviderFlyout.h"

namespace lumenor {

class SearchProviderFlyout : public DataProviderFlyout {
public:
  /// `bounds` is in screen coordinates; `title` is never seen. `provider` is borrowed and outlives the flyout.
  SearchProviderFlyout(const RECT &bounds, const std::wstring &title, IActionDataProvider &provider);

  /// Tells the owner of a search provider that was chosen; any other element is run.
  void OnItemChosen(const Element &element) override;
};

} // namespace lumenor
