#pragma once
// Lets a test look on while the product calls a COM object: for as long as it lives the object's table of operations is
// a copy in which single operations are exchanged. The exchanged ones call the former ones, so the work still gets
// done.

#include <cstddef>
#include <vector>

#include "system/Windows.h"

#include <wrl/client.h>

namespace lumenor::tests {

class OperationSpy {
public:
  /// `operationCount` is how many operations the object's interface has, those it inherits included.
  OperationSpy(IUnknown *object, std::size_t operationCount)
      : object(object), table(reinterpret_cast<void ***>(object)), former(*table),
        copy(former, former + operationCount) {
    *table = copy.data();
  }
  ~OperationSpy() { *table = former; }
  OperationSpy(const OperationSpy &) = delete;
  OperationSpy &operator=(const OperationSpy &) = delete;

  /// Exchanges the operation at `slot`, counted from QueryInterface as 0; returns the former one. The object is the
  /// first argument of both.
  template <typename Function> Function Exchange(std::size_t slot, Function function) {
    const auto formerFunction = reinterpret_cast<Function>(copy.at(slot));
    copy.at(slot) = reinterpret_cast<void *>(function);
    return formerFunction;
  }

private:
  Microsoft::WRL::ComPtr<IUnknown> object;
  void ***table;
  void **former;
  std::vector<void *> copy;
};

} // namespace lumenor::tests
