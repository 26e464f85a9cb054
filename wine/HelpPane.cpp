#include "HelpPane.h"

#include <string>

#include "system/Handles.h"

namespace lumenor::services {

namespace {

/// Empty where it isn't set.
std::wstring RecordPath() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(::GetEnvironmentVariableW(L"LUMENOR_HELP_RECORD", path.data(), static_cast<DWORD>(path.size())));
  return path;
}

std::string Utf8(const wchar_t *text, UINT length) {
  const int size = ::WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length), nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(size), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length), result.data(), size, nullptr, nullptr);
  return result;
}

HRESULT Append(const std::wstring &path, const std::string &line) {
  const FileHandle file(::CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  if (!file || !::WriteFile(file.Get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr))
    return HRESULT_FROM_WIN32(::GetLastError());
  return S_OK;
}

} // namespace

HRESULT STDMETHODCALLTYPE HelpPane::DisplayTask(BSTR) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE HelpPane::DisplayContents(BSTR) noexcept { return E_NOTIMPL; }

HRESULT STDMETHODCALLTYPE HelpPane::DisplaySearchResults(BSTR query) noexcept {
  const std::wstring path = RecordPath();
  return path.empty() ? S_OK : Append(path, Utf8(query, ::SysStringLen(query)) + "\n");
}

} // namespace lumenor::services
