#pragma once
// A text service that fails.

#include "support/ImportSlot.h"
#include "system/Windows.h"

#include <dwrite.h>

extern "C" decltype(&::DWriteCreateFactory) __imp_DWriteCreateFactory;

namespace lumenor::tests {

/// Lets the text service refuse one of the calls that come, counted from 1.
class FailingText {
public:
  explicit FailingText(int call) { callsToCome = call; }

private:
  static HRESULT WINAPI CreateOrFail(DWRITE_FACTORY_TYPE type, REFIID id, IUnknown **factory) {
    return --callsToCome == 0 ? E_OUTOFMEMORY : create(type, id, factory);
  }

  static inline int callsToCome;
  static inline decltype(__imp_DWriteCreateFactory) create;
  const ImportSlot<decltype(__imp_DWriteCreateFactory)> slot{
      (create = __imp_DWriteCreateFactory, &__imp_DWriteCreateFactory), &CreateOrFail};
};

} // namespace lumenor::tests
