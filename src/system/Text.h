#pragma once
// Numbers and dates as text, and what is asked of texts. Stateless; any thread.

#include <cstdint>
#include <string>
#include <string_view>

#include "system/Windows.h"

namespace lumenor {

/// The decimal digits of `value`, with a minus sign below zero.
inline std::wstring IntToText(std::int32_t value) { return std::to_wstring(value); }

/// The decimal digits of `value`.
inline std::wstring UIntToText(std::uint32_t value) { return std::to_wstring(value); }

/// The present moment in UTC.
SYSTEMTIME UtcNow();

/// "month/day/year hour:minute:second UTC" without leading zeros. The time isn't converted.
std::wstring FormatUtcTime(const SYSTEMTIME &time);

/// "month/day/year hour:minute:second" without leading zeros.
std::wstring FormatTime(const SYSTEMTIME &time);

/// Reads what the two format operations write; a field that is missing or no number gives 0, as do the day of the week
/// and the milliseconds. Raises nothing.
SYSTEMTIME ParseTime(const std::wstring &text);

/// Whether the texts are equal but for the case of their letters.
bool EqualsIgnoringCase(const std::wstring &left, const std::wstring &right);

/// The first `limit` characters of `text`, or one less where that would cut a surrogate pair in two. Borrows `text`.
std::wstring_view Beginning(std::wstring_view text, std::size_t limit);

} // namespace lumenor
