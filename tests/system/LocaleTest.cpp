#include "system/Locale.h"

#include <gmock/gmock.h>

#include "support/ImportSlot.h"
#include "support/KeptRegistryKey.h"
#include "system/Windows.h"

extern "C" decltype(&::GetGeoInfoW) __imp_GetGeoInfoW;
extern "C" decltype(&::GetLocaleInfoW) __imp_GetLocaleInfoW;
extern "C" decltype(&::GetUserDefaultUILanguage) __imp_GetUserDefaultUILanguage;
extern "C" decltype(&::GetUserGeoID) __imp_GetUserGeoID;

namespace lumenor {
namespace {

using testing::ElementsAre;
using tests::ImportSlot;

constexpr LANGID english = 0x409;
constexpr LANGID simplifiedChinese = 2052;
constexpr LANGID hongKongChinese = 3076;
constexpr GEOID noCountry = -1;

/// A user of a language in a country, as the platform tells it.
class User {
public:
  User(LANGID itsLanguage, GEOID itsCountry) {
    language = itsLanguage;
    country = itsCountry;
    tag = L"en-US";
  }

  /// The tag that the platform has for every country; empty for none.
  static void SetTag(const std::wstring &text) { tag = text; }

  /// The country and the language that the tag was asked for last.
  static inline GEOID askedCountry;
  static inline LANGID askedLanguage;

private:
  static LANGID WINAPI Language() { return language; }
  static GEOID WINAPI Country(GEOCLASS kind) { return kind == GEOCLASS_NATION ? country : 0; }
  static int WINAPI GeoInfo(GEOID geo, GEOTYPE type, LPWSTR data, int size, LANGID asked) {
    if (type != GEO_RFC1766)
      return platformGeoInfo(geo, type, data, size, asked);
    askedCountry = geo;
    askedLanguage = asked;
    const int length = static_cast<int>(tag.size());
    if (length == 0 || (size != 0 && size <= length))
      return 0;
    if (size != 0)
      ::lstrcpyW(data, tag.c_str());
    return length + 1;
  }

  static inline LANGID language;
  static inline GEOID country;
  static inline std::wstring tag;
  static inline decltype(__imp_GetGeoInfoW) platformGeoInfo = __imp_GetGeoInfoW;

