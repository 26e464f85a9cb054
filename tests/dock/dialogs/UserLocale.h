#pragma once
// A user of a language in a country, as the platform tells it, for as long as this lives.

#include <string>

#include "support/ImportSlot.h"
#include "system/Windows.h"

extern "C" decltype(&::GetGeoInfoW) __imp_GetGeoInfoW;
extern "C" decltype(&::GetUserDefaultUILanguage) __imp_GetUserDefaultUILanguage;
extern "C" decltype(&::GetUserGeoID) __imp_GetUserGeoID;

namespace lumenor::tests {

constexpr LANGID english = 0x409, german = 0x407, french = 0x40C;
constexpr GEOID unitedStates = 244, germany = 94, canada = 39, noCountry = -1;

class UserLocale {
public:
  /// `itsTag` is what the platform has for the country as a tag of language and country; empty for none.
  UserLocale(LANGID itsLanguage, GEOID itsCountry, const std::wstring &itsTag = L"") {
    language = itsLanguage;
    country = itsCountry;
    tag = itsTag;
  }

private:
  static LANGID WINAPI Language() { return language; }
  static GEOID WINAPI Country(GEOCLASS) { return country; }
  static int WINAPI GeoInfo(GEOID geo, GEOTYPE type, LPWSTR data, int size, LANGID asked) {
    if (type != GEO_RFC1766)
      return platformGeoInfo(geo, type, data, size, asked);
    if (tag.empty())
      return 0;
    if (size != 0)
      ::lstrcpynW(data, tag.c_str(), size);
    return static_cast<int>(tag.size()) + 1;
  }

  static inline LANGID language;
  static inline GEOID country;
  static inline std::wstring tag;
  static inline decltype(__imp_GetGeoInfoW) platformGeoInfo = __imp_GetGeoInfoW;

  const ImportSlot<decltype(__imp_GetUserDefaultUILanguage)> languageSlot{&__imp_GetUserDefaultUILanguage, &Language};
  const ImportSlot<decltype(__imp_GetUserGeoID)> countrySlot{&__imp_GetUserGeoID, &Country};
  const ImportSlot<decltype(__imp_GetGeoInfoW)> infoSlot{&__imp_GetGeoInfoW, &GeoInfo};
};

} // namespace lumenor::tests
