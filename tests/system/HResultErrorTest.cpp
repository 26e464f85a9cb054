#include "system/HResultError.h"

#include <new>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "system/Registry.h"

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

/// What `raise` raises, as the place in its source; "nothing" when it raises nothing.
template <typename Raise> std::string PlaceOf(Raise &&raise) {
  try {
    raise();
    return "nothing";
  } catch (const HResultError &error) {
    return error.File() + (":" + std::to_string(error.Line()));
  }
}

std::string Here(SourcePlace place = SourcePlace::current()) {
  return PlaceOf([&] { throw HResultError(E_FAIL, place); });
}

TEST(HResultError, TellsWhereTheCallStands) {
  EXPECT_EQ(Here(), PlaceOf([] { ThrowIfFailed(E_FAIL); }));
  EXPECT_EQ(Here(), PlaceOf([] { ThrowIfFalse(FALSE); }));
  EXPECT_EQ(Here(), PlaceOf([] { ThrowIfNull(HANDLE()); }));
  EXPECT_EQ(Here(), PlaceOf([] { ThrowLastError(); }));
  EXPECT_EQ(Here(), PlaceOf([] { throw HResultError(E_FAIL); }));
}

TEST(HResultError, OfANullHandleIsTheThreadsLastError) {
  ::SetLastError(ERROR_ACCESS_DENIED);
  try {
    ThrowIfNull(HANDLE());
    FAIL() << "nothing was raised";
  } catch (const HResultError &error) {
    EXPECT_EQ(E_ACCESSDENIED, error.Result());
    EXPECT_STREQ("HResultError", static_cast<const std::exception &>(error).what());
  }
}

TEST(HResultError, NamesItsFileFromTheModulesFolderOn) {
  EXPECT_TRUE(PlaceOf([] { SplitRegistryPath(L""); }).starts_with("system/Registry.cpp:"));
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