  const ImportSlot<decltype(__imp_GetUserDefaultUILanguage)> languageSlot{&__imp_GetUserDefaultUILanguage, &Language};
  const ImportSlot<decltype(__imp_GetUserGeoID)> countrySlot{&__imp_GetUserGeoID, &Country};
  const ImportSlot<decltype(__imp_GetGeoInfoW)> tagSlot{&__imp_GetGeoInfoW, &GeoInfo};
};

TEST(LanguageCountryKey, HasTheAbbreviatedLanguageAndTheIsoCountryInThePlatformsCase) {
  EXPECT_EQ(L"ENU_US", LanguageCountryKey());
}

TEST(LanguageCountryKey, IsOfTheInterfacesLanguageAndTheUsersCountry) {
  const User user(0x407, 39); // German, in Canada
  EXPECT_EQ(L"DEU_CA", LanguageCountryKey());
}

TEST(LanguageCountryKey, WithoutACountryIsTheDefault) {
  const User user(0x407, noCountry);
  EXPECT_EQ(L"enu_us", LanguageCountryKey());
}

TEST(LanguageCountryKey, ReadsTheUsersCountryAnew) {
  const tests::KeptRegistryKey geo(HKEY_CURRENT_USER, L"Control Panel\\International\\Geo");
  geo.SetText(L"Nation", L"94");
  EXPECT_EQ(L"ENU_DE", LanguageCountryKey());
  geo.SetText(L"Nation", L"-1");
  EXPECT_EQ(L"enu_us", LanguageCountryKey());
}

TEST(LanguageCountryKey, OfACountryThatThePlatformDoesNotKnowIsTheDefault) {
  const User user(0x407, 999999);
  EXPECT_EQ(L"enu_us", LanguageCountryKey());
}

TEST(LanguageCountryKey, OfALanguageThatThePlatformDoesNotKnowIsTheDefault) {
  const ImportSlot slot(
      &__imp_GetLocaleInfoW, +[](LCID, LCTYPE, LPWSTR, int) WINAPI { return 0; });
  EXPECT_EQ(L"enu_us", LanguageCountryKey());
}

TEST(LanguageCountryKey, WhoseLanguageCantBeReadInTheSecondStepIsTheDefault) {
  const ImportSlot slot(
      &__imp_GetLocaleInfoW, +[](LCID, LCTYPE, LPWSTR, int size) WINAPI { return size == 0 ? 4 : 0; });
  EXPECT_EQ(L"enu_us", LanguageCountryKey());
}

TEST(LanguageCountryKey, WhoseCountryCantBeReadInTheSecondStepIsTheDefault) {
  const ImportSlot slot(
      &__imp_GetGeoInfoW, +[](GEOID, GEOTYPE, LPWSTR, int size, LANGID) WINAPI { return size == 0 ? 3 : 0; });
  EXPECT_EQ(L"enu_us", LanguageCountryKey());
}

TEST(Rfc1766Key, HasTheFirstHyphenAsAnUnderscore) {
  const User user(english, 244);
  EXPECT_EQ(L"en_US", Rfc1766Key());
  User::SetTag(L"zh-hant-tw");
  EXPECT_EQ(L"zh_hant-tw", Rfc1766Key());
  User::SetTag(L"en");
  EXPECT_EQ(L"en", Rfc1766Key());
}

TEST(Rfc1766Key, AsksForTheUsersCountryInTheInterfacesLanguage) {
  const User user(0x407, 39);
  Rfc1766Key();
  EXPECT_EQ(39, User::askedCountry);
  EXPECT_EQ(0x407, User::askedLanguage);
}

TEST(Rfc1766Key, WithoutACountryIsTheDefault) {
  const User user(english, noCountry);
  User::SetTag(L"fr-FR");
  EXPECT_EQ(L"en_us", Rfc1766Key());
}

TEST(Rfc1766Key, OfSimplifiedChineseIsThatOfCountry45WhateverTheCountry) {
  for (const GEOID country : {noCountry, GEOID{244}, GEOID{104}, GEOID{237}}) {
    const User user(simplifiedChinese, country);
    User::SetTag(L"zh-CN");
    EXPECT_EQ(L"zh_CN", Rfc1766Key());
    EXPECT_EQ(45, User::askedCountry);
    EXPECT_EQ(simplifiedChinese, User::askedLanguage);
  }
}

TEST(Rfc1766Key, OfTheChineseOfHongKongIsThatOfCountry104) {
  for (const GEOID country : {noCountry, GEOID{244}, GEOID{45}, GEOID{104}}) {
    const User user(hongKongChinese, country);
    User::SetTag(L"zh-HK");
    EXPECT_EQ(L"zh_HK", Rfc1766Key());
    EXPECT_EQ(104, User::askedCountry);
  }
}

TEST(Rfc1766Key, OfTheChineseOfHongKongStaysInCountry237) {
  const User user(hongKongChinese, 237);
  Rfc1766Key();
  EXPECT_EQ(237, User::askedCountry);
}

TEST(Rfc1766Key, OfACountryWithoutATagIsTheDefault) {
  const User user(0x407, 94);
  User::SetTag(L"");
  EXPECT_EQ(L"en_us", Rfc1766Key());
}

TEST(Rfc1766Key, ThatCantBeReadInTheSecondStepIsTheDefault) {
  const ImportSlot slot(
      &__imp_GetGeoInfoW, +[](GEOID, GEOTYPE, LPWSTR, int size, LANGID) WINAPI { return size == 0 ? 6 : 0; });
  EXPECT_EQ(L"en_us", Rfc1766Key());
}

TEST(UserCountryCode, IsTheIsoCodeOfTheUsersCountry) {
  const User user(english, 94);
  EXPECT_EQ(L"DE", UserCountryCode());
}

TEST(UserCountryCode, WithoutACountryIsEmpty) {
  const User user(english, noCountry);
  EXPECT_EQ(L"", UserCountryCode());
}

TEST(UserCountryCode, OfAnUnknownCountryIsEmpty) {
  const User user(english, 999999);
  EXPECT_EQ(L"", UserCountryCode());
}

class PlatformCodeTest : public testing::Test {
protected:
  PlatformCodeTest() { key.Delete(); }

