// Replaces every program that the dock starts: it records how it was started, and ends.
//
// The record is one line of UTF-8, the command line as it came, a tab and the working folder, appended to the file that
// the environment variable LUMENOR_RECORD names or, without one, to lumenor-recorder.log in the folder for temporary
// files. Several recorders may write at the same time. Ends with 0 when the line was written.
//
// LUMENOR_RECORDER_WAIT, the name of an event, makes it a program that takes its time: it ends when the event is set,
// or after two minutes.

#include <string>

#include "system/Handles.h"

namespace lumenor {
namespace {

std::wstring EnvironmentText(const wchar_t *name) {
  std::wstring text(::GetEnvironmentVariableW(name, nullptr, 0), L'\0');
  text.resize(::GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size())));
  return text;
}

std::wstring TemporaryFolder() {
  wchar_t folder[MAX_PATH + 1] = {};
  ::GetTempPathW(MAX_PATH + 1, folder); // ends with a backslash
  return folder;
}

std::wstring CurrentFolder() {
  std::wstring folder(::GetCurrentDirectoryW(0, nullptr), L'\0');
  folder.resize(::GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
  return folder;
}

std::string Utf8(const std::wstring &text) {
  const auto length = static_cast<int>(text.size());
  const int bytes = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(bytes), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(), bytes, nullptr, nullptr);
  return result;
}

std::wstring RecordPath() {
  const std::wstring named = EnvironmentText(L"LUMENOR_RECORD");
  return named.empty() ? TemporaryFolder() + L"lumenor-recorder.log" : named;
}

/// One write, at the file's end wherever that is by then: lines of two recorders don't mix.
bool Append(const std::wstring &path, const std::string &line) {
  const FileHandle file(::CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  return file && ::WriteFile(file.Get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr) &&
         written == line.size();
}

void WaitForEvent(const std::wstring &name) {
  constexpr DWORD longestMs = 120'000;
  if (name.empty())
    return;
  if (const KernelHandle event(::OpenEventW(SYNCHRONIZE, FALSE, name.c_str())); event)
    ::WaitForSingleObject(event.Get(), longestMs);
}

} // namespace
} // namespace lumenor

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  const std::wstring line = std::wstring(::GetCommandLineW()) + L'\t' + lumenor::CurrentFolder() + L'\n';
  const bool written = lumenor::Append(lumenor::RecordPath(), lumenor::Utf8(line));
  lumenor::WaitForEvent(lumenor::EnvironmentText(L"LUMENOR_RECORDER_WAIT"));
  return written ? 0 : 1;
}
