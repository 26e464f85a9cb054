#pragma once
// Replaces a function that the program imports from the platform by one of the test's: to record the calls of the
// platform, and for what the test platform can't do or a test can't cause otherwise. Declare the slot that the linker
// makes of the import:
//
//   extern "C" decltype(&::GetUserGeoID) __imp_GetUserGeoID;

#include <type_traits>
#include <utility>

#include "system/Windows.h"

namespace lumenor::desk {

/// Puts `replacement` into the import's slot and gives what was there.
template <typename Function> Function ExchangeSlot(Function *slot, const std::type_identity_t<Function> &replacement) {
  DWORD protection = 0;
  ::VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
  const Function former = std::exchange(*slot, replacement);
  ::VirtualProtect(slot, sizeof *slot, protection, &protection);
  return former;
}

} // namespace lumenor::desk

namespace lumenor::tests {

/// The same for as long as it lives.
template <typename Function> class ImportSlot {
public:
  ImportSlot(Function *slot, const std::type_identity_t<Function> &replacement)
      : slot(slot), former(desk::ExchangeSlot(slot, replacement)) {}
  ~ImportSlot() { desk::ExchangeSlot(slot, former); }
  ImportSlot(const ImportSlot &) = delete;
  ImportSlot &operator=(const ImportSlot &) = delete;

  /// The platform's own function.
  Function Former() const { return former; }

private:
  Function *slot;
  Function former;
};

} // namespace lumenor::tests
