#pragma once
// Stands between the product and the platform: counts the product's calls and allocations, and lets the one with a
// given number fail.

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "failing/PlatformCalls.h"

struct IUnknown;

namespace lumenor::failing {

/// A function of the platform, or a method of its objects.
struct PlatformCall {
  std::string name;
  const Failing *how;   // null for one that can't
  std::string_view why; // it can't; empty when nobody has said so
  bool isMethod;
};

/// What is counted and made to fail.
enum class Kind {
  Calls,      // of functions of the platform, on the main thread
  Memory,     // by operator new, on the main thread
  OtherCalls, // of functions of the platform, on the other threads
  Methods,    // of the platform's objects, called on the main thread
};

/// A call that was counted, or an allocation.
struct Site {
  const PlatformCall *call; // null for an allocation
  const void *from;         // the code behind the call; null for an allocation
  std::uint64_t path = 0;   // made of that and of the product's functions above, where calls are noted
  bool operator==(const Site &) const = default;
};

/// Puts a thunk into each slot of this program's import table whose function can fail. Once, on the main thread.
void StandBetween();

/// Puts a thunk into the tables of the object's class, for each method that can fail. Every object of the class has the
/// same tables, so one of each class is enough; slots that have their thunk are left alone.
void StandBetween(IUnknown *object);

/// The functions of the import table and the methods; those that can't fail stand there too. In every process the same.
const std::deque<PlatformCall> &PlatformCalls();

/// Leads the calls of a function to one of the test's; the platform's function.
void *Redirect(const char *name, void *target);

/// Counts from now on, and lets the call with this number (from 1) fail; none for 0.
void Arm(Kind kind, std::uint64_t number);
void Disarm();

/// Goes on counting after a Disarm.
void ArmAgain();

/// What was counted since Arm, in its order; allocations aren't noted.
const std::vector<Site> &Counted();
std::uint64_t CountedSoFar();

/// Whether the call with the number came, and what it was: its name, where from, and the product's functions above.
bool HasFailed();
std::string DescribeFailed();
const Site &FailedSite();

/// Nothing of this thread's is counted while one of these lives: it runs code of the test.
class OwnCode {
public:
  OwnCode();
  ~OwnCode();
  OwnCode(const OwnCode &) = delete;
  OwnCode &operator=(const OwnCode &) = delete;
};

/// The other way round: the test's code calls the product.
class ProductsTurn {
public:
  ProductsTurn();
  ~ProductsTurn();
  ProductsTurn(const ProductsTurn &) = delete;
  ProductsTurn &operator=(const ProductsTurn &) = delete;

private:
  int ownCode;
};

} // namespace lumenor::failing
