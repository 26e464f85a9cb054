#include "dock/flyouts/SearchProviderFlyout.h"

#include "dock/DockMessages.h"

namespace lumenor {

namespace {

bool IsSearchProvider(const Element &element) {
  return element.ActionType == urlAction || element.ActionType == helpSearchAction;
}

} // namespace

SearchProviderFlyout::SearchProviderFlyout(const RECT &bounds, const std::wstring &title, IActionDataProvider &provider)
    : DataProviderFlyout(bounds, title, provider, RefreshSearchProviderMessage) {
  header->DesiredHeight.Set(0);
}

void SearchProviderFlyout::OnItemChosen(const Element &element) {
  // Sent, not posted: the element lives only as long as this call.
  if (IsSearchProvider(element))
    SendAddress(::GetParent(handle), SetSearchProviderMessage, &element);
  else
    DataProviderFlyout::OnItemChosen(element);
}

} // namespace lumenor
