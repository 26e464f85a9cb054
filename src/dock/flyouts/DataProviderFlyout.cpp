#include "dock/flyouts/DataProviderFlyout.h"

#include "content/ActionDataProvider.h"
#include "dock/DockMessages.h"

namespace lumenor {

namespace {

bool IsSearchProvider(const Element &element) {
  return element.ActionType == urlAction || element.ActionType == helpSearchAction;
}

} // namespace

DataProviderFlyout::DataProviderFlyout(const RECT &bounds, const std::wstring &title, IActionDataProvider &provider,
                                       UINT refreshMessage)
    : FlyoutWindow(bounds, title, {}), provider(&provider), refreshMessage(refreshMessage) {}

void DataProviderFlyout::InitializeComponent() {
  FlyoutWindow::InitializeComponent(); // makes no rows, since there are no elements yet
  CreateItems();
}

void DataProviderFlyout::CreateItems() {
  if (::IsWindow(handle)) {
    // The watch starts before the reading, so that a write after the reading is reported.
    provider->Watch(::GetParent(handle), refreshMessage);
    elements = provider->GetElements();
  }
  FlyoutWindow::CreateItems();
}

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
