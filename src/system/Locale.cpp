#include "system/Locale.h"

#include <utility>

#include "system/Product.h"
#include "system/Registry.h"
#include "system/Text.h"
#include "system/Windows.h"

namespace lumenor {

namespace {

constexpr GEOID noCountry = -1;
constexpr LANGID simplifiedChinese = 0x804;
constexpr LANGID hongKongChinese = 0xC04;
constexpr GEOID china = 45;
constexpr GEOID hongKong = 104;
constexpr GEOID taiwan = 237;

constexpr wchar_t defaultLanguageCountry[] = L"enu_us";
constexpr wchar_t defaultRfc1766[] = L"en_us";

constexpr wchar_t platformValue[] = L"platform";
constexpr wchar_t defaultPlatform[] = L"VRA";

/// What the registry says, and the code of the folder.
constexpr std::pair<const wchar_t *, const wchar_t *> platformCodes[] = {
    {L"TWD", L"VRA"}, {L"VRA", L"VRA"}, {L"VRB", L"VRA"}, {L"VRC", L"VRC"}, {L"VRD", L"VRD"}, {L"VRE", L"VRE"}};

/// The text that `query` writes into a buffer, after a call for its size; empty when the platform doesn't have it.
template <typename Query> std::wstring QueriedText(Query &&query) {
  const int size = query(nullptr, 0);
  if (size <= 0)
    return {};
  std::wstring text(static_cast<std::size_t>(size), L'\0');
  return query(text.data(), size) == 0 ? std::wstring() : text.c_str();
}

std::wstring CountryData(GEOID geo, GEOTYPE type, LANGID language) {
  return QueriedText([&](wchar_t *buffer, int size) { return ::GetGeoInfoW(geo, type, buffer, size, language); });
}

/// The three-letter name of the user interface's language.
std::wstring AbbreviatedLanguage() {
  const LCID locale = ::GetUserDefaultUILanguage();
  return QueriedText(
      [&](wchar_t *buffer, int size) { return ::GetLocaleInfoW(locale, LOCALE_SABBREVLANGNAME, buffer, size); });
}

/// The country whose tag is the folder of a user with `language` in the country `geo`: simplified Chinese always has
/// one folder, and the Chinese of Hong Kong one of two, whatever the country.
GEOID Rfc1766Country(LANGID language, GEOID geo) {
  if (language == simplifiedChinese)
    return china;
  if (language == hongKongChinese && geo != taiwan)
    return hongKong;
  return geo;
}

} // namespace

std::wstring LanguageCountryKey() {
  const std::wstring country = UserCountryCode();
  const std::wstring language = AbbreviatedLanguage();
  if (country.empty() || language.empty())
    return defaultLanguageCountry;
  return language + L"_" + country;
}

std::wstring Rfc1766Key() {
  const LANGID language = ::GetUserDefaultUILanguage();
  const GEOID geo = Rfc1766Country(language, ::GetUserGeoID(GEOCLASS_NATION));
  if (geo == noCountry)
    return defaultRfc1766;
  std::wstring tag = CountryData(geo, GEO_RFC1766, language);
  if (tag.empty())
    return defaultRfc1766;
  if (const std::size_t hyphen = tag.find(L'-'); hyphen != std::wstring::npos)
    tag[hyphen] = L'_';
  return tag;
}

std::wstring UserCountryCode() {
  const GEOID geo = ::GetUserGeoID(GEOCLASS_NATION);
  return geo == noCountry ? std::wstring() : CountryData(geo, GEO_ISO2, 0);
}

std::wstring PlatformCode() {
  const RegistryKey key = OpenRegistryKey(product::machineKey, KEY_READ);
  const std::wstring platform =
      key ? ReadRegistryString(key.Get(), platformValue).value_or(defaultPlatform) : defaultPlatform;
  for (const auto &[stored, code] : platformCodes)
    if (EqualsIgnoringCase(platform, stored))
      return code;
  return defaultPlatform;
}

std::array<std::wstring, 3> StubLocaleChain(const std::wstring &locale) {
  return {locale, locale.substr(0, locale.find(L'_')) + L"_xx", L"xx_xx"};
}

std::array<std::wstring, 4> ResourceLocaleChain(const std::wstring &locale) {
  const auto [whole, language, any] = StubLocaleChain(locale);
  return {whole, language, any, L"en_xx"};
}

} // namespace lumenor
