#include "system/Owner.h"

#include <vector>

#include <gmock/gmock.h>

namespace lumenor {
namespace {

std::vector<int> closed;

/// A handle whose closing changes the thread's last error, as that of the platform's may.
struct NumberTraits {
  using Handle = int;
  static Handle Empty() noexcept { return 0; }
  static void Close(Handle number) noexcept {
    closed.push_back(number);
    ::SetLastError(ERROR_INVALID_HANDLE);
  }
};

class OwnerTest : public testing::Test {
protected:
  OwnerTest() {
    closed.clear();
    ::SetLastError(ERROR_DISK_FULL);
  }
};

TEST_F(OwnerTest, KeepsTheLastErrorWhenItCloses) {
  Owner<NumberTraits> owner(1);
  owner.Reset(2);
  EXPECT_EQ(static_cast<DWORD>(ERROR_DISK_FULL), ::GetLastError());
  owner = Owner<NumberTraits>();
  EXPECT_EQ(static_cast<DWORD>(ERROR_DISK_FULL), ::GetLastError());
  EXPECT_THAT(closed, testing::ElementsAre(1, 2));
}

TEST_F(OwnerTest, KeepsTheLastErrorAtTheEndOfItsScope) {
  { const Owner<NumberTraits> owner(1); }
  EXPECT_EQ(static_cast<DWORD>(ERROR_DISK_FULL), ::GetLastError());
  EXPECT_THAT(closed, testing::ElementsAre(1));
}

} // namespace
} // namespace lumenor
