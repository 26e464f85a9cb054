#include "support/Recorder.h"

#include <algorithm>
#include <cstdlib>

namespace lumenor::tests {

namespace {

constexpr DWORD waitMs = 60000;
constexpr DWORD stepMs = 10;

} // namespace

std::vector<RecordedStart> ReadRecordedStarts(const std::wstring &path) {
  const std::wstring text = FromUtf8(ReadBytes(path));
  std::vector<RecordedStart> starts;
  for (std::size_t begin = 0, end; (end = text.find(L'\n', begin)) != std::wstring::npos; begin = end + 1) {
    const std::size_t tab = std::min(end, text.find(L'\t', begin)), folder = std::min(end, tab + 1);
    starts.push_back({text.substr(begin, tab - begin), text.substr(folder, end - folder)});
  }
  return starts;
}

Recorder::Recorder(const TestFolders &folders)
    : notes(folders.Root() + L"\\recorded.txt"), variable(L"LUMENOR_RECORD", notes) {}

void Recorder::InstallAs(const std::wstring &path) const {
  MakeFolders(path.substr(0, path.find_last_of(L'\\')));
  if (!::CopyFileW(BesideThisProgram(L"recorder.exe").c_str(), path.c_str(), FALSE))
    std::abort(); // no test can run without it
}

std::vector<std::wstring> Recorder::CommandLines() const {
  std::vector<std::wstring> lines;
  for (const RecordedStart &start : ReadRecordedStarts(notes))
    lines.push_back(start.commandLine);
  return lines;
}

std::vector<std::wstring> Recorder::WaitForCommandLines(std::size_t count) const {
  const ULONGLONG deadline = ::GetTickCount64() + waitMs;
  while (CommandLines().size() < count && ::GetTickCount64() < deadline)
    ::Sleep(stepMs);
  return CommandLines();
}

} // namespace lumenor::tests
