#include "support/Recorder.h"

#include <cstdlib>

namespace lumenor::tests {

namespace {

constexpr DWORD waitMs = 60000;
constexpr DWORD stepMs = 10;

/// The recorder is built beside the test programs.
std::wstring RecorderExe() {
  wchar_t path[MAX_PATH] = {};
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring program = path;
  return program.substr(0, program.find_last_of(L'\\')) + L"\\recorder.exe";
}

std::wstring FromUtf8(const std::string &bytes) {
  const int length = static_cast<int>(bytes.size());
  const int size = ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), length, nullptr, 0);
  std::wstring text(static_cast<std::size_t>(size), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), length, text.data(), size);
  return text;
}

} // namespace

Recorder::Recorder(const TestFolders &folders)
    : notes(folders.Root() + L"\\recorded.txt"), variable(L"LUMENOR_RECORD", notes) {}

void Recorder::InstallAs(const std::wstring &path) const {
  MakeFolders(path.substr(0, path.find_last_of(L'\\')));
  if (!::CopyFileW(RecorderExe().c_str(), path.c_str(), FALSE))
    std::abort(); // no test can run without it
}

std::vector<std::wstring> Recorder::CommandLines() const {
  const std::wstring text = FromUtf8(ReadBytes(notes));
  std::vector<std::wstring> lines;
  for (std::size_t begin = 0, end; (end = text.find(L'\n', begin)) != std::wstring::npos; begin = end + 1)
    lines.push_back(text.substr(begin, text.find(L'\t', begin) - begin));
  return lines;
}

std::vector<std::wstring> Recorder::WaitForCommandLines(std::size_t count) const {
  const ULONGLONG deadline = ::GetTickCount64() + waitMs;
  while (CommandLines().size() < count && ::GetTickCount64() < deadline)
    ::Sleep(stepMs);
  return CommandLines();
}

} // namespace lumenor::tests
