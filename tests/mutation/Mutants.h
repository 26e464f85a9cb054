#pragma once
// What script/mutate puts into a copy of the sources: every break is compiled in, and the environment variable
// LUMENOR_MUTANT names the one that is in force. So all of them cost one build. Never a part of the product.
//
// An operator is broken by an object beside it that takes the left operand and gives on what the operator would have
// made of both: `a < b` becomes `a < mutants::Boundary{7} < b`, which has the same place in the grammar.

#include <cstdlib>
#include <map>
#include <mutex>
#include <string>
#include <type_traits>

namespace mutants {

inline bool reached[1000 * 300]; // a thousand numbers for each source

/// Notes that the place was reached. True when its break is in force.
inline bool On(int id) noexcept {
  static const int inForce = [] {
    const char *const value = std::getenv("LUMENOR_MUTANT");
    return value == nullptr ? 0 : std::atoi(value);
  }();
  reached[id] = true;
  return id == inForce;
}

inline bool Flip(int id, bool condition) noexcept { return condition != On(id); }

template <typename Value> Value Number(int id, Value value) noexcept {
  return On(id) ? static_cast<Value>(value + 1) : value;
}

/// The text, or one that is a character longer and lives as long as the program.
template <typename Character> const Character *Text(int id, const Character *text) {
  if (!On(id))
    return text;
  static std::map<const Character *, std::basic_string<Character>> longer;
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  return longer.try_emplace(text, std::basic_string<Character>(text) + Character('~')).first->second.c_str();
}

template <typename Left> struct Half {
  const Left &left;
  int id;
};

struct Boundary {
  int id;
};
struct Equality {
  int id;
};
struct Arithmetic {
  int id;
};
struct Bits {
  int id;
};
struct Not {
  int id;
};

#define LUMENOR_MUTANT_OPERATOR(Kind, op, broken)                                                                      \
  template <typename Left> Half<Left> operator op(const Left &left, Kind kind) { return {left, kind.id}; }             \
  template <typename Left, typename Right> auto operator op(Half<Left> half, const Right &right) {                     \
    using Result = std::decay_t<decltype(half.left op right)>;                                                         \
    const Left &left = half.left;                                                                                      \
    return On(half.id) ? static_cast<Result>(broken) : static_cast<Result>(left op right);                             \
  }

LUMENOR_MUTANT_OPERATOR(Boundary, <, left <= right)
LUMENOR_MUTANT_OPERATOR(Boundary, <=, left < right)
LUMENOR_MUTANT_OPERATOR(Boundary, >, left >= right)
LUMENOR_MUTANT_OPERATOR(Boundary, >=, left > right)
LUMENOR_MUTANT_OPERATOR(Equality, ==, !(left == right))
LUMENOR_MUTANT_OPERATOR(Equality, !=, !(left != right))
LUMENOR_MUTANT_OPERATOR(Arithmetic, *, left + right)
LUMENOR_MUTANT_OPERATOR(Arithmetic, /, left *right)
LUMENOR_MUTANT_OPERATOR(Arithmetic, -, left + right)
LUMENOR_MUTANT_OPERATOR(Bits, |, left)
LUMENOR_MUTANT_OPERATOR(Bits, &, left)

#undef LUMENOR_MUTANT_OPERATOR

template <typename Left> Half<Left> operator+(const Left &left, Arithmetic kind) { return {left, kind.id}; }
/// Of texts the second is left out.
template <typename Left, typename Right> auto operator+(Half<Left> half, const Right &right) {
  using Result = std::decay_t<decltype(half.left + right)>;
  if constexpr (requires { half.left - right; })
    return On(half.id) ? static_cast<Result>(half.left - right) : static_cast<Result>(half.left + right);
  else
    return On(half.id) ? Result(half.left) : Result(half.left + right);
}

/// Binds more tightly than all but the postfix and prefix operators, as the `!` that it replaces.
template <typename Operand> bool operator->*(Not kind, const Operand &operand) {
  return On(kind.id) ? static_cast<bool>(operand) : !operand;
}

/// Begins a new list of reached places.
inline void Forget() noexcept {
  for (bool &place : reached)
    place = false;
}

/// The reached places, each with a blank before it.
inline std::string Reached() {
  std::string result;
  for (int id = 0; id < static_cast<int>(sizeof reached); ++id)
    if (reached[id])
      result += " " + std::to_string(id);
  return result;
}

} // namespace mutants
