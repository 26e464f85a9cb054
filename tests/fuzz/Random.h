#pragma once
// The choices by which an input is made: the same for the same seed, wherever it runs.

#include <cstdint>
#include <random>

namespace lumenor::fuzz {

class Random {
public:
  explicit Random(std::uint64_t seed) : engine(seed) {}

  /// A number from 0 up to, but not including, `end`, which is above 0. The distributions of the standard library
  /// differ between its makers.
  std::size_t Below(std::size_t end) { return static_cast<std::size_t>(engine() % end); }

  /// True once in `rarity` calls.
  bool Once(std::size_t rarity) { return Below(rarity) == 0; }

  /// One of the values of an array or a vector that isn't empty.
  template <typename Values> const auto &Of(const Values &values) { return values[Below(std::size(values))]; }

  char Byte() { return static_cast<char>(Below(256)); }

private:
  std::mt19937_64 engine;
};

} // namespace lumenor::fuzz
