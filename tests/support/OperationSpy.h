#pragma once
// Observes the calls of COM objects of one class: for as long as it lives, single operations of the class's table are
// replaced. The replacements call the former ones, so the work is still done.

#include <cstddef>
#include <map>

#include "system/Windows.h"

#include <wrl/client.h>

namespace lumenor::tests {

class OperationSpy {
public:
  /// Keeps `object`, whose class's table it changes.
  explicit OperationSpy(IUnknown *object) : object(object), table(*reinterpret_cast<void ***>(object)) {}
  ~OperationSpy() {
    for (const auto &[slot, function] : former)
      Write(slot, function);
  }
  OperationSpy(const OperationSpy &) = delete;
  OperationSpy &operator=(const OperationSpy &) = delete;

  /// Exchanges the operation at `slot`, counted from QueryInterface as 0; returns the former one. The object is the
  /// first argument of both.
  template <typename Function> Function Exchange(std::size_t slot, Function function) {
    void *const formerFunction = table[slot];
    former.emplace(slot, formerFunction);
    Write(slot, reinterpret_cast<void *>(function));
    return reinterpret_cast<Function>(formerFunction);
  }

private:
  void Write(std::size_t slot, void *function) const {
    DWORD protection = 0;
    ::VirtualProtect(&table[slot], sizeof table[slot], PAGE_READWRITE, &protection);
    table[slot] = function;
    ::VirtualProtect(&table[slot], sizeof table[slot], protection, &protection);
  }

  Microsoft::WRL::ComPtr<IUnknown> object;
  void **table;
  std::map<std::size_t, void *> former;
};

} // namespace lumenor::tests
