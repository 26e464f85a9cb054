#pragma once
// What the flyouts of providers stand on in their tests: a provider whose list the test sets, an owner window, and
// flyouts that take their window along.

#include <functional>
#include <string>
#include <vector>

#include "content/ActionDataProvider.h"
#include "dock/flyouts/DataProviderFlyout.h"
#include "support/AnsweringWindow.h"
#include "toolkit/TextElement.h"

namespace lumenor {

class FakeProvider : public IActionDataProvider {
public:
  void Watch(HWND window, UINT message) override {
    calls.push_back("Watch");
    watcher = window;
    watchedBy = message;
  }
  void Refresh() override { calls.push_back("Refresh"); }
  ElementList GetElements() override {
    calls.push_back("GetElements");
    if (onGetElements)
      onGetElements();
    return list;
  }

  ElementList list;
  std::vector<std::string> calls;
  HWND watcher = nullptr;
  UINT watchedBy = 0;
  std::function<void()> onGetElements;
};

/// A flyout of either kind that notes how often its rows are made and what of a choice comes down to the base.
template <typename Flyout> class ProviderFlyout : public Flyout {
public:
  using Flyout::Flyout;
  ~ProviderFlyout() override {
    if (::IsWindow(this->handle))
      ::DestroyWindow(this->handle);
  }

  void CreateItems() override {
    ++creations;
    Flyout::CreateItems();
  }

  void OnItemChosen(const Element &element) override {
    shownWhenChosen.push_back(::IsWindowVisible(this->handle));
    if (onChosen)
      onChosen(element);
    Flyout::OnItemChosen(element);
  }

  const RECT &Bounds() const { return this->bounds; }
  const TextElement &Header() const { return *this->header; }
  const ElementList &Elements() const { return this->elements; }
  IUnknown *Target() const { return this->renderTarget.Get(); }

  int creations = 0;
  std::vector<bool> shownWhenChosen;
  std::function<void(const Element &)> onChosen;
};

using TestDataFlyout = ProviderFlyout<DataProviderFlyout>;
using TestSearchFlyout = ProviderFlyout<SearchProviderFlyout>;

} // namespace lumenor
