#include "system/ComText.h"

#include <gtest/gtest.h>

namespace lumenor {
namespace {

TEST(VariantText, IsWhatItWasMadeOf) { EXPECT_EQ(L"text", Variant(L"text").Text()); }

TEST(VariantText, IsEmptyForAnotherType) {
  Variant number;
  VARIANT &value = *number.Put();
  value.vt = VT_I4;
  value.lVal = 40;
  EXPECT_EQ(L"", number.Text());
}

} // namespace
} // namespace lumenor
