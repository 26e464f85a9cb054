#pragma once
// The bar's two lists that other programs write or that come with the language: the For You list and the search
// providers, with their flyouts, the mark of new For You items, and the provider in use. A member of the dock.
// User-interface thread.

#include "content/ActionDataProvider.h"
#include "content/Element.h"
#include "dock/bar/Bar.h"
#include "dock/bar/ButtonMaker.h"
#include "dock/flyouts/DataProviderFlyout.h"
#include "system/Windows.h"
#include "toolkit/drawing/Window.h"
#include "toolkit/Event.h"
#include "toolkit/Property.h"

namespace lumenor {

class BarLists {
public:
  /// All three are borrowed: the dock's window, its tree with the For You button and the search field, and what makes
  /// the For You button's painter. Makes no window. Raises HResultError.
  BarLists(Window &window, const Bar &bar, const ButtonMaker &maker);

  /// Makes the windows of both flyouts. `visibilityListener` is borrowed and hears of their showing and hiding.
  void CreateFlyouts(EventListener<PropertyChangeEventArgs<lumenor::Visibility>> *visibilityListener);

  /// Asks the window to take the first search provider, if there is one.
  void SelectFirstProvider();

  /// Answer RefreshForYouMessage and RefreshSearchProviderMessage: the list's file may have changed.
  void RefreshForYou();
  void RefreshSearchProviders();

  void ToggleForYouFlyout();
  void ToggleSearchProviderFlyout();

  /// Gives the For You button the picture of new items, or takes it away.
  void SetForYouState(bool active);

  /// The search provider in use; empty when there is none.
  const Element &GetSelectedProvider() const { return selectedProvider; }
  void SetSelectedProvider(const Element &provider);

private:
  Window &window;
  const Bar &bar;
  const ButtonMaker &maker;
  ForYouProvider forYouProvider;
  DataProviderFlyout forYouFlyout;
  FILETIME forYouFileTime;
  SearchProvider searchProvider;
  SearchProviderFlyout searchProviderFlyout;
  Element selectedProvider;
};

} // namespace lumenor
