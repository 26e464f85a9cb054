#include "dock/flyouts/DataProviderFlyout.h"

#include "content/ActionDataProvider.h"

namespace lumenor {

DataProviderFlyout::DataProviderFlyout(const RECT &bounds, const std::wstring &title, IActionDataProvider &provider,
                                       UINT refreshMessage)
    : FlyoutWindow(bounds, title, {}), provider(&provider), refreshMessage(refreshMessage) {}

void DataProviderFlyout::InitializeComponent() {
  FlyoutWindow::InitializeComponent(); // makes no rows, since there are no elements yet
  CreateItems();
}

void DataProviderFlyout::Refresh() { CreateItems(); }

void DataProviderFlyout::CreateItems() {
  if (::IsWindow(handle)) {
    // The watch starts before the reading, so that a write after the reading is reported.
    provider->Watch(::GetParent(handle), refreshMessage);
    elements = provider->GetElements();
  }
  FlyoutWindow::CreateItems();
}

} // namespace lumenor
