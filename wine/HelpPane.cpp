#include "HelpPane.h"

#include <string>

#include "system/Handles.h"
#include "Text.h"

namespace lumenor::services {

namespace {

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
  const std::wstring path = EnvironmentText(L"LUMENOR_HELP_RECORD");
  return path.empty() ? S_OK : Append(path, Utf8({query, ::SysStringLen(query)}) + "\n");
}

} // namespace lumenor::services
