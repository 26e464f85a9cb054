#include "content/DocumentNames.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "system/HResultError.h"
#include "system/Xml.h"

namespace lumenor {

namespace {

constexpr wchar_t firstBeyondAscii = 0x80;

/// A longer name may not fit into a path, and a document that can't be written keeps the bar from coming up.
constexpr std::size_t longestName = 128;

/// Files of these names are devices, whatever follows the first dot.
constexpr std::array<std::wstring_view, 4> devices = {L"con", L"prn", L"aux", L"nul"};
constexpr std::array<std::wstring_view, 2> numberedDevices = {L"com", L"lpt"};

bool IsBeyondAscii(wchar_t c) { return c >= firstBeyondAscii; }

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

bool CanBegin(wchar_t c) {
  return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || c == L'_' || IsBeyondAscii(c);
}

bool CanFollow(wchar_t c) { return CanBegin(c) || IsDigit(c) || c == L'-' || c == L'.'; }

template <typename Names> bool IsOneOf(const Names &names, std::wstring_view text) {
  return std::any_of(names.begin(), names.end(), [&](std::wstring_view name) {
    return name.size() == text.size() && ::_wcsnicmp(name.data(), text.data(), name.size()) == 0;
  });
}

bool IsDevice(std::wstring_view name) {
  const std::wstring_view front = name.substr(0, name.find(L'.'));
  return IsOneOf(devices, front) ||
         (front.size() == 4 && IsDigit(front[3]) && IsOneOf(numberedDevices, front.substr(0, 3)));
}

/// The parser decides which letters beyond ASCII a name may have, and that of XPath may allow fewer of them.
bool ParserAllows(const std::wstring &name) {
  bool isFound = false;
  const HRESULT result =
      HResultOf([&] { isFound = SelectNode(LoadXmlString(L"<" + name + L"/>"), L"/" + name) != nullptr; });
  return SUCCEEDED(result) && isFound;
}

} // namespace

bool IsDocumentName(const std::wstring &name) {
  if (name.empty() || name.size() > longestName || !CanBegin(name[0]) ||
      !std::all_of(name.begin(), name.end(), CanFollow) || IsDevice(name))
    return false;
  return std::none_of(name.begin(), name.end(), IsBeyondAscii) || ParserAllows(name);
}

} // namespace lumenor
