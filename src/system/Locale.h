#pragma once
// The user's language and country as folder keys, the chains of folders to be searched, and the code of the machine's
// platform. No state: every call asks the platform again. Any thread; nothing here raises on bad locale data.

#include <array>
#include <string>

namespace lumenor {

/// The abbreviated language name, "_" and the ISO country, such as "ENU_US"; "enu_us" when the platform doesn't know.
std::wstring LanguageCountryKey();

/// The RFC 1766 tag of the country with its first "-" as "_", such as "en_us", which is also the default.
std::wstring Rfc1766Key();

/// The two-letter ISO code of the user's country; empty when the platform doesn't know.
std::wstring UserCountryCode();

/// The code of the platform's folder, from the machine's registry; "VRA" when that holds nothing that is known.
std::wstring PlatformCode();

/// The folders in which a stub is looked for: `locale`, its language with "_xx", and "xx_xx".
std::array<std::wstring, 3> StubLocaleChain(const std::wstring &locale);

/// The folders in which a language resource is looked for: the same three, then "en_xx".
std::array<std::wstring, 4> ResourceLocaleChain(const std::wstring &locale);

} // namespace lumenor
