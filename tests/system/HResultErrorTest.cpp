#include "system/HResultError.h"

#include <new>
#include <stdexcept>

#include <gtest/gtest.h>

namespace lumenor {
namespace {

TEST(HResultError, CarriesTheFailedResult) {
  try {
    ThrowIfFailed(E_OUTOFMEMORY);
    FAIL() << "nothing was raised";
  } catch (const HResultError &error) {
    EXPECT_EQ(E_OUTOFMEMORY, error.Result());
  }
}

TEST(HResultError, SuccessIsHandedOnSoThatFalseCanBeTold) { EXPECT_EQ(S_FALSE, ThrowIfFailed(S_FALSE)); }

TEST(HResultError, AWin32ErrorKeepsItsLowHalfUnderTheWin32Facility) {
  EXPECT_EQ(static_cast<HRESULT>(0x80070005), HResultFromError(ERROR_ACCESS_DENIED));
  EXPECT_EQ(static_cast<HRESULT>(0x80070001), HResultFromError(0x10001));
}

TEST(HResultError, AFailureHResultStaysAsItStands) {
  EXPECT_EQ(E_ABORT, HResultFromError(static_cast<DWORD>(E_ABORT)));
}

TEST(HResultError, AnErrorOfZeroIsStillAFailure) { EXPECT_EQ(E_FAIL, HResultFromError(0)); }

TEST(HResultOf, ReturnsWhatWasRaised) {
  EXPECT_EQ(STG_E_ACCESSDENIED, HResultOf([] { throw HResultError(STG_E_ACCESSDENIED); }));
  EXPECT_EQ(E_OUTOFMEMORY, HResultOf([] { throw std::bad_alloc(); }));
  EXPECT_EQ(E_FAIL, HResultOf([] { throw std::runtime_error("text"); }));
  EXPECT_EQ(E_FAIL, HResultOf([] { throw 5; }));
}

TEST(HResultOf, IsASuccessWhereNothingWasRaised) {
  int calls = 0;
  EXPECT_EQ(S_OK, HResultOf([&] { ++calls; }));
  EXPECT_EQ(1, calls);
}

} // namespace
} // namespace lumenor
