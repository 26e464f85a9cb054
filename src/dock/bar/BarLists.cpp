#include "dock/bar/BarLists.h"

#include "content/DocumentNames.h"
#include "content/Documents.h"
#include "dock/bar/BarButtons.h"
#include "dock/DockMessages.h"
#include "dock/Placement.h"
#include "dock/TextIds.h"
#include "system/LanguageResources.h"
#include "system/Paths.h"
#include "toolkit/TextBox.h"

namespace lumenor {

namespace {

/// Where a flyout of that height stands beside a bar at `window`.
using FlyoutRect = RECT (*)(const RECT &window, LONG desiredHeight);

void PlaceFlyout(DataProviderFlyout &flyout, const Window &window, FlyoutRect rect) {
  flyout.SetBounds(rect(window.GetBounds(), flyout.DesiredHeight.Get()));
}

/// An open flyout is fitted to its new rows and stays against the bar.
void RefreshFlyout(DataProviderFlyout &flyout, const Window &window, FlyoutRect rect) {
  flyout.Refresh();
  if (flyout.Visibility.Get() == lumenor::Visibility::Visible)
    PlaceFlyout(flyout, window, rect);
}

void ToggleFlyout(DataProviderFlyout &flyout, const Window &window, FlyoutRect rect) {
  PlaceFlyout(flyout, window, rect);
  flyout.ToggleVisibility();
}

} // namespace

// The flyouts have no rows yet whose height could be asked for.
BarLists::BarLists(Window &window, const Bar &bar, const ButtonMaker &maker)
    : window(window), bar(bar), maker(maker),
      forYouFlyout(GetForYouFlyoutRect(window.GetBounds(), 0), LoadForYouTitle(), forYouProvider, RefreshForYouMessage),
      forYouFileTime(LastWriteTime(DocumentPath(forYouListName))),
      searchProviderFlyout(GetSearchProviderFlyoutRect(window.GetBounds(), 0), LoadDockString(selectProviderTextId),
                           searchProvider) {}

void BarLists::CreateFlyouts(EventListener<PropertyChangeEventArgs<lumenor::Visibility>> *visibilityListener) {
  for (DataProviderFlyout *flyout : {&forYouFlyout, static_cast<DataProviderFlyout *>(&searchProviderFlyout)}) {
    flyout->Create(window.GetHandle());
    flyout->Visible.AddListener(visibilityListener);
  }
}

void BarLists::SelectFirstProvider() {
  const ElementList providers = searchProvider.GetElements();
  if (!providers.empty())
    SendAddress(window.GetHandle(), SetSearchProviderMessage, providers.data());
}

void BarLists::SetSelectedProvider(const Element &provider) {
  selectedProvider = provider;
  bar.textBox->WatermarkText.Set(provider.Head);
}

/// Every write in the folder comes here, so only a newer file of the list itself sets the mark.
void BarLists::RefreshForYou() {
  RefreshFlyout(forYouFlyout, window, GetForYouFlyoutRect);
  const FILETIME fileTime = LastWriteTime(DocumentPath(forYouListName));
  if (::CompareFileTime(&forYouFileTime, &fileTime) >= 0)
    return;
  SetForYouState(true);
  forYouFileTime = fileTime;
}

void BarLists::RefreshSearchProviders() { RefreshFlyout(searchProviderFlyout, window, GetSearchProviderFlyoutRect); }

/// Opening or closing the list clears the mark of new items.
void BarLists::ToggleForYouFlyout() {
  ToggleFlyout(forYouFlyout, window, GetForYouFlyoutRect);
  SetForYouState(false);
}

void BarLists::ToggleSearchProviderFlyout() { ToggleFlyout(searchProviderFlyout, window, GetSearchProviderFlyoutRect); }

void BarLists::SetForYouState(bool active) {
  bar.forYouButton->SetPainter(maker.MakePainter(MakeForYouElement(active), MakeForYouLayout()));
}

} // namespace lumenor