  std::wstring CodeOf(const std::wstring &stored) const {
    key.SetText(L"platform", stored);
    return PlatformCode();
  }

  const tests::KeptRegistryKey key{HKEY_LOCAL_MACHINE, L"SOFTWARE\\Tarnwick\\System Properties"};
};

TEST_F(PlatformCodeTest, MapsEachStoredValue) {
  EXPECT_EQ(L"VRA", CodeOf(L"TWD"));
  EXPECT_EQ(L"VRA", CodeOf(L"VRA"));
  EXPECT_EQ(L"VRA", CodeOf(L"VRB"));
  EXPECT_EQ(L"VRC", CodeOf(L"VRC"));
  EXPECT_EQ(L"VRD", CodeOf(L"VRD"));
  EXPECT_EQ(L"VRE", CodeOf(L"VRE"));
}

TEST_F(PlatformCodeTest, LowerCaseMapsLikeUpperCase) {
  EXPECT_EQ(L"VRC", CodeOf(L"vrc"));
  EXPECT_EQ(L"VRE", CodeOf(L"vRe"));
}

TEST_F(PlatformCodeTest, AnUnknownValueIsVra) {
  EXPECT_EQ(L"VRA", CodeOf(L"VRF"));
  EXPECT_EQ(L"VRA", CodeOf(L"VRC "));
  EXPECT_EQ(L"VRA", CodeOf(L""));
  EXPECT_EQ(L"VRA", CodeOf(std::wstring(30000, L'x')));
}

TEST_F(PlatformCodeTest, AMissingKeyIsVra) { EXPECT_EQ(L"VRA", PlatformCode()); }

TEST_F(PlatformCodeTest, AMissingValueIsVra) {
  key.Create();
  EXPECT_EQ(L"VRA", PlatformCode());
}

TEST_F(PlatformCodeTest, AValueThatIsNoWellFormedTextIsVra) {
  key.SetNumber(L"platform", 5);
  EXPECT_EQ(L"VRA", PlatformCode());
  key.SetBytes(L"platform", REG_SZ, "");
  EXPECT_EQ(L"VRA", PlatformCode());
  key.SetBytes(L"platform", REG_SZ, std::string("V\0R\0C\0", 6)); // no closing null
  EXPECT_EQ(L"VRA", PlatformCode());
}

TEST(StubLocaleChain, GoesFromTheLocaleToItsLanguageToAny) {
  EXPECT_THAT(StubLocaleChain(L"deu_ch"), ElementsAre(L"deu_ch", L"deu_xx", L"xx_xx"));
}

TEST(StubLocaleChain, OnlyTheFirstUnderscoreEndsTheLanguage) {
  EXPECT_THAT(StubLocaleChain(L"a_b_c"), ElementsAre(L"a_b_c", L"a_xx", L"xx_xx"));
}

TEST(StubLocaleChain, ALocaleWithoutAnUnderscoreIsAllLanguage) {
  EXPECT_THAT(StubLocaleChain(L"deu"), ElementsAre(L"deu", L"deu_xx", L"xx_xx"));
  EXPECT_THAT(StubLocaleChain(L""), ElementsAre(L"", L"_xx", L"xx_xx"));
}

TEST(ResourceLocaleChain, EndsInEnglish) {
  EXPECT_THAT(ResourceLocaleChain(L"deu_ch"), ElementsAre(L"deu_ch", L"deu_xx", L"xx_xx", L"en_xx"));
}

} // namespace
} // namespace lumenor
