#include "system/Text.h"

#include <cstring>

#include <gtest/gtest.h>

namespace lumenor {
namespace {

SYSTEMTIME Time(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second) {
  return {year, month, 0, day, hour, minute, second, 0};
}

void ExpectTime(const SYSTEMTIME &expected, const SYSTEMTIME &actual) {
  EXPECT_EQ(0, std::memcmp(&expected, &actual, sizeof expected)) << FormatTime(actual).size() << " characters";
}

TEST(IntToText, WritesDecimalDigitsAndTheSign) {
  EXPECT_EQ(L"0", IntToText(0));
  EXPECT_EQ(L"-2147483648", IntToText(INT32_MIN));
  EXPECT_EQ(L"2147483647", IntToText(INT32_MAX));
}

TEST(UIntToText, WritesTheUpperHalfWithoutASign) {
  EXPECT_EQ(L"0", UIntToText(0));
  EXPECT_EQ(L"4294967295", UIntToText(UINT32_MAX));
}

TEST(FormatUtcTime, HasTheMonthFirstAndNoLeadingZeros) {
  EXPECT_EQ(L"3/7/2024 5:4:9 UTC", FormatUtcTime(Time(2024, 3, 7, 5, 4, 9)));
}

TEST(FormatTime, IsTheSameWithoutUtc) { EXPECT_EQ(L"12/31/1999 23:59:58", FormatTime(Time(1999, 12, 31, 23, 59, 58))); }

TEST(FormatTime, TheLargestFieldsFit) {
  EXPECT_EQ(L"65535/65535/65535 65535:65535:65535 UTC",
            FormatUtcTime(Time(0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF)));
}

TEST(ParseTime, ReadsWhatIsFormatted) {
  const SYSTEMTIME time = Time(2024, 3, 7, 5, 4, 9);
  ExpectTime(time, ParseTime(FormatTime(time)));
}

TEST(ParseTime, ATrailingUtcDoesNoHarm) {
  const SYSTEMTIME time = Time(2024, 3, 7, 5, 4, 59);
  ExpectTime(time, ParseTime(FormatUtcTime(time)));
}

TEST(ParseTime, EmptyTextGivesZeros) { ExpectTime(SYSTEMTIME{}, ParseTime(L"")); }

TEST(ParseTime, MissingFieldsGiveZeros) {
  ExpectTime(Time(0, 4, 0, 0, 0, 0), ParseTime(L"4"));
  ExpectTime(Time(2024, 4, 5, 0, 0, 0), ParseTime(L"4/5/2024"));
  ExpectTime(Time(2024, 4, 5, 6, 7, 0), ParseTime(L"4/5/2024 6:7"));
}

TEST(ParseTime, OnlyABlankBehindTheSecondSlashEndsTheYear) {
  ExpectTime(Time(2024, 4, 5, 6, 7, 8), ParseTime(L" 4/ 5/2024 6:7:8"));
}

TEST(ParseTime, TextThatIsNoTimeGivesZeros) { ExpectTime(SYSTEMTIME{}, ParseTime(L"yesterday, ://: about noon")); }

TEST(EqualsIgnoringCase, OnlyTheCaseMayDiffer) {
  EXPECT_TRUE(EqualsIgnoringCase(L"LumenorPanel.exe", L"lumenorpanel.EXE"));
  EXPECT_FALSE(EqualsIgnoringCase(L"LumenorPanel.exe", L"LumenorPanel.ex"));
  EXPECT_TRUE(EqualsIgnoringCase(L"", L""));
}

TEST(Beginning, CutsNoSurrogatePairInTwo) {
  EXPECT_EQ(L"", Beginning(L"", 3));
  EXPECT_EQ(L"abc", Beginning(L"abc", 3));
  EXPECT_EQ(L"ab", Beginning(L"abc", 2));
  EXPECT_EQ(L"", Beginning(L"abc", 0));
  EXPECT_EQ(L"a", Beginning(L"a\xD83D\xDE00", 2));
  EXPECT_EQ(L"a\xD83D\xDE00", Beginning(L"a\xD83D\xDE00z", 3));
}

} // namespace
} // namespace lumenor
