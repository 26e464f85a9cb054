#include "system/Text.h"

#include <cstdlib>
#include <cwchar>
#include <string_view>

namespace lumenor {

namespace {

constexpr int numberSize = 20;
constexpr int timeSize = 50;

std::wstring FormatFields(const wchar_t *format, const SYSTEMTIME &time) {
  wchar_t text[timeSize] = {};
  ::_snwprintf(text, timeSize - 1, format, time.wMonth, time.wDay, time.wYear, time.wHour, time.wMinute, time.wSecond);
  return text;
}

/// Removes the text before the first `delimiter` from the front of `rest`, all of it without one, and returns it.
std::wstring CutField(std::wstring_view &rest, wchar_t delimiter) {
  const std::size_t end = rest.find(delimiter);
  const std::wstring field(rest.substr(0, end));
  rest = end == std::wstring_view::npos ? std::wstring_view() : rest.substr(end + 1);
  return field;
}

WORD CutNumber(std::wstring_view &rest, wchar_t delimiter) {
  return static_cast<WORD>(::_wtoi(CutField(rest, delimiter).c_str()));
}

} // namespace

std::wstring IntToText(std::int32_t value) {
  wchar_t text[numberSize] = {};
  return ::_ltow(value, text, 10);
}

std::wstring UIntToText(std::uint32_t value) {
  wchar_t text[numberSize] = {};
  return ::_ultow(value, text, 10);
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
