#pragma once
// The machine's browser in a test: every web address that a program opens starts the recorder.

#include <string>
#include <vector>

#include "e2e/Installation.h"
#include "support/KeptRegistryKey.h"

namespace lumenor::e2e {

class Browser {
public:
  /// Takes over "http" and "https" of the machine for as long as it lives.
  explicit Browser(const Installation &installation);

  /// The addresses opened so far, in order.
  std::vector<std::wstring> Addresses() const;

  /// Waits until `count` addresses were opened, a minute at most, and returns all that were by then.
  std::vector<std::wstring> WaitForAddresses(std::size_t count) const;

private:
  const Installation &installation;
  tests::KeptRegistryKey http;
  tests::KeptRegistryKey https;
};

} // namespace lumenor::e2e
