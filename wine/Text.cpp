#include "Text.h"

#include "system/Windows.h"

namespace lumenor::services {

std::string Utf8(std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  const int size = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(size), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(), size, nullptr, nullptr);
  return result;
}

std::wstring EnvironmentText(const wchar_t *name) {
  std::wstring text(::GetEnvironmentVariableW(name, nullptr, 0), L'\0');
  text.resize(::GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size())));
  return text;
}

} // namespace lumenor::services
