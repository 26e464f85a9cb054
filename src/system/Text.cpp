#include "system/Text.h"

#include <algorithm>
#include <cstdlib>
#include <cwchar>

namespace lumenor {

namespace {

constexpr int timeSize = 50;

std::wstring FormatFields(const wchar_t *format, const SYSTEMTIME &time) {
  wchar_t text[timeSize] = {};
  ::_snwprintf(text, timeSize - 1, format, time.wMonth, time.wDay, time.wYear, time.wHour, time.wMinute, time.wSecond);
  return text;
}

/// Removes the text up to the first `delimiter` from the front of `rest`, all of it without one, and returns its
/// number.
WORD CutNumber(std::wstring_view &rest, wchar_t delimiter) {
  const std::wstring field(rest.substr(0, rest.find(delimiter)));
  rest.remove_prefix(std::min(rest.size(), field.size() + 1));
  return static_cast<WORD>(::_wtoi(field.c_str()));
}

} // namespace

SYSTEMTIME UtcNow() {
  SYSTEMTIME now = {};
  ::GetSystemTime(&now);
  return now;
}

std::wstring FormatUtcTime(const SYSTEMTIME &time) { return FormatFields(L"%d/%d/%d %d:%d:%d UTC", time); }

std::wstring FormatTime(const SYSTEMTIME &time) { return FormatFields(L"%d/%d/%d %d:%d:%d", time); }

SYSTEMTIME ParseTime(const std::wstring &text) {
  SYSTEMTIME time = {};
  std::wstring_view rest = text;
  time.wMonth = CutNumber(rest, L'/');
  time.wDay = CutNumber(rest, L'/');
  time.wYear = CutNumber(rest, L' ');
  time.wHour = CutNumber(rest, L':');
  time.wMinute = CutNumber(rest, L':');
  time.wSecond = CutNumber(rest, L'\0'); // what follows the digits, such as " UTC", does no harm
  return time;
}

bool EqualsIgnoringCase(const std::wstring &left, const std::wstring &right) {
  return ::_wcsicmp(left.c_str(), right.c_str()) == 0;
}

std::wstring_view Beginning(std::wstring_view text, std::size_t limit) {
  if (text.size() <= limit)
    return text;
  const bool cutsPair = limit > 0 && IS_SURROGATE_PAIR(text[limit - 1], text[limit]);
  return text.substr(0, cutsPair ? limit - 1 : limit);
}

} // namespace lumenor
